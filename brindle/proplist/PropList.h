#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <list>
#include <vector>

namespace brindle::proplist {

class PropList;
class PropListXMLHandler;

namespace impl {

struct PropNodeSlot;
using PropNodeBlocks = std::vector<std::vector<PropNodeSlot>>;

bool HasTextWithNul(PropList const& inList);

} // namespace impl

/// A typed store of values under keys, which may hold nested lists: the form of preferences and
/// other small documents.
///
///     proplist::PropList preferences;
///     preferences.SetValue("volume"_utf8, 0.5);
///     preferences.NewSubList("window"_utf8)->SetValue("visible"_utf8, true);
///
/// Any byte string is a key, the empty one too; keys are compared by their bytes. Lists nest to any
/// depth. A change that throws (`std::bad_alloc`) leaves the list as it was. A list takes no lock:
/// callers serialise access.
class BRN_API PropList {
public:
    /// An empty list of the current version.
    PropList() noexcept;
    PropList(PropList const&) = delete;
    PropList& operator=(PropList const&) = delete;

    /// Destroys the nested lists too.
    virtual ~PropList();

    /// Reads the property into `outValue`, or appends the elements of an array to `ioValues`.
    /// Returns false, and leaves the argument as it is, if there is no property of exactly that
    /// type under the key: `GetPropertyType` tells a missing property from one of another type.
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

    /// Stores the value, or an array of the values, in place of what the key held, whatever its
    /// type was. An empty array is a property too.
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

    /// A pointer, a string literal among them, would be stored as a `bool`.
    template <typename T>
    void SetValue(UTF8String const& inKey, T const* inPointer) = delete;

    /// The nested list under the key, or null if there is none. The property owns it: it is
    /// destroyed when the property is removed or replaced, or this list is cleared or destroyed.
    [[nodiscard]] virtual PropList* GetSubList(UTF8String const& inKey) const;

    /// The nested list under the key, with its contents; if there is none, a new and empty one in
    /// place of what the key held. The property owns it, as above.
    virtual PropList* NewSubList(UTF8String const& inKey);

    /// Removes all properties. The version stays.
    virtual void Clear();

    /// Appends the list as an XML element, with its properties in the order of their keys: equal
    /// lists give equal text. Numbers are written in the form of the classic locale, whatever the
    /// global one is; floating-point numbers have six significant digits.
    virtual void OutputAsXMLFragment(UTF8String& ioText) const;

    /// Appends the keys in the order of their bytes. Those within nested lists are not among them.
    virtual void GetPropertyNames(std::list<UTF8String>& ioNames) const;

    /// `kPropertyType_None` if there is no such property.
    [[nodiscard]] virtual PropListPropertyType GetPropertyType(UTF8String const& inKey) const;

    /// The version of the document that the list was read from; the current one if it was not read.
    [[nodiscard]] std::uint16_t GetVersion() const noexcept { return mVersion; }
    [[nodiscard]] static std::uint16_t GetCurrentVersion() noexcept { return 4; }

    [[nodiscard]] bool IsEmpty() const noexcept { return mNodes.empty(); }

    /// Returns false if there is no such property.
    bool RemoveValue(UTF8String const& inKey);

private:
    friend class PropListXMLHandler; // sets the version of the document
    friend bool impl::HasTextWithNul(PropList const& inList);

    void DeleteNodes() noexcept;

    impl::PropNodeBlocks mNodes; // sorted by the bytes of their keys
    std::uint16_t mVersion = GetCurrentVersion();
};

} // namespace brindle::proplist
