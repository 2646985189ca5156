#include "tests/support/AllocationFailure.h"
#include "tests/support/InPreferences.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/FileValues.h>
#include <brindle/proplist/GeometryValues.h>
#include <brindle/proplist/MediaValues.h>
#include <brindle/proplist/Preferences.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <tuple>

namespace brindle::proplist {

namespace {

/// A client's types: one that is stored as a number, and one that is stored as a list.
struct Volume {
    double decibels = 0;
};
struct Account {
    std::string name;
    std::vector<Volume> volumes;
};
bool operator==(Volume const& inLHS, Volume const& inRHS) {
    return inLHS.decibels == inRHS.decibels;
}
bool operator==(Account const& inLHS, Account const& inRHS) {
    return inLHS.name == inRHS.name && inLHS.volumes == inRHS.volumes;
}

} // namespace

template <>
struct PropertyValue<Volume> {
    using Stored = double;
    static Stored ToStored(Volume inVolume) { return inVolume.decibels; }
    static bool FromStored(Stored inStored, Volume& outVolume) {
        outVolume.decibels = inStored;
        return inStored <= 0;
    }
};

template <>
struct PropertyValue<Account> {
    static void Write(PropList& ioList, Account const& inAccount) {
        ioList.Set("name", inAccount.name);
        ioList.Set("volumes", inAccount.volumes);
    }
    static bool Read(PropList const& inList, Account& outAccount) {
        return inList.TryGet("name", outAccount.name) &&
               inList.TryGet("volumes", outAccount.volumes);
    }
};

namespace {

class Values : public tests::InPreferences {};

/// Expects that the number is read as a `T` if it is one. A `long double` holds every number of a
/// property exactly.
template <typename T, typename Number>
void ExpectNumber(PropList const& inList, Number inNumber) {
    auto const exact = static_cast<long double>(inNumber);
    auto const least = static_cast<long double>(std::numeric_limits<T>::lowest());
    auto const most = static_cast<long double>(std::numeric_limits<T>::max());
    bool isOne = exact >= least && exact <= most && std::trunc(exact) == exact;
    if (std::is_floating_point_v<T>) {
        isOne = std::is_floating_point_v<Number>
                    ? !(std::isfinite(exact) && std::abs(exact) > most)
                    : static_cast<long double>(static_cast<T>(inNumber)) == exact;
    }
    T value{};
    ASSERT_EQ(inList.TryGet("number", value), isOne) << exact;
    EXPECT_EQ(inList.Get<std::vector<T>>("array").size(), isOne ? 2 : 0) << exact;
    T const expected = isOne ? static_cast<T>(inNumber) : T{};
    EXPECT_TRUE(value == expected || std::isnan(exact)) << exact;
}

TEST_F(Values, ReadANumberAsEveryTypeThatCanHoldIt) {
    PropList list;
    std::mt19937_64 random(1);
    auto const check = [&list](auto inNumber) {
        using Number = decltype(inNumber);
        list.Set("number", inNumber);
        list.Set("array", std::vector<Number>{0, inNumber});
        std::apply([&](auto... inType) { (ExpectNumber<decltype(inType)>(list, inNumber), ...); },
                   std::tuple<signed char, unsigned char, short, unsigned short, int, unsigned,
                              long, unsigned long, long long, unsigned long long, float, double>());
    };
    auto const checkAll = [&](auto inNumber) {
        using T = decltype(inNumber);
        for (T const number :
             {T(0), T(1), T(-1), std::numeric_limits<T>::max(), std::numeric_limits<T>::lowest()}) {
            check(number);
        }
        for (int count = 0; count < 500; ++count) {
            auto const bits = random() >> random() % 64;
            check(static_cast<T>(bits));
            if constexpr (std::is_floating_point_v<T>) {
                T number;
                std::memcpy(&number, &bits, sizeof number);
                check(number);
                check(std::ldexp(T(1), static_cast<int>(bits % 70)) * (bits % 2 == 0 ? -1 : 1));
            }
        }
    };
    checkAll(std::uint16_t());
    checkAll(std::int32_t());
    checkAll(std::uint32_t());
    checkAll(std::int64_t());
    checkAll(std::uint64_t());
    checkAll(float());
    checkAll(double());
    for (double const odd : {std::nan(""), HUGE_VAL, -HUGE_VAL, 0.5, 0x1p63, 0x1p64, 1e300}) {
        check(odd);
    }
}

/// Sets each value, and expects it back from the list and from the file.
template <typename... T>
void ExpectBack(filesupport::File const& inFile, T const&... inValues) {
    PropList list;
    int index = 0;
    (list.Set(std::to_string(index++), inValues), ...);
    utils::SavePropList(inFile, list, utils::kExactNumbers);
    PropList read;
    EXPECT_EQ(utils::LoadPropList(inFile, read).status, kPropListLoad_Done);
    EXPECT_EQ(read, list);
    index = 0;
    auto const expect = [&](auto const& inValue) {
        using Value = std::decay_t<decltype(inValue)>;
        EXPECT_TRUE(read.Get<Value>(std::to_string(index)) == inValue) << index;
        ++index;
    };
    (expect(inValues), ...);
}

TEST_F(Values, OfEveryTypeComeBack) {
    using filesupport::File;
    ExpectBack(utils::PreferencesFile(), true, std::int8_t{-3}, 1.0 / 3, 0.1F, std::string("ä"),
               u"\U0001F600"_utf16, std::u16string(u"wide"), std::wstring(L"w\u00E4"), ""_utf8,
               std::vector<bool>{true, false}, std::vector<std::int16_t>{-1, 2},
               std::vector<std::string>{"a", ""}, std::list<std::u16string>{u"b"},
               std::vector<double>(), Volume{-6}, Account{"me", {{-1}, {0}}},
               time::TickTime(1000, time::kFrameRate_VideoNTSC), time::kFrameRate_23976,
               std::vector<time::TickTime>{time::TickTime(2.5)}, utility::Guid::CreateUnique(),
               geom::RectT<float>{0.5F, -1, 2, 3}, geom::PointT<std::int32_t>{-7, 8}, File(),
               filesupport::FileFromNative("/a %41\xFF\n\xED\xA0\x80/\\.mov"), File(u"Q:\\x"_utf16),
               filesupport::DirFromNative("relative/ä"));
    PropList list;
    list.Set("text", "literal");
    list.Set("wide", u"literal");
    list.Set("one", std::vector<int>{1});
    list.Set("loud", 6);
    EXPECT_EQ(list.Get("text", "none"), "literal");
    EXPECT_EQ(list.Get("no text", "none"), "none");
    EXPECT_EQ(list.Get<std::string_view>("wide"), "literal");
    EXPECT_EQ(list.Get<UTF16String>("text"), u"literal");
    // What is not of the kind that is asked for, or is refused by the client's type.
    EXPECT_EQ(list.Get("text", 7), 7);
    EXPECT_EQ(list.Get("one", 7), 7);
    EXPECT_TRUE(list.Get("loud", true));
    EXPECT_EQ(list.Get("loud", "none"), "none");
    EXPECT_EQ(list.Get("loud", Volume{-1}), Volume{-1});
    EXPECT_EQ(list.Get<std::vector<std::string>>("one", {"x"}).size(), 1U);
    EXPECT_EQ(list.Get<geom::PointT<float>>("one"), geom::PointT<float>());
    EXPECT_EQ(list.Get<utility::Guid>("text"), utility::Guid());
    EXPECT_EQ(list.GetPropertyType("one"), kPropertyType_Int32Array);
}

TEST_F(Values, ExactNumbersAreReadByEveryReader) {
    std::mt19937_64 random(1);
    PropList list;
    std::vector<double> doubles{0.1, -0.0, 5e-324, 1e22, 1e23, 1.7976931348623157e308};
    std::vector<float> floats{0.1F, 1e-45F, 3.4028235e38F};
    for (int count = 0; count < 20'000; ++count) {
        auto const bits = random();
        double number;
        std::memcpy(&number, &bits, sizeof number);
        float small;
        std::memcpy(&small, &bits, sizeof small);
        doubles.push_back(std::isfinite(number) ? number : 0);
        floats.push_back(std::isfinite(small) ? small : 0);
    }
    list.Set("doubles", doubles);
    list.Set("floats", floats);
    UTF8String document;
    utils::WritePropList(document, list, utils::kExactNumbers);
    auto const text = tests::Narrow(document);
    // A stream of the classic locale is what readers without this option use.
    auto const expectAll = [&text](auto const& inNumbers, std::string const& inTag) {
        auto at = text.find("<" + inTag + ">");
        for (auto number : inNumbers) {
            at += inTag.size() + 2;
            auto const end = text.find('<', at);
            std::istringstream stream(text.substr(at, end - at));
            stream.imbue(std::locale::classic());
            decltype(number) read = 1;
            stream >> read;
            ASSERT_EQ(std::memcmp(&read, &number, sizeof read), 0) << stream.str();
            at = text.find("<" + inTag + ">", end);
        }
    };
    expectAll(doubles, "double");
    expectAll(floats, "float");
    utils::SavePropList(utils::PreferencesFile(), list, utils::kExactNumbers);
    PropList read;
    EXPECT_EQ(utils::LoadPropList(utils::PreferencesFile(), read).status, kPropListLoad_Done);
    EXPECT_TRUE(read == list);
}

TEST_F(Values, OfALongListAreWalkedComparedAndMoved) {
    PropList list;
    list.SetValue("not a number", std::nan(""));
    list.Set("array", std::vector<int>{1, 2});
    auto& inner = *list.NewSubList("inner");
    for (int number = 0; number < 1'000; ++number) {
        inner.Set(std::to_string(number), number);
    }
    std::list<UTF8String> names;
    inner.GetPropertyNames(names);
    for (auto const& entry : inner) {
        ASSERT_EQ(entry.Key(), names.front());
        EXPECT_EQ(entry.Get<std::string>("no text"), "no text");
        EXPECT_EQ(std::to_string(entry.Get(-1)), tests::Narrow(names.front()));
        names.pop_front();
    }
    EXPECT_TRUE(names.empty());
    EXPECT_EQ((++list.begin())->SubList(), &inner);

    PropList copy;
    auto const clone = [&] { copy = list.Clone(); };
    EXPECT_GT(tests::RefuseEachAllocation(clone, [&] { ASSERT_TRUE(copy.IsEmpty()); }), 1'000);
    EXPECT_EQ(copy, list);
    // One difference each: in a value, a type, a key, a nested list and an array.
    std::pair<char const*, void (*)(PropList&)> const changes[] = {
        {"value", [](PropList& ioList) { ioList.SetValue("not a number", 0.0); }},
        {"array",
         [](PropList& ioList) {
             ioList.Set("array", std::vector<int>{1, 3});
         }},
        {"type", [](PropList& ioList) { ioList.SetValue("not a number", 0); }},
        {"key", [](PropList& ioList) { ioList.SetValue("zzz", 0); }},
        {"list", [](PropList& ioList) { ioList.GetSubList("inner")->Set("500", 501); }},
        {"less", [](PropList& ioList) { ioList.GetSubList("inner")->RemoveValue("999"); }}};
    for (auto const& [name, change] : changes) {
        auto changed = list.Clone();
        change(changed);
        EXPECT_NE(changed, list) << name;
        EXPECT_NE(list, changed) << name;
    }
    PropList moved(std::move(copy));
    EXPECT_TRUE(copy.IsEmpty());
    copy.Set("valid", true);
    EXPECT_EQ(moved, list);
    moved = std::move(*moved.GetSubList("inner"));
    EXPECT_EQ(moved, inner);
}

TEST_F(Values, AFileIsLoadedAndSavedWhateverItHolds) {
    auto const file = utils::PreferencesFile();
    PropList list;
    list.Set("default", 1);
    EXPECT_EQ(utils::LoadPropList(file, list).status, kPropListLoad_Done);
    EXPECT_EQ(list.Get("default", 0), 1);
    EXPECT_EQ(utils::LoadPropList(file, list, utils::MissingFile::kIsFailure).status,
              kPropListLoad_Missing);
    EXPECT_TRUE(list.IsEmpty());
    // Of more than one block, the last of which cannot be saved or read.
    for (int number = 0; number < 3'000; ++number) {
        list.Set("number " + std::to_string(number), number);
    }
    utils::SavePropList(file, list);
    auto bad = list.Clone();
    bad.Set("zzz", "\x01");
    EXPECT_THROW(utils::SavePropList(file, bad), filesupport::file_exception);
    PropList read;
    EXPECT_EQ(utils::LoadPropList(file, read).status, kPropListLoad_Done);
    EXPECT_EQ(read, list);
    std::filesystem::resize_file(filesupport::NativePath(file), file.Size({}) - 100);
    EXPECT_EQ(utils::LoadPropList(file, read).status, kPropListLoad_Damaged);
    EXPECT_TRUE(read.IsEmpty());
    EXPECT_FALSE(file.Exists());

    std::filesystem::create_directory(filesupport::NativePath(file));
    EXPECT_EQ(utils::LoadPropList(file, read).status, kPropListLoad_Unreadable);
    EXPECT_THROW(utils::SavePropList(file, read.Clone()), filesupport::file_exception);
}

} // namespace

} // namespace brindle::proplist
