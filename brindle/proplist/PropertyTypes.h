#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <iterator>
#include <string_view>

// The types of properties, in one table. To add a type, add its row here and its overloads of
// `GetValue` and `SetValue` to `PropList`; everything else is made from the row.
//
// A row: the part of the enumerators' names, the C++ type, the number of the type and of arrays of
// it, the name for people, and the XML element with its attributes.

/// The rows of the numbers. `X` is called with each row of the table.
#define BRN_PROPERTY_NUMBER_TYPES(X)                                                               \
    X(UInt16, std::uint16_t, 4, 15, "uint16", "int", " type='unsigned' size='16'")                 \
    X(UInt32, std::uint32_t, 5, 16, "uint32", "int", " type='unsigned' size='32'")                 \
    X(Int32, std::int32_t, 6, 17, "int32", "int", " type='signed' size='32'")                      \
    X(Int64, std::int64_t, 7, 18, "int64", "int", " type='signed' size='64'")                      \
    X(UInt64, std::uint64_t, 8, 19, "uint64", "int", " type='unsigned' size='64'")                 \
    X(Float, float, 9, 20, "float", "float", "")                                                   \
    X(Double, double, 10, 21, "double", "double", "")

/// All rows of the table. `X` is called with each.
#define BRN_PROPERTY_TYPES(X)                                                                      \
    X(UTF16String, UTF16String, 1, 12, "ustring", "ustring", "")                                   \
    X(UTF8String, UTF8String, 2, 13, "string", "string", "")                                       \
    X(Bool, bool, 3, 14, "bool", "bool", "")                                                       \
    BRN_PROPERTY_NUMBER_TYPES(X)

namespace brindle::proplist {

/// The type of a property. It is part of the stored value, and nothing converts between types.
/// Beside these two there are `kPropertyType_Int32`, `kPropertyType_Int32Array` and so on.
enum PropListPropertyType : std::int32_t {
    kPropertyType_None = 0,      ///< there is no such property
    kPropertyType_PropList = 11, ///< a nested list
#define BRN_ENUMERATORS(Name, T, inNumber, inArrayNumber, ...)                                     \
    kPropertyType_##Name = inNumber,                 /**< a single value */                        \
        kPropertyType_##Name##Array = inArrayNumber, /**< an array of such values */
    BRN_PROPERTY_TYPES(BRN_ENUMERATORS)
#undef BRN_ENUMERATORS
};

/// A row of the table.
struct PropertyTypeRow {
    PropListPropertyType scalar; ///< of a single value
    PropListPropertyType array;  ///< of an array of such values
    std::string_view name;       ///< for people: "int32"
    std::string_view element;    ///< the name of its XML element: "int"
    std::string_view attributes; ///< what follows the name in the start tag
};

/// The table, in the order of the rows.
inline constexpr PropertyTypeRow kPropertyTypes[] = {
#define BRN_ROW(Name, T, inNumber, inArrayNumber, ...)                                             \
    {kPropertyType_##Name, kPropertyType_##Name##Array, __VA_ARGS__},
    BRN_PROPERTY_TYPES(BRN_ROW)
#undef BRN_ROW
};

/// The row of a scalar or of an array; null for `kPropertyType_None` and `kPropertyType_PropList`.
constexpr PropertyTypeRow const* FindPropertyType(PropListPropertyType inType) noexcept {
    for (PropertyTypeRow const& type : kPropertyTypes) {
        if (type.scalar == inType || type.array == inType) {
            return &type;
        }
    }
    return nullptr;
}

/// True for the type of an array. A nested list is none.
constexpr bool IsArray(PropListPropertyType inType) noexcept {
    PropertyTypeRow const* const type = FindPropertyType(inType);
    return type != nullptr && type->array == inType;
}

/// The numbers of a C++ type: `PropertyTypeOf<float>::kScalar`. Not defined for a type that no
/// property has.
template <typename T>
struct PropertyTypeOf;

#define BRN_TYPE_OF(Name, T, ...)                                                                  \
    /** The numbers of this type. */                                                               \
    template <>                                                                                    \
    struct PropertyTypeOf<T> {                                                                     \
        /** The type itself. */                                                                    \
        using Type = T;                                                                            \
        /** The number of a single value. */                                                       \
        static constexpr PropListPropertyType kScalar = kPropertyType_##Name;                      \
        /** The number of an array of such values. */                                              \
        static constexpr PropListPropertyType kArray = kPropertyType_##Name##Array;                \
    };
BRN_PROPERTY_TYPES(BRN_TYPE_OF)
#undef BRN_TYPE_OF

/// Calls the function with the `PropertyTypeOf` of a scalar's type, or of the type of an array's
/// elements. Returns false, without a call, for `kPropertyType_None` and `kPropertyType_PropList`.
///
///     VisitPropertyType(list.GetPropertyType(key), [&](auto inType) {
///         typename decltype(inType)::Type value{};
///         list.GetValue(key, value);
///     });
template <typename Function>
bool VisitPropertyType(PropListPropertyType inType, Function&& inFunction) {
    switch (inType) {
    case kPropertyType_None:
    case kPropertyType_PropList:
        break;
#define BRN_CASES(Name, T, ...)                                                                    \
    case kPropertyType_##Name:                                                                     \
    case kPropertyType_##Name##Array:                                                              \
        inFunction(PropertyTypeOf<T>());                                                           \
        return true;
        BRN_PROPERTY_TYPES(BRN_CASES)
#undef BRN_CASES
    }
    return false;
}

namespace impl {

/// True if no two types share a name or an element with its attributes, and attributes are what the
/// reader can tell apart: none, or a type and a size. Numbers differ because `VisitPropertyType`
/// has a case for each.
constexpr bool ArePropertyTypesSound() {
    for (PropertyTypeRow const& type : kPropertyTypes) {
        if (type.name.empty() || type.element.empty() ||
            (!type.attributes.empty() && type.element != "int")) {
            return false;
        }
        for (PropertyTypeRow const& other : kPropertyTypes) {
            bool const sharesElement =
                type.element == other.element && type.attributes == other.attributes;
            if (&type != &other && (type.name == other.name || sharesElement)) {
                return false;
            }
        }
    }
    return true;
}

static_assert(ArePropertyTypesSound());
static_assert(IsArray(kPropertyType_BoolArray) && !IsArray(kPropertyType_Bool) &&
              !IsArray(kPropertyType_PropList) && !IsArray(kPropertyType_None));

} // namespace impl

} // namespace brindle::proplist
