#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::platform {

/// The MIME types of files with an extension, collected from the desktop's tables of name patterns
/// ("globs2"). Only patterns of the form "*ending" count, where the extension ends in that ending.
class ExtensionTypes {
public:
    /// `inExtension` has its dot.
    explicit ExtensionTypes(std::string inExtension) : mExtension(std::move(inExtension)) {}

    /// Adds the patterns of a file "globs2"; any bytes are allowed. Add the files in falling
    /// precedence.
    void Add(std::string_view inBytes);

    /// At most 16 types, the best one first: ordered by the weight of the pattern, then by its
    /// length, then whether upper and lower case agree, then by the order of the files.
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

/// The file names of the desktop entries that a group of a list of associations ("mimeapps.list";
/// any bytes are allowed) names for a type, in the order of the list; at most 64. Names that cannot
/// be a desktop entry's are left out.
std::vector<std::string> EntriesFor(std::string_view inBytes, std::string_view inGroup,
                                    std::string_view inType);

} // namespace brindle::platform
