#pragma once

#include <cstdint>

// The structures by which native interfaces pass identifiers, points and rectangles, for systems
// that do not bring them.
#if __has_include(<windows.h>)
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
    std::int32_t right;  ///< just beyond the rectangle
    std::int32_t bottom; ///< just beyond the rectangle
};

#endif
