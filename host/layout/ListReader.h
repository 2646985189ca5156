#pragma once

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brindle::host::layout {

/// Reads a property list of which every key has to be understood: what is asked for once is known
/// from then on. Throws `description_error` with the path of the key for what is not as expected.
class ListReader {
public:
    /// Keys are told behind `inPrefix`, which ends in a slash if it is not empty. The list has to
    /// stay.
    explicit ListReader(proplist::PropList const& inList, std::string inPrefix = {});

    bool Has(char const* inKey);
    bool HasList(char const* inKey);

    // Nothing if there is no such key.

    /// From 0 up and finite, of whatever type it is in the list. `inExpected` says what would be
    /// right.
    std::optional<float> Number(char const* inKey, std::string const& inExpected = "a number");
    std::optional<bool> Flag(char const* inKey);
    std::optional<std::string> Text(char const* inKey);
    /// The place of the text among the words, of which it has to be one.
    std::optional<std::size_t> Word(char const* inKey, std::vector<char const*> const& inWords);
    std::optional<ListReader> List(char const* inKey);

    /// The keys of the list as numbers, in their order; each has to be a whole number from 1 up,
    /// with a list under it.
    struct NumberedList {
        std::uint32_t number;
        proplist::PropList const* list;
    };
    std::vector<NumberedList> NumberedLists();

    /// Throws if the list has a key that was not asked for.
    void RefuseOtherKeys() const;

    [[noreturn]] void FailAsMissing(char const* inKey, std::string const& inExpected) const;
    [[noreturn]] void Fail(std::string const& inKey, std::string const& inReason) const;

private:
    proplist::PropListPropertyType TypeOf(char const* inKey);
    [[noreturn]] void FailAsOther(std::string const& inKey, std::string const& inExpected) const;

    proplist::PropList const* mList;
    std::string mPrefix;
    std::vector<char const*> mKnown;
};

} // namespace brindle::host::layout
