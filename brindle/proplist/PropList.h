#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <list>
#include <vector>

namespace brindle::proplist {

/// The type of a property. It is part of the stored value, and nothing converts between types.
enum PropListPropertyType : std::int32_t {
    kPropertyType_None = 0, ///< there is no such property

    kPropertyType_UTF16String = 1,
    kPropertyType_UTF8String = 2,
    kPropertyType_Bool = 3,
    kPropertyType_UInt16 = 4,
    kPropertyType_UInt32 = 5,
    kPropertyType_Int32 = 6,
    kPropertyType_Int64 = 7,
    kPropertyType_UInt64 = 8,
    kPropertyType_Float = 9,
    kPropertyType_Double = 10,

    kPropertyType_PropList = 11, ///< a nested list

    kPropertyType_UTF16StringArray = 12,
    kPropertyType_UTF8StringArray = 13,
    kPropertyType_BoolArray = 14,
    kPropertyType_UInt16Array = 15,
    kPropertyType_UInt32Array = 16,
    kPropertyType_Int32Array = 17,
    kPropertyType_Int64Array = 18,
    kPropertyType_UInt64Array = 19,
    kPropertyType_FloatArray = 20,
    kPropertyType_DoubleArray = 21
};

class PropList;
class PropListXMLHandler;

namespace impl {

struct PropNodeSlot;
using PropNodeBlocks = std::vector<std::vector<PropNodeSlot>>;

bool HoldsCutText(PropList const& inList);

} // namespace impl

/// A typed store of values under keys, which may hold lists of its own kind: the form of
/// preferences and other small documents.
///
/// Any byte string is a key, the empty one too; keys differ by their bytes. A look-up never fails
/// otherwise than by its result, and changes that throw (`std::bad_alloc`) leave the list as it
/// was. Lists nest to any depth. There are no locks: callers serialise access.
class BRN_API PropList {
public:
    /// An empty list of the current version.
    PropList() noexcept;
    PropList(PropList const&) = delete;
    PropList& operator=(PropList const&) = delete;

    /// Deletes the nested lists too.
    virtual ~PropList();

    // Reads the property into the value, or appends the elements of an array behind those that are
    // in `ioValues`. False, with the argument left alone, if there is no property of exactly that
    // type.
    virtual bool GetValue(UTF8String const& inKey, std::list<double>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, double& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<float>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, float& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint64_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint64_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::int64_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::int64_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::int32_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::int32_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint32_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint32_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint16_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint16_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<bool>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, bool& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<UTF8String>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, UTF8String& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<UTF16String>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, UTF16String& outValue) const;

    // Stores the value, or an array of the values, in place of what the key held, whatever its
    // type. An empty array is a property too.
    virtual void SetValue(UTF8String const& inKey, std::list<double> const& inValues);
    virtual void SetValue(UTF8String const& inKey, double const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<float> const& inValues);
    virtual void SetValue(UTF8String const& inKey, float const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint64_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint64_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::int64_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::int64_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::int32_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::int32_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint32_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint32_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint16_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint16_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<bool> const& inValues);
    virtual void SetValue(UTF8String const& inKey, bool const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<UTF8String> const& inValues);
    virtual void SetValue(UTF8String const& inKey, UTF8String const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<UTF16String> const& inValues);
    virtual void SetValue(UTF8String const& inKey, UTF16String const& inValue);

    /// A pointer, a literal among them, would be stored as a `bool`.
    template <typename T>
    void SetValue(UTF8String const& inKey, T const* inPointer) = delete;

    /// The nested list, which stays the property's own: it goes when the property is removed or
    /// replaced, or this list is cleared or destroyed. Null if there is no nested list under the
    /// key.
    virtual PropList* GetSubList(UTF8String const& inKey) const;

    /// The nested list under the key, with what it holds; if there is none, a new and empty one in
    /// place of what the key held. It stays the property's own, as above.
    virtual PropList* NewSubList(UTF8String const& inKey);

    /// Removes all properties. The version stays.
    virtual void Clear();

    /// Appends the list as an XML element, with its properties in the order of their keys: equal
    /// lists give equal text. Numbers are written as the classic locale has them, whatever the
    /// global one is; floating-point numbers with six significant digits.
    virtual void OutputAsXMLFragment(UTF8String& ioText) const;

    /// Appends the keys in their order; without those of nested lists.
    virtual void GetPropertyNames(std::list<UTF8String>& ioNames) const;

    virtual PropListPropertyType GetPropertyType(UTF8String const& inKey) const;

    /// The version of the document format that the list was read from; the current one if it was
    /// not read.
    std::uint16_t GetVersion() const noexcept { return mVersion; }
    static std::uint16_t GetCurrentVersion() noexcept { return 4; }

    bool IsEmpty() const noexcept { return mNodes.empty(); }

    /// False if there is no such property.
    bool RemoveValue(UTF8String const& inKey);

private:
    friend class PropListXMLHandler; // sets the version that a document tells
    friend bool impl::HoldsCutText(PropList const& inList);

    void DeleteNodes() noexcept;

    impl::PropNodeBlocks mNodes; // by the bytes of their keys
    std::uint16_t mVersion = GetCurrentVersion();
};

} // namespace brindle::proplist
