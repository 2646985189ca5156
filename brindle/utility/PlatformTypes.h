#pragma once

#include <cstdint>

/// @file
/// The structures in which native interfaces pass identifiers, points and rectangles. They are
/// defined here for systems whose headers do not define them.
#if defined(_WIN32)
#include <windows.h>
#else

/// The platform's structure of a globally unique identifier.
struct _GUID {
    ///@{
    /// The fields in the order of the text form, whose last two groups are `Data4`. Numbers are in
    /// the byte order of the machine.
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
    ///@}
};

/// The platform's structure of a point.
struct tagPOINT {
    std::int32_t x; ///< to the right
    std::int32_t y; ///< downward
};

/// The platform's structure of a rectangle: two corners.
struct tagRECT {
    std::int32_t left;   ///< the first column
    std::int32_t top;    ///< the first row
    std::int32_t right;  ///< one past the last column
    std::int32_t bottom; ///< one past the last row
};

#endif
