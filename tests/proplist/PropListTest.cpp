#include "proplist/src/model/PropNodes.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Text.h"

#include <brindle/proplist/PropListUtils.h>

#include <gtest/gtest.h>

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

/// What a list is to be: a value's index in the variant is one less than the number of its type.
struct Model {
    template <typename... Scalar>
    using Values = std::variant<Scalar..., std::shared_ptr<Model>, std::list<Scalar>...>;
    using Value = Values<UTF16String, UTF8String, bool, std::uint16_t, std::uint32_t, std::int32_t,
                         std::int64_t, std::uint64_t, float, double>;

    std::map<std::string, Value> values; // `std::string` compares its bytes as unsigned ones
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

/// What the list tells of a key has to be what the model tells, for all types that it is asked for.
template <typename... T>
void ExpectValue(PropList const& inList, UTF8String const& inKey,
                 std::variant<T...> const* inValue) {
    auto const type = inValue == nullptr ? 0 : static_cast<int>(inValue->index()) + 1;
    EXPECT_EQ(type, inList.GetPropertyType(inKey));
    auto const expect = [&](auto inBefore) {
        using V = decltype(inBefore);
        V const* const expected = inValue == nullptr ? nullptr : std::get_if<V>(inValue);
        if constexpr (kIsList<V>) {
            EXPECT_EQ(expected != nullptr, inList.GetSubList(inKey) != nullptr);
        } else {
            V value = inBefore;
            ASSERT_EQ(expected != nullptr, inList.GetValue(inKey, value));
            EXPECT_EQ(expected == nullptr ? inBefore : *expected, value);
        }
    };
    (expect(T{}), ...);
}

/// The keys of the list have to be those of the map, and in its order.
template <typename Map>
void ExpectNames(PropList const& inList, Map const& inMap) {
    std::list<UTF8String> names{"what was there"_utf8}, expected = names;
    inList.GetPropertyNames(names);
    for (auto const& entry : inMap) {
        expected.push_back(AsUTF8(entry.first));
    }
    ASSERT_TRUE(expected == names);
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
            failures += tests::RefuseEachAllocation(change, [&] { ASSERT_EQ(before, Text(list)); });
        };
        if (action == 0) {
            target->Clear();
            model->values.clear();
        } else if (action < 12) {
            EXPECT_EQ(model->values.erase(key) != 0, target->RemoveValue(name));
        } else {
            std::visit(set, value);
            if (inner == nullptr || value.index() + 1 != kPropertyType_PropList) {
                model->values[key] = value;
            }
        }
        auto const found = model->values.find(key);
        ExpectValue(*target, name, found == model->values.end() ? nullptr : &found->second);
        ExpectNames(*target, model->values);
        EXPECT_EQ(model->values.empty(), target->IsEmpty());
    }
    EXPECT_LT(1'000, failures);
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
            ASSERT_EQ(model.erase(key) != 0, list.RemoveValue(AsUTF8(key)));
        }
        if (step % 3'000 == 0) {
            ExpectNames(list, model);
        }
    }
    EXPECT_TRUE(list.IsEmpty());
}

TEST_F(PropLists, WriteEachTypeAsItsElement) {
    PropList list;
    list.SetValue("&"_utf8, "<a \"b\"'>\n"_utf8);
    std::string expected = "<?xml version='1.0'?>\n<prop.map version='4'>\n<prop.list>\n"
                           "<prop.pair>\n<key>&amp;</key>\n"
                           "<string>&lt;a &quot;b&quot;&apos;&gt;\n</string>\n</prop.pair>\n";
    char key = 'a';
    auto const add = [&](auto const& inValues, std::string const& inTag, char const* inText) {
        list.SetValue(UTF8String(1, static_cast<std::uint8_t>(key)), inValues);
        expected = expected + "<prop.pair>\n<key>" + key++ + "</key>\n<array>\n<array.type><" +
                   inTag + "/></array.type>\n";
        auto const name = inTag.substr(0, inTag.find(' '));
        expected += inValues.empty() ? "" : '<' + inTag + '>' + inText + "</" + name + ">\n";
        expected += "</array>\n</prop.pair>\n";
    };
    add(std::list<std::uint16_t>(1, 65535), "int type='unsigned' size='16'", "65535");
    add(std::list<std::uint32_t>(1, ~0U), "int type='unsigned' size='32'", "4294967295");
    add(std::list<std::int32_t>(1, -1), "int type='signed' size='32'", "-1");
    add(std::list<std::int64_t>(1, -9'000'000'000), "int type='signed' size='64'", "-9000000000");
    add(std::list<std::uint64_t>(1, ~0ULL), "int type='unsigned' size='64'",
        "18446744073709551615");
    add(std::list<float>(1, 0.1F), "float", "0.1");
    add(std::list<double>(1, 3.14159265), "double", "3.14159");
    add(std::list<UTF8String>(), "string", "");
    add(std::list<UTF16String>(1, u"\u00E9&"_utf16), "ustring", "\u00E9&amp;");
    add(std::list<bool>(), "bool", "");
    list.NewSubList("t"_utf8)->SetValue(""_utf8, true);
    UTF8String text = "what was there"_utf8;
    utils::WritePropList(text, list);
    EXPECT_EQ(AsUTF8(expected + "<prop.pair>\n<key>t</key>\n<prop.list>\n<prop.pair>\n<key></key>\n"
                                "<true/>\n</prop.pair>\n</prop.list>\n</prop.pair>\n"
                                "</prop.list>\n</prop.map>\n"),
              text);
}

TEST_F(PropLists, WriteNumbersAsTheClassicLocaleDoes) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    // The bits of chance make numbers of every size, and some that are none.
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
    EXPECT_NE(std::string::npos, Text(list).find(expected.str()));
    std::locale::global(before);
}

TEST_F(PropLists, NestAMillionDeep) {
    constexpr int kDepth = 1'000'000;
    enum { kClear, kRemove, kReplace, kDelete };
    for (int const end : {kClear, kRemove, kReplace, kDelete}) {
        auto node = std::make_unique<impl::PropListNode>("root"_utf8);
        PropList* list = &node->mList;
        for (int depth = 0; depth < kDepth; ++depth) {
            list->NewSubList("b"_utf8);
            list = list->NewSubList("a"_utf8);
        }
        UTF8String text;
        node->AppendXML(text);
        EXPECT_EQ(std::size_t{kDepth} * 126 + 25, text.size());
        tests::AllocationFailure const failure(end == kReplace ? 1 : 0); // one for the new node
        end == kClear     ? node->mList.Clear()
        : end == kRemove  ? void(node->mList.RemoveValue("a"_utf8))
        : end == kReplace ? node->mList.SetValue("a"_utf8, true)
                          : node.reset();
        EXPECT_FALSE(failure.HasHappened()) << "deletion asks for no memory";
    }
}

TEST_F(PropLists, KeepRectanglesAndPoints) {
    PropList list;
    geom::RectT<std::int32_t> const whole{1, -2, 3, 4};
    geom::RectT<float> const rect{0.5F, -1, 2, 3};
    utils::WriteRect32("whole"_utf8, whole, list);
    utils::WriteRectF32("rect"_utf8, rect, &list);
    utils::WritePointF32("point"_utf8, {7, 8}, &list);
    EXPECT_EQ(whole, utils::ReadRect32("whole"_utf8, list));
    EXPECT_EQ(rect, utils::ReadRectF32("rect"_utf8, &list));
    std::list<float> values{9};
    EXPECT_TRUE(list.GetValue("point"_utf8, values) && values == std::list<float>({9, 7, 8}));
    EXPECT_EQ((geom::PointT<float>{7, 8}), utils::ReadPointF32("point"_utf8, &list));
    EXPECT_EQ((geom::PointT<float>{0.5F, -1}), utils::ReadPointF32("rect"_utf8, &list));
    EXPECT_EQ(geom::RectT<float>(), utils::ReadRectF32("whole"_utf8, &list));
    EXPECT_EQ(geom::RectT<float>(), utils::ReadRectF32("point"_utf8, &list));
}

} // namespace

} // namespace brindle::proplist
