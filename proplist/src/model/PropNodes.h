#pragma once

#include "proplist/src/model/NodeBlocks.h"
#include "proplist/src/model/ValueElements.h"

#include <brindle/proplist/PropList.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <memory>
#include <type_traits>
#include <vector>

namespace brindle::proplist::impl {

/// A key and its value. Each concrete class has a type number of its own, `kType`, so the number
/// decides which class a node may be cast to.
class PropNodeBase {
public:
    PropNodeBase(PropListPropertyType inType, UTF8String const& inKey)
        : mType(inType), mKey(inKey) {}
    PropNodeBase(PropNodeBase const&) = delete;
    PropNodeBase& operator=(PropNodeBase const&) = delete;
    virtual ~PropNodeBase() = default;

    /// Appends the value as its XML element.
    virtual void AppendXML(UTF8String& ioText, NumberDigits inDigits) const = 0;

    /// A node with the same key and value; for a nested list, with an empty list.
    virtual std::unique_ptr<PropNodeBase> Clone() const = 0;

    /// Compares the value with that of a node of the same type; true for any nested lists.
    virtual bool HasValueOf(PropNodeBase const& inOther) const = 0;

    PropListPropertyType GetType() const noexcept { return mType; }
    UTF8String const& GetKey() const noexcept { return mKey; }

private:
    PropListPropertyType const mType;
    UTF8String const mKey;
};

/// Equality of values by which a copy equals its original: a NaN equals a NaN.
template <typename T>
bool AreSame(T const& inLHS, T const& inRHS) {
    if constexpr (std::is_floating_point_v<T>) {
        return inLHS == inRHS || (std::isnan(inLHS) && std::isnan(inRHS));
    } else {
        return inLHS == inRHS;
    }
}

/// A node with one scalar, in spite of its name: arrays are in `PropListArrayNode`.
template <typename T>
class SimpleTypeArrayNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = PropertyTypeOf<T>::kScalar;

    SimpleTypeArrayNode(UTF8String const& inKey, T const& inValue)
        : PropNodeBase(kType, inKey), mValue(inValue) {}

    void AppendXML(UTF8String& ioText, NumberDigits inDigits) const override {
        AppendElement(ioText, mValue, inDigits);
    }
    std::unique_ptr<PropNodeBase> Clone() const override {
        return std::make_unique<SimpleTypeArrayNode>(GetKey(), mValue);
    }
    bool HasValueOf(PropNodeBase const& inOther) const override {
        return AreSame(mValue, static_cast<SimpleTypeArrayNode const&>(inOther).mValue);
    }
    void ReadInto(T& outValue) const { outValue = mValue; }
    T const& Value() const noexcept { return mValue; }
    void Assign(T const& inValue) { mValue = inValue; }

private:
    T mValue;
};

using StringPropNode = SimpleTypeArrayNode<UTF8String>;
using UnicodeStringPropNode = SimpleTypeArrayNode<UTF16String>;
using BoolPropNode = SimpleTypeArrayNode<bool>;

/// A node with an array of scalars.
template <typename T>
class PropListArrayNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = PropertyTypeOf<T>::kArray;

    template <typename Values>
    PropListArrayNode(UTF8String const& inKey, Values const& inValues)
        : PropNodeBase(kType, inKey), mValues(inValues.begin(), inValues.end()) {}

    void AppendXML(UTF8String& ioText, NumberDigits inDigits) const override {
        AppendText(ioText, "<array>\n<array.type>");
        AppendText(ioText, ElementTags<T>::kEmpty);
        AppendText(ioText, "</array.type>\n");
        for (auto const& value : mValues) {
            // The elements of a vector of bool are of another type in some standard libraries.
            AppendElement(ioText, static_cast<T const&>(value), inDigits);
        }
        AppendText(ioText, "</array>\n");
    }

    std::unique_ptr<PropNodeBase> Clone() const override {
        return std::make_unique<PropListArrayNode>(GetKey(), mValues);
    }

    bool HasValueOf(PropNodeBase const& inOther) const override {
        auto const& others = static_cast<PropListArrayNode const&>(inOther).mValues;
        return std::equal(mValues.begin(), mValues.end(), others.begin(), others.end(),
                          [](T const& inLHS, T const& inRHS) { return AreSame(inLHS, inRHS); });
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

/// A node with a nested list.
class PropListNode final : public PropNodeBase {
public:
    static constexpr PropListPropertyType kType = kPropertyType_PropList;

    explicit PropListNode(UTF8String const& inKey) : PropNodeBase(kType, inKey) {}

    /// With six digits: a writer that asks for more does not come here, because it visits nested
    /// lists without recursion.
    void AppendXML(UTF8String& ioText, NumberDigits) const override {
        mList.OutputAsXMLFragment(ioText);
    }
    std::unique_ptr<PropNodeBase> Clone() const override {
        return std::make_unique<PropListNode>(GetKey());
    }
    bool HasValueOf(PropNodeBase const&) const override { return true; }

    PropList mList;

    /// Links the nodes that are being deleted, so that deletion needs neither recursion nor memory.
    std::unique_ptr<PropListNode> mNextToDelete;
};

} // namespace brindle::proplist::impl
