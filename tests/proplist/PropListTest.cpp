#include "proplist/src/PropNodes.h"
#include "tests/AllocationFailure.h"

#include <brindle/proplist/PropListUtils.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
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
constexpr bool kIsArray = false;
template <typename T>
constexpr bool kIsArray<std::list<T>> = true;
template <typename T>
constexpr bool kIsList = std::is_same_v<T, std::shared_ptr<Model>>;

UTF8String Bytes(std::string const& inText) {
    return UTF8String(inText.begin(), inText.end());
}

std::string Text(PropList const& inList) {
    UTF8String text;
    inList.OutputAsXMLFragment(text);
    return std::string(text.begin(), text.end());
}

std::string Encoded(UTF8String const& inText) {
    std::string text;
    for (std::uint8_t const byte : inText) {
        static std::map<char, char const*> const references{
            {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'"', "&quot;"}};
        auto const found = references.find(static_cast<char>(byte));
        text += found == references.end() ? std::string(1, static_cast<char>(byte)) : found->second;
    }
    return text;
}

std::string Element(Model::Value const& inValue) {
    static std::string const tags[]{"ustring",
                                    "string",
                                    "bool",
                                    "int type='unsigned' size='16'",
                                    "int type='unsigned' size='32'",
                                    "int type='signed' size='32'",
                                    "int type='signed' size='64'",
                                    "int type='unsigned' size='64'",
                                    "float",
                                    "double"};
    auto const visit = [&](auto const& inContent) {
        using T = std::decay_t<decltype(inContent)>;
        std::ostringstream text;
        text.imbue(std::locale::classic());
        std::string const& tag = tags[inValue.index() % 11 % 10];
        if constexpr (kIsArray<T>) {
            text << "<array>\n<array.type><" << tag << "/></array.type>\n";
            for (auto const& element : inContent) {
                text << Element(typename T::value_type(element));
            }
            text << "</array>\n";
        } else if constexpr (kIsList<T>) {
            text << "<prop.list>\n";
            for (auto const& [key, value] : inContent->values) {
                text << "<prop.pair>\n<key>" << Encoded(Bytes(key)) << "</key>\n"
                     << Element(value) << "</prop.pair>\n";
            }
            text << "</prop.list>\n";
        } else if constexpr (std::is_same_v<T, bool>) {
            text << (inContent ? "<true/>\n" : "<false/>\n");
        } else {
            text << '<' << tag << '>';
            if constexpr (std::is_same_v<T, UTF16String>) {
                text << Encoded(utility::UTF16to8(inContent));
            } else if constexpr (std::is_same_v<T, UTF8String>) {
                text << Encoded(inContent);
            } else {
                text << inContent;
            }
            text << "</" << tag.substr(0, tag.find(' ')) << ">\n";
        }
        return text.str();
    };
    return std::visit(visit, inValue);
}

class PropLists : public testing::Test {
protected:
    template <typename T>
    T Any() {
        if constexpr (kIsArray<T>) {
            T values;
            for (auto count = mRandom() % 4; count > 0; --count) {
                values.push_back(Any<typename T::value_type>());
            }
            return values;
        } else if constexpr (kIsList<T>) {
            return std::make_shared<Model>();
        } else if constexpr (std::is_arithmetic_v<T>) {
            return static_cast<T>(static_cast<T>(mRandom()) /
                                  (std::is_floating_point_v<T> ? 7 : 1));
        } else {
            T text;
            for (auto count = mRandom() % 40; count > 0; --count) {
                text.push_back(
                    static_cast<typename T::value_type>("ab<>&'\" \n\t"[mRandom() % 10]));
            }
            return text;
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
    auto const expect = [&](auto inUntouched) {
        using V = decltype(inUntouched);
        V const* const expected = inValue == nullptr ? nullptr : std::get_if<V>(inValue);
        V value = inUntouched;
        if constexpr (kIsList<V>) {
            EXPECT_EQ(expected != nullptr, inList.GetSubList(inKey) != nullptr);
        } else {
            ASSERT_EQ(expected != nullptr, inList.GetValue(inKey, value));
            if (expected == nullptr) {
                EXPECT_EQ(inUntouched, value);
            } else if constexpr (kIsArray<V>) {
                inUntouched.insert(inUntouched.end(), expected->begin(), expected->end());
                EXPECT_EQ(inUntouched, value) << "elements go behind what was there";
            } else {
                EXPECT_EQ(*expected, value);
            }
        }
    };
    (expect([] {
         if constexpr (kIsArray<T>) {
             return T(2);
         } else {
             return T{};
         }
     }()),
     ...);
}

TEST_F(PropLists, AgreeWithAMapOfVariantsAlsoWhenMemoryRunsOut) {
    PropList list;
    auto const root = std::make_shared<Model>();
    std::string const keys[]{"",
                             "a",
                             "B",
                             "a\xFF",
                             "a\x7F",
                             "<key>",
                             "window.main.x",
                             "window.main.xy",
                             "window.main.y",
                             std::string("a\0b", 3)};
    int failures = 0;
    for (int step = 0; step < 4'000; ++step) {
        PropList* target = &list;
        Model* model = root.get();
        std::string key = keys[mRandom() % std::size(keys)];
        auto* inner = target->GetSubList(Bytes(key));
        while (inner != nullptr && mRandom() % 4 != 0) {
            target = inner;
            model = std::get<std::shared_ptr<Model>>(model->values.at(key)).get();
            key = keys[mRandom() % std::size(keys)];
            inner = target->GetSubList(Bytes(key));
        }
        UTF8String const name = Bytes(key);
        std::string const before = Text(list);
        auto const change = [&](auto inFunction) {
            failures += tests::RefuseEachAllocation(
                inFunction, [&] { ASSERT_EQ(before, Text(list)) << "changed although it failed"; });
        };
        auto const action = mRandom() % 64;
        if (action == 0) {
            target->Clear();
            model->values.clear();
        } else if (action < 12) {
            EXPECT_EQ(model->values.erase(key) != 0, target->RemoveValue(name));
        } else {
            Model::Value value;
            SetToAny(value);
            std::visit(
                [&](auto const& inValue) {
                    using V = std::decay_t<decltype(inValue)>;
                    if constexpr (kIsList<V>) {
                        PropList* made = nullptr;
                        change([&] { made = target->NewSubList(name); });
                        EXPECT_EQ(made, target->GetSubList(name));
                        EXPECT_TRUE(inner == nullptr || inner == made);
                    } else {
                        change([&] { target->SetValue(name, inValue); });
                    }
                },
                value);
            if (inner == nullptr || value.index() + 1 != kPropertyType_PropList) {
                model->values[key] = value;
            }
        }
        auto const found = model->values.find(key);
        ExpectValue(*target, name, found == model->values.end() ? nullptr : &found->second);
        ASSERT_EQ(Element(root), Text(list));
        std::list<UTF8String> names{name};
        std::list<UTF8String> expected{name};
        target->GetPropertyNames(names);
        for (auto const& entry : model->values) {
            expected.push_back(Bytes(entry.first));
        }
        EXPECT_EQ(expected, names);
        EXPECT_EQ(model->values.empty(), target->IsEmpty());
    }
    EXPECT_LT(1'000, failures);
}

TEST_F(PropLists, WriteNumbersAsTheClassicLocaleDoes) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\1"; }
    };
    auto const before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    PropList list;
    using Limits = std::numeric_limits<double>;
    std::list<double> doubles{0.0,
                              -0.0,
                              3.14159265,
                              1e5,
                              999999.5,
                              1e-5,
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN(),
                              -Limits::quiet_NaN(),
                              Limits::max(),
                              Limits::denorm_min()};
    for (int count = 0; count < 20'000; ++count) {
        auto const bits = mRandom();
        std::memcpy(&doubles.emplace_back(), &bits, sizeof bits);
    }
    std::list<float> const floats(doubles.begin(), std::next(doubles.begin(), 11));
    std::list<std::uint16_t> const shorts{0, 1234, 65535};
    list.SetValue("d"_utf8, doubles);
    list.SetValue("f"_utf8, floats);
    list.SetValue("s"_utf8, shorts);
    EXPECT_EQ(
        Element(std::make_shared<Model>(Model{{{"d", doubles}, {"f", floats}, {"s", shorts}}})),
        Text(list));
    UTF8String document;
    utils::WritePropList(document, PropList());
    EXPECT_EQ(
        "<?xml version='1.0'?>\n<prop.map version='4'>\n<prop.list>\n</prop.list>\n</prop.map>\n"_utf8,
        document);
    std::locale::global(before);
}

TEST_F(PropLists, NestAMillionDeep) {
    constexpr int kDepth = 1'000'000;
    enum { kClear, kRemove, kReplace, kDelete };
    for (int const end : {kClear, kRemove, kReplace, kDelete}) {
        auto node = std::make_unique<impl::PropListNode>("root"_utf8);
        PropList* list = &node->mList;
        for (int depth = 0; depth < kDepth; ++depth) {
            list->SetValue("b"_utf8, false);
            list = list->NewSubList("a"_utf8);
        }
        if (end == kClear) {
            std::string expected;
            for (int depth = 0; depth < kDepth; ++depth) {
                expected += "<prop.list>\n<prop.pair>\n<key>a</key>\n";
            }
            expected += "<prop.list>\n</prop.list>\n";
            for (int depth = 0; depth < kDepth; ++depth) {
                expected += "</prop.pair>\n<prop.pair>\n<key>b</key>\n<false/>\n</prop.pair>\n"
                            "</prop.list>\n";
            }
            UTF8String text;
            node->AppendXML(text);
            EXPECT_TRUE(Bytes(expected) == text);
        }
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
    geom::RectT<std::int32_t> const whole{1, -2, 3, std::numeric_limits<std::int32_t>::max()};
    geom::RectT<float> const rect{0.5F, -1, 2, 3};
    geom::PointT<float> const point{7, 8};
    utils::WriteRect32("whole"_utf8, whole, list);
    utils::WriteRectF32("rect"_utf8, rect, &list);
    utils::WritePointF32("point"_utf8, point, &list);
    EXPECT_EQ(whole, utils::ReadRect32("whole"_utf8, list));
    EXPECT_EQ(rect, utils::ReadRectF32("rect"_utf8, &list));
    EXPECT_EQ(point, utils::ReadPointF32("point"_utf8, &list));
    EXPECT_EQ((geom::PointT<float>{0.5F, -1}), utils::ReadPointF32("rect"_utf8, &list));
    for (auto const& key : {"whole"_utf8, "point"_utf8, "absent"_utf8}) {
        EXPECT_EQ(geom::RectT<float>(), utils::ReadRectF32(key, &list)) << "of no four floats";
    }
    utils::WritePointF32("point"_utf8, point, nullptr);
    EXPECT_EQ(geom::PointT<float>(), utils::ReadPointF32("point"_utf8, nullptr));
}

} // namespace

} // namespace brindle::proplist
