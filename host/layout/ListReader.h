#pragma once

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brindle::host::layout {

/// Reads a property list of which every key has to be understood. Throws `description_error` with
/// the path of the key for what is not as expected.
class ListReader {
public:
    /// Keys are told behind `inPrefix`, which ends in a slash if it is not empty. The list has to
    /// stay.
    explicit ListReader(proplist::PropList const& inList, std::string inPrefix = {});

    /// Throws if the list has a key that is none of these.
    void RefuseOtherKeys(std::vector<char const*> const& inKnown) const;

    bool Has(char const* inKey) const;
    bool HasList(char const* inKey) const;

    // Nothing if there is no such key.

    /// From 0 up and finite, of whatever type it is in the list. `inExpected` says what would be
    /// right.
    std::optional<float> Number(char const* inKey,
                                std::string const& inExpected = "a number") const;
    std::optional<bool> Flag(char const* inKey) const;
    std::optional<std::string> Text(char const* inKey) const;
    /// The place of the text among the words, of which it has to be one.
    std::optional<std::size_t> Word(char const* inKey,
                                    std::vector<char const*> const& inWords) const;
    std::optional<ListReader> List(char const* inKey) const;

    /// The keys of the list as numbers, in their order; each has to be a whole number from 1 up,
    /// with a list under it.
    struct NumberedList {
        std::uint32_t number;
        proplist::PropList const* list;
    };
    std::vector<NumberedList> NumberedLists() const;

    [[noreturn]] void FailAsMissing(char const* inKey, std::string const& inExpected) const;
    [[noreturn]] void Fail(std::string const& inKey, std::string const& inReason) const;

private:
    proplist::PropListPropertyType TypeOf(char const* inKey) const;
    [[noreturn]] void FailAsOther(std::string const& inKey, std::string const& inExpected) const;

    proplist::PropList const* mList;
    std::string mPrefix;
};

} // namespace brindle::host::layout
