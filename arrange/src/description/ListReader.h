#pragma once

#include <brindle/proplist/PropList.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brindle::arrange::impl {

/// Words that a list may hold, in a constant array that outlives this.
class Words {
public:
    template <std::size_t kCount>
    constexpr Words(std::array<char const*, kCount> const& inWords) noexcept
        : mBegin(inWords.data()), mEnd(inWords.data() + kCount) {}

    constexpr char const* const* begin() const noexcept { return mBegin; }
    constexpr char const* const* end() const noexcept { return mEnd; }

private:
    char const* const* mBegin;
    char const* const* mEnd;
};

/// Reads a property list in which every key must be known. Throws `layout_error`, with the
/// path of the key, for anything unexpected.
class ListReader {
public:
    /// `inPrefix`, which is empty or ends in a slash, stands before every key in messages. The list
    /// has to outlive the reader.
    explicit ListReader(proplist::PropList const& inList, std::string inPrefix = {});

    /// Throws if the list has any other key.
    void RefuseOtherKeys(Words inKnown) const;

    bool Has(char const* inKey) const;
    bool HasList(char const* inKey) const;

    // The following return an empty optional if there is no such key.

    /// A number of any type, from 0 to `kLargestSize`. `inExpected` says in messages what was
    /// expected.
    std::optional<float> Number(char const* inKey,
                                std::string const& inExpected = "a number") const;
    std::optional<bool> Flag(char const* inKey) const;
    std::optional<std::string> Text(char const* inKey) const;
    /// The index of the text in the words; a text that is none of them throws.
    std::optional<std::size_t> Word(char const* inKey, Words inWords) const;
    std::optional<ListReader> List(char const* inKey) const;

    /// The nested lists in ascending order of their keys, each of which has to be a whole number
    /// from 1 up.
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

} // namespace brindle::arrange::impl
