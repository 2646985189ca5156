#pragma once

#include <cstdint>

// The structures in which native interfaces pass identifiers, points and rectangles. They are
// defined here for systems whose headers do not define them.
#if defined(_WIN32)
#include <windows.h>
#else

struct _GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

struct tagPOINT {
    std::int32_t x;
    std::int32_t y;
};

struct tagRECT {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;  ///< one past the last column
    std::int32_t bottom; ///< one past the last row
};

#endif
