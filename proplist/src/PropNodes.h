#pragma once

#include "proplist/src/ValueElements.h"

#include <brindle/proplist/PropList.h>

#include <list>
#include <memory>
#include <vector>

namespace brindle::proplist::impl {

/// The type number of a scalar; an array of it has the number `kTypesToArray` higher.
template <typename T>
constexpr PropListPropertyType kScalarType = kPropertyType_None;
template <>
constexpr PropListPropertyType kScalarType<UTF16String> = kPropertyType_UTF16String;
template <>
constexpr PropListPropertyType kScalarType<UTF8String> = kPropertyType_UTF8String;
template <>
constexpr PropListPropertyType kScalarType<bool> = kPropertyType_Bool;
template <>
constexpr PropListPropertyType kScalarType<std::uint16_t> = kPropertyType_UInt16;
template <>
constexpr PropListPropertyType kScalarType<std::uint32_t> = kPropertyType_UInt32;
template <>
constexpr PropListPropertyType kScalarType<std::int32_t> = kPropertyType_Int32;
template <>
constexpr PropListPropertyType kScalarType<std::int64_t> = kPropertyType_Int64;
template <>
constexpr PropListPropertyType kScalarType<std::uint64_t> = kPropertyType_UInt64;
template <>
constexpr PropListPropertyType kScalarType<float> = kPropertyType_Float;
template <>
constexpr PropListPropertyType kScalarType<double> = kPropertyType_Double;

constexpr int kTypesToArray = kPropertyType_UTF16StringArray - kPropertyType_UTF16String;

/// What stands under a key: one value of one type. Each concrete class has a type number of its
/// own, `kType`, so that the number tells what a node may be cast to.
class PropNodeBase {
public:
    explicit PropNodeBase(PropListPropertyType inType) noexcept : mType(inType) {}
    PropNodeBase(PropNodeBase const&) = delete;
    PropNodeBase& operator=(PropNodeBase const&) = delete;
    virtual ~PropNodeBase() = default;

    /// Appends the value as its XML element, without recursion into nested lists.
    virtual void AppendXML(UTF8String& ioText) const = 0;

    PropListPropertyType GetType() const noexcept { return mType; }

private:
    PropListPropertyType const mType;
};

/// A node that holds one scalar.
template <typename T>
class ScalarPropNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = kScalarType<T>;

    explicit ScalarPropNode(T const& inValue) : PropNodeBase(kType), mValue(inValue) {}

    void AppendXML(UTF8String& ioText) const override { AppendElement(ioText, mValue); }
    void ReadInto(T& outValue) const { outValue = mValue; }
    void Assign(T const& inValue) { mValue = inValue; }

private:
    T mValue;
};

/// A node that holds an array of scalars.
template <typename T>
class PropListArrayNode final : public PropNodeBase {
public:
    static constexpr auto kType = PropListPropertyType(kScalarType<T> + kTypesToArray);

    explicit PropListArrayNode(std::list<T> const& inValues)
        : PropNodeBase(kType), mValues(inValues.begin(), inValues.end()) {}

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

    PropListNode() : PropNodeBase(kType) {}

    void AppendXML(UTF8String& ioText) const override { mList.OutputAsXMLFragment(ioText); }

    PropList mList;

    /// Links the nodes that are about to be deleted, so that deletion needs neither stack nor heap.
    std::unique_ptr<PropListNode> mNextToDelete;
};

} // namespace brindle::proplist::impl
