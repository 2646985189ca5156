#pragma once

#include "proplist/src/model/NodeBlocks.h"
#include "proplist/src/model/ValueElements.h"

#include <brindle/proplist/PropList.h>

#include <list>
#include <memory>
#include <vector>

namespace brindle::proplist::impl {

/// The type number of a scalar; an array of it has the number `kTypesToArray` higher.
template <typename T>
constexpr PropListPropertyType kScalarType = kPropertyType_None;
template <>
inline constexpr PropListPropertyType kScalarType<UTF16String> = kPropertyType_UTF16String;
template <>
inline constexpr PropListPropertyType kScalarType<UTF8String> = kPropertyType_UTF8String;
template <>
inline constexpr PropListPropertyType kScalarType<bool> = kPropertyType_Bool;
template <>
inline constexpr PropListPropertyType kScalarType<std::uint16_t> = kPropertyType_UInt16;
template <>
inline constexpr PropListPropertyType kScalarType<std::uint32_t> = kPropertyType_UInt32;
template <>
inline constexpr PropListPropertyType kScalarType<std::int32_t> = kPropertyType_Int32;
template <>
inline constexpr PropListPropertyType kScalarType<std::int64_t> = kPropertyType_Int64;
template <>
inline constexpr PropListPropertyType kScalarType<std::uint64_t> = kPropertyType_UInt64;
template <>
inline constexpr PropListPropertyType kScalarType<float> = kPropertyType_Float;
template <>
inline constexpr PropListPropertyType kScalarType<double> = kPropertyType_Double;

constexpr int kTypesToArray = kPropertyType_UTF16StringArray - kPropertyType_UTF16String;

/// A key and what stands under it: one value of one type. Each concrete class has a type number of
/// its own, `kType`, so that the number tells what a node may be cast to.
class PropNodeBase {
public:
    PropNodeBase(PropListPropertyType inType, UTF8String const& inKey)
        : mType(inType), mKey(inKey) {}
    PropNodeBase(PropNodeBase const&) = delete;
    PropNodeBase& operator=(PropNodeBase const&) = delete;
    virtual ~PropNodeBase() = default;

    /// Appends the value as its XML element, without recursion into nested lists.
    virtual void AppendXML(UTF8String& ioText) const = 0;

    PropListPropertyType GetType() const noexcept { return mType; }
    UTF8String const& GetKey() const noexcept { return mKey; }

private:
    PropListPropertyType const mType;
    UTF8String const mKey;
};

/// A node that holds one scalar, in spite of its name: arrays are `PropListArrayNode`.
template <typename T>
class SimpleTypeArrayNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = kScalarType<T>;

    SimpleTypeArrayNode(UTF8String const& inKey, T const& inValue)
        : PropNodeBase(kType, inKey), mValue(inValue) {}

    void AppendXML(UTF8String& ioText) const override { AppendElement(ioText, mValue); }
    void ReadInto(T& outValue) const { outValue = mValue; }
    T const& Value() const noexcept { return mValue; }
    void Assign(T const& inValue) { mValue = inValue; }

private:
    T mValue;
};

using StringPropNode = SimpleTypeArrayNode<UTF8String>;
using UnicodeStringPropNode = SimpleTypeArrayNode<UTF16String>;
using BoolPropNode = SimpleTypeArrayNode<bool>;

/// A node that holds an array of scalars.
template <typename T>
class PropListArrayNode final : public PropNodeBase {
public:
    static constexpr auto kType = PropListPropertyType(kScalarType<T> + kTypesToArray);

    PropListArrayNode(UTF8String const& inKey, std::list<T> const& inValues)
        : PropNodeBase(kType, inKey), mValues(inValues.begin(), inValues.end()) {}

    void AppendXML(UTF8String& ioText) const override {
        AppendText(ioText, "<array>\n<array.type>");
        AppendEmptyElement<T>(ioText);
        AppendText(ioText, "</array.type>\n");
        for (auto const& value : mValues) {
            AppendElement(ioText, value);
        }
        AppendText(ioText, "</array>\n");
    }

    void ReadInto(std::list<T>& ioValues) const {
        ioValues.insert(ioValues.end(), mValues.begin(), mValues.end());
    }

    std::vector<T> const& Values() const noexcept { return mValues; }

    void Assign(std::list<T> const& inValues) {
        std::vector<T>(inValues.begin(), inValues.end()).swap(mValues);
    }

private:
    std::vector<T> mValues;
};

/// A node that holds a list.
class PropListNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = kPropertyType_PropList;

    explicit PropListNode(UTF8String const& inKey) : PropNodeBase(kType, inKey) {}

    void AppendXML(UTF8String& ioText) const override { mList.OutputAsXMLFragment(ioText); }

    PropList mList;

    /// Links the nodes that are about to be deleted, so that deletion needs neither stack nor heap.
    std::unique_ptr<PropListNode> mNextToDelete;
};

} // namespace brindle::proplist::impl
