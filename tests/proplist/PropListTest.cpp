#include "proplist/src/model/PropNodes.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Text.h"

#include <brindle/proplist/PropListUtils.h>

#include <gtest/gtest.h>

#include <boost/type_traits/is_detected.hpp>

#include <cmath>
#include <cstring>
#include <locale>
#include <map>
#include <random>
#include <sstream>
#include <type_traits>
#include <variant>

namespace brindle::proplist {

namespace {

/// A simple model of a list. The index of a value in the variant is one less than the number of its
/// type.
struct Model {
    template <typename... Scalar>
    using Values = std::variant<Scalar..., std::shared_ptr<Model>, std::list<Scalar>...>;
    using Value = Values<UTF16String, UTF8String, bool, std::uint16_t, std::uint32_t, std::int32_t,
                         std::int64_t, std::uint64_t, float, double>;

    std::map<std::string, Value> values; // `std::string` compares bytes as unsigned
};

template <typename T>
constexpr bool kIsList = std::is_same_v<T, std::shared_ptr<Model>>;

using tests::AsUTF8;

std::string Text(PropList const& inList) {
    UTF8String text;
    inList.OutputAsXMLFragment(text);
    return tests::Narrow(text);
}

class PropLists : public testing::Test {
protected:
    template <typename T>
    T Any() {
        if constexpr (kIsList<T>) {
            return std::make_shared<Model>();
        } else if constexpr (std::is_arithmetic_v<T>) {
            return static_cast<T>(mRandom());
        } else {
            T textOrArray;
            for (auto count = mRandom() % 4 * 6; count > 0; --count) {
                textOrArray.push_back(Any<typename T::value_type>());
            }
            return textOrArray;
        }
    }

    template <typename... T>
    void SetToAny(std::variant<T...>& outValue) {
        std::size_t left = mRandom() % sizeof...(T);
        ((left-- == 0 ? void(outValue = Any<T>()) : void()), ...);
    }

    std::mt19937_64 mRandom{1};
};

/// Expects that the list has this value under the key, or none if it is null, whatever type is
/// asked for.
template <typename... T>
void ExpectValue(PropList const& inList, UTF8String const& inKey,
                 std::variant<T...> const* inValue) {
    auto const type = inValue == nullptr ? 0 : static_cast<int>(inValue->index()) + 1;
    EXPECT_EQ(inList.GetPropertyType(inKey), type);
    auto const expect = [&](auto inBefore) {
        using V = decltype(inBefore);
        V const* const expected = inValue == nullptr ? nullptr : std::get_if<V>(inValue);
        if constexpr (kIsList<V>) {
            EXPECT_EQ(inList.GetSubList(inKey) != nullptr, expected != nullptr);
        } else {
            V value = inBefore;
            ASSERT_EQ(inList.GetValue(inKey, value), expected != nullptr);
            EXPECT_EQ(value, expected == nullptr ? inBefore : *expected);
        }
    };
    (expect(T{}), ...);
}

/// Expects that the list has the keys of the map, in the same order.
template <typename Map>
void ExpectNames(PropList const& inList, Map const& inMap) {
    std::list<UTF8String> names{"what was there"_utf8}, expected = names;
    inList.GetPropertyNames(names);
    for (auto const& entry : inMap) {
        expected.push_back(AsUTF8(entry.first));
    }
    ASSERT_TRUE(names == expected);
}

TEST_F(PropLists, AgreeWithAMapOfVariantsAlsoWhenMemoryRunsOut) {
    PropList list;
    auto const root = std::make_shared<Model>();
    auto const anyKey = [&] {
        std::string key = mRandom() % 2 == 0 ? "" : "window.main.pos";
        for (auto count = mRandom() % 3; count > 0; --count) {
            key += "aB<\xFF\0"[mRandom() % 5];
        }
        return key;
    };
    int failures = 0;
    for (int step = 0; step < 4'000; ++step) {
        PropList* target = &list;
        Model* model = root.get();
        PropList* inner = nullptr;
        std::string key;
        for (;
             (inner = target->GetSubList(AsUTF8(key = anyKey()))) != nullptr && mRandom() % 4 != 0;
             target = inner) {
            model = std::get<std::shared_ptr<Model>>(model->values.at(key)).get();
        }
        UTF8String const name = AsUTF8(key);
        std::string const before = Text(list);
        auto const action = mRandom() % 64;
        Model::Value value;
        SetToAny(value);
        auto const set = [&](auto const& inValue) {
            auto const change = [&] {
                if constexpr (kIsList<std::decay_t<decltype(inValue)>>) {
                    auto* const made = target->NewSubList(name);
                    EXPECT_TRUE(inner == nullptr || inner == made);
                } else {
                    target->SetValue(name, inValue);
                }
            };
            failures += tests::RefuseEachAllocation(change, [&] { ASSERT_EQ(Text(list), before); });
        };
        if (action == 0) {
            target->Clear();
            model->values.clear();
        } else if (action < 12) {
            EXPECT_EQ(target->RemoveValue(name), model->values.erase(key) != 0);
        } else {
            std::visit(set, value);
            if (inner == nullptr || value.index() + 1 != kPropertyType_PropList) {
                model->values[key] = value;
            }
        }
        auto const found = model->values.find(key);
        ExpectValue(*target, name, found == model->values.end() ? nullptr : &found->second);
        ExpectNames(*target, model->values);
        EXPECT_EQ(target->IsEmpty(), model->values.empty());
    }
    EXPECT_GT(failures, 1'000);
}

TEST_F(PropLists, KeepManyKeysInOrder) {
    PropList list;
    std::map<std::string, std::int64_t> model;
    for (std::int64_t step = 0; step < 120'000; ++step) {
        auto const number =
            step < 60'000 ? static_cast<std::int64_t>(mRandom() % 10'000) : step % 30'000;
        auto const key = (number % 2 == 0 ? "preferences." : "") + std::to_string(100'000 + number);
        if (step % 60'000 < 30'000 || (step < 60'000 && mRandom() % 50 == 0)) {
            list.SetValue(AsUTF8(key), step);
            model[key] = step;
        } else {
            ASSERT_EQ(list.RemoveValue(AsUTF8(key)), model.erase(key) != 0);
        }
        if (step % 3'000 == 0) {
            ExpectNames(list, model);
        }
    }
    EXPECT_TRUE(list.IsEmpty());
}

TEST_F(PropLists, WriteNumbersAsTheClassicLocaleDoes) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    // Random bits make numbers of every magnitude, infinities and NaNs.
    std::list<double> numbers{0.0, -0.0, 1e5, 999999.5, 1e-5, HUGE_VAL};
    for (int count = 0; count < 20'000; ++count) {
        auto const bits = mRandom();
        std::memcpy(&numbers.emplace_back(), &bits, sizeof bits);
    }
    PropList list;
    list.SetValue(""_utf8, numbers);
    std::ostringstream expected;
    expected.imbue(std::locale::classic());
    for (double const number : numbers) {
        expected << "<double>" << number << "</double>\n";
    }
    EXPECT_NE(Text(list).find(expected.str()), std::string::npos);
    std::locale::global(before);
}

TEST_F(PropLists, NestAMillionDeep) {
    constexpr int kDepth = 1'000'000;
    using Node = std::unique_ptr<impl::PropListNode>;
    struct {
        char const* name;
        int allocations;
        void (*end)(Node& ioNode);
    } const ways[] = {{"clear", 0, [](Node& ioNode) { ioNode->mList.Clear(); }},
                      {"remove", 0, [](Node& ioNode) { ioNode->mList.RemoveValue("a"_utf8); }},
                      {"replace", 1, [](Node& ioNode) { ioNode->mList.SetValue("a"_utf8, true); }},
                      {"destroy", 0, [](Node& ioNode) { ioNode.reset(); }}};
    for (auto const& way : ways) {
        auto node = std::make_unique<impl::PropListNode>("root"_utf8);
        PropList* list = &node->mList;
        for (int depth = 0; depth < kDepth; ++depth) {
            list->NewSubList("b"_utf8);
            list = list->NewSubList("a"_utf8);
        }
        UTF8String text;
        node->AppendXML(text, impl::NumberDigits::kSix);
        EXPECT_EQ(text.size(), std::size_t{kDepth} * 126 + 25);
        EXPECT_TRUE(node->mList.Clone() == node->mList);
        tests::AllocationFailure const failure(way.allocations);
        way.end(node);
        EXPECT_FALSE(failure.HasHappened()) << way.name;
    }
}

template <typename T>
using Setting = decltype(std::declval<PropList&>().SetValue(UTF8String(), std::declval<T>()));
template <typename T>
constexpr bool kTakes = boost::is_detected<Setting, T>::value;

TEST_F(PropLists, TakeEveryIntegerAndNoForgottenText) {
    PropList list;
    auto const typeOf = [&](auto inValue) {
        list.SetValue("a"_utf8, inValue);
        decltype(inValue) back{};
        EXPECT_TRUE(list.GetValue("a"_utf8, back));
        EXPECT_EQ(back, inValue);
        return list.GetPropertyType("a"_utf8);
    };
    EXPECT_EQ(typeOf(-5L), kPropertyType_Int64);
    EXPECT_EQ(typeOf(-5LL), kPropertyType_Int64);
    EXPECT_EQ(typeOf(~0UL), kPropertyType_UInt64);
    EXPECT_EQ(typeOf(~0ULL), kPropertyType_UInt64);
    long long untouched = 7;
    EXPECT_FALSE(list.GetValue("a"_utf8, untouched));
    EXPECT_EQ(untouched, 7);
    static_assert(kTakes<short> && kTakes<UTF16String> && kTakes<std::list<bool>>);
    static_assert(!kTakes<char> && !kTakes<char16_t> && !kTakes<char32_t> && !kTakes<wchar_t>);
    static_assert(!kTakes<std::nullptr_t>);
}

TEST_F(PropLists, KeepRectanglesAndPoints) {
    PropList list;
    geom::RectT<std::int32_t> const whole{1, -2, 3, 4};
    geom::RectT<float> const rect{0.5F, -1, 2, 3};
    utils::WriteRect32("whole"_utf8, whole, list);
    utils::WriteRectF32("rect"_utf8, rect, &list);
    utils::WritePointF32("point"_utf8, {7, 8}, &list);
    EXPECT_EQ(utils::ReadRect32("whole"_utf8, list), whole);
    EXPECT_EQ(utils::ReadRectF32("rect"_utf8, &list), rect);
    EXPECT_EQ(utils::ReadPointF32("point"_utf8, &list), (geom::PointT<float>{7, 8}));
    EXPECT_EQ(utils::ReadPointF32("rect"_utf8, &list), (geom::PointT<float>{0.5F, -1}));
    EXPECT_EQ(utils::ReadRectF32("whole"_utf8, &list), geom::RectT<float>());
    EXPECT_EQ(utils::ReadRectF32("point"_utf8, &list), geom::RectT<float>());
}

} // namespace

} // namespace brindle::proplist
