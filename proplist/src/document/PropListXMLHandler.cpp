#include <brindle/proplist/PropListXMLHandler.h>

#include "proplist/src/document/NumberText.h"
#include "proplist/src/model/PropListAccess.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <list>
#include <string_view>
#include <type_traits>

namespace brindle::proplist {

namespace {

using Attributes = std::map<UTF16String, UTF16String>;

enum class Tag : std::uint8_t { kMap, kList, kKey, kArray, kArrayType, kInt, kValue, kUnknown };

struct Element {
    std::string_view name;
    Tag tag = Tag::kUnknown;
    PropListPropertyType type = kPropertyType_None; ///< of a value whose name alone decides it
    bool flag = true;                               ///< the value of a `bool`
};

constexpr std::size_t kTypeCount = std::size(kPropertyTypes);

constexpr auto kElements = [] {
    std::array<Element, kTypeCount + 8> elements{};
    std::size_t count = 0;
    elements[count++] = {"key", Tag::kKey};
    for (PropertyTypeRow const& type : kPropertyTypes) {
        elements[count++] = type.attributes.empty()
                                ? Element{type.element, Tag::kValue, type.scalar}
                                : Element{type.element, Tag::kInt};
    }
    for (Element const& element :
         {Element{"true", Tag::kValue, kPropertyType_Bool},
          Element{"false", Tag::kValue, kPropertyType_Bool, false},
          Element{"prop.list", Tag::kList}, Element{"array", Tag::kArray},
          Element{"array.type", Tag::kArrayType}, Element{"prop.map", Tag::kMap}}) {
        elements[count++] = element;
    }
    return elements;
}();
constexpr Element kUnknownElement{};

bool Equals(UTF16String const& inText, std::string_view inOther) noexcept {
    return inText.size() == inOther.size() &&
           std::equal(inText.begin(), inText.end(), inOther.begin());
}

Element const& Find(UTF16String const& inName) noexcept {
    auto const* const found =
        std::find_if(kElements.begin(), kElements.end(),
                     [&](Element const& inElement) { return Equals(inName, inElement.name); });
    return found == kElements.end() ? kUnknownElement : *found;
}

/// Null if there is no such attribute.
UTF16String const* Find(Attributes const& inAttributes, std::string_view inName) noexcept {
    for (auto const& [name, value] : inAttributes) {
        if (Equals(name, inName)) {
            return &value;
        }
    }
    return nullptr;
}

struct Integer {
    std::string_view size;
    bool isUnsigned = false;
    PropListPropertyType type = kPropertyType_None;
};

/// The value of an attribute in a row of the table of types.
constexpr std::string_view ValueIn(std::string_view inAttributes, std::string_view inStart) {
    std::string_view const value = inAttributes.substr(inAttributes.find(inStart) + inStart.size());
    return value.substr(0, value.find('\''));
}

constexpr auto kIntegers = [] {
    std::array<Integer, kTypeCount> integers{};
    std::size_t count = 0;
    for (PropertyTypeRow const& type : kPropertyTypes) {
        if (!type.attributes.empty()) {
            integers[count++] = {ValueIn(type.attributes, "size='"),
                                 ValueIn(type.attributes, "type='") == "unsigned", type.scalar};
        }
    }
    return integers;
}();

/// The type of an <int>. The sign matters only if there are two types of its size.
PropListPropertyType IntegerType(Attributes const& inAttributes) noexcept {
    UTF16String const* const type = Find(inAttributes, "type");
    UTF16String const* const size = Find(inAttributes, "size");
    if (type == nullptr || type->empty() || size == nullptr || size->empty()) {
        return kPropertyType_None;
    }
    constexpr std::string_view kSigned = "signed";
    bool const isUnsigned =
        std::lexicographical_compare(kSigned.begin(), kSigned.end(), type->begin(), type->end());
    PropListPropertyType found = kPropertyType_None;
    for (Integer const& integer : kIntegers) {
        if (Equals(*size, integer.size) &&
            (found == kPropertyType_None || integer.isUnsigned == isUnsigned)) {
            found = integer.type;
        }
    }
    return found;
}

constexpr std::string_view kTrueText = "true";
constexpr std::string_view kFalseText = "false";

template <typename T>
T ValueOf(UTF16String const& inText) {
    if constexpr (std::is_same_v<T, UTF16String>) {
        return inText;
    } else if constexpr (std::is_same_v<T, UTF8String>) {
        return utility::UTF16to8(inText);
    } else if constexpr (std::is_same_v<T, bool>) {
        return Equals(inText, kTrueText);
    } else if constexpr (std::is_same_v<T, std::uint16_t>) {
        // A number out of range keeps its low bits.
        return static_cast<std::uint16_t>(impl::ExtractNumber<std::uint32_t>(inText));
    } else {
        return impl::ExtractNumber<T>(inText);
    }
}

} // namespace

PropListXMLHandler::PropListXMLHandler(PropList& ioList) noexcept : mRoot(ioList) {}

PropListXMLHandler::~PropListXMLHandler() = default;

void PropListXMLHandler::StartElement(UTF16String const& inName, Attributes const& inAttributes) {
    Element const& element = Find(inName);
    switch (element.tag) {
    case Tag::kMap:
        return ReadVersion(inAttributes);
    case Tag::kList:
        return StartList();
    case Tag::kKey:
        mTarget = Target::kKey;
        return;
    case Tag::kArray:
        mIsInArray = true;
        return;
    case Tag::kArrayType:
        mIsInArrayType = true;
        return;
    case Tag::kInt:
        return StartValue(IntegerType(inAttributes), false);
    case Tag::kValue:
        return StartValue(element.type, element.flag);
    case Tag::kUnknown:
        return;
    }
}

void PropListXMLHandler::EndElement(UTF16String const& inName) {
    switch (Find(inName).tag) {
    case Tag::kList:
        return EndList();
    case Tag::kKey:
        mTarget = Target::kNone;
        return;
    case Tag::kArray:
        StoreArray();
        mIsInArray = false;
        mArrayType = kPropertyType_None;
        mTarget = Target::kNone;
        return;
    case Tag::kArrayType:
        mIsInArrayType = false;
        return;
    case Tag::kMap:
    case Tag::kInt:
    case Tag::kValue:
    case Tag::kUnknown:
        return EndValue();
    }
}

void PropListXMLHandler::Characters(UTF16String const& inText) {
    switch (mTarget) {
    case Target::kNone:
        return;
    case Target::kKey:
        mKeyText += inText;
        return;
    case Target::kValue:
        mValueText += inText;
        return;
    }
}

void PropListXMLHandler::ReadVersion(Attributes const& inAttributes) {
    UTF16String const* const text = Find(inAttributes, "version");
    if (text == nullptr) {
        return;
    }
    auto const version = impl::ExtractNumber<std::uint16_t>(*text);
    if (version > PropList::GetCurrentVersion()) {
        config::ThrowError(config::kError_PropListVersion);
    }
    impl::PropListAccess::SetVersion(mRoot, version);
}

void PropListXMLHandler::StartList() {
    if (mOpenLists.empty()) {
        mOpenLists.push_back(&mRoot);
        return;
    }
    mOpenLists.push_back(mOpenLists.back()->NewSubList(utility::UTF16to8(mKeyText)));
    mKeyText.clear();
    mTarget = Target::kNone;
}

void PropListXMLHandler::EndList() noexcept {
    if (!mOpenLists.empty()) { // events need not come from a well-formed document
        mOpenLists.pop_back();
    }
}

void PropListXMLHandler::StartValue(PropListPropertyType inType, bool inFlag) noexcept {
    if (inType == kPropertyType_None) {
        return;
    }
    if (mIsInArrayType) {
        mArrayType = inType;
        return;
    }
    mValueType = inType;
    mFlag = inFlag;
    mTarget = Target::kValue;
}

void PropListXMLHandler::EndValue() {
    if (mTarget != Target::kValue) {
        return;
    }
    mTarget = Target::kNone;
    if (mIsInArray) {
        CollectElement();
    } else {
        StoreScalar();
    }
}

void PropListXMLHandler::CollectElement() {
    if (mValueType == kPropertyType_Bool) {
        std::string_view const text = mFlag ? kTrueText : kFalseText;
        mElements.emplace_back(text.begin(), text.end());
    } else {
        mElements.push_back(mValueText);
        mValueText.clear();
    }
}

void PropListXMLHandler::StoreScalar() {
    if (!mOpenLists.empty()) {
        PropList& list = *mOpenLists.back();
        UTF8String const key = utility::UTF16to8(mKeyText);
        VisitPropertyType(mValueType, [&](auto inType) {
            using T = typename decltype(inType)::Type;
            if constexpr (std::is_same_v<T, bool>) {
                list.SetValue(key, mFlag);
            } else if constexpr (std::is_same_v<T, UTF16String>) {
                list.SetValue(key, mValueText);
            } else {
                list.SetValue(key, ValueOf<T>(mValueText));
            }
        });
    }
    mKeyText.clear();
    mValueText.clear();
}

void PropListXMLHandler::StoreArray() {
    if (mOpenLists.empty()) {
        return;
    }
    // The last element decides the type; <array.type> matters only for an array without elements.
    VisitPropertyType(mElements.empty() ? mArrayType : mValueType, [this](auto inType) {
        using T = typename decltype(inType)::Type;
        std::list<T> values;
        for (auto const& text : mElements) {
            values.push_back(ValueOf<T>(text));
        }
        mOpenLists.back()->SetValue(utility::UTF16to8(mKeyText), values);
    });
    mKeyText.clear();
    mValueText.clear();
    mElements.clear();
}

} // namespace brindle::proplist
