#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::platform {

/// The MIME types of files of an extension, collected from the desktop's tables of name patterns.
/// A pattern counts if it is a "*" and an ending of the extension.
class ExtensionTypes {
public:
    /// `inExtension` has its dot.
    explicit ExtensionTypes(std::string inExtension) : mExtension(std::move(inExtension)) {}

    /// Takes the patterns of a file "globs2", any bytes. Files come in falling precedence.
    void Add(std::string_view inBytes);

    /// The types, the best one first, of which there are at most 16: by the weight of the pattern,
    /// then by its length, then an ending in the same case before one in the other, then in the
    /// order of the files.
    std::vector<std::string> Types() const;

private:
    struct Match {
        std::string type;
        std::uint32_t weight;
        std::size_t length;
        bool isSameCase;
    };

    std::string const mExtension;
    std::vector<Match> mMatches;
    std::vector<std::string> mTypesWithoutFurtherPatterns;
};

/// The file names of the desktop entries that a group of a file of associations, any bytes, lists
/// for a type, in its order; at most 64. What cannot be such a name is left out.
std::vector<std::string> EntriesFor(std::string_view inBytes, std::string_view inGroup,
                                    std::string_view inType);

} // namespace brindle::platform
