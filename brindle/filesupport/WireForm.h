#pragma once

#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/time/TickTime.h>
#include <brindle/utility/Guid.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

/// The wire form of the library's values, and of pairs and vectors of whatever has one:
///
///     outStream << std::vector<std::pair<UTF8String, TickTime>>{...};
///
/// It is made of the forms in ByteStreamOperators.h and fails as they do. A value that could not be
/// read completely leaves its target as it was or, if it is a vector, with the elements before.
namespace brindle::filesupport {

/// A 16-bit length and the bytes, as a `std::string`.
inline OByteStream& operator<<(OByteStream& outStream, UTF8String const& inText) {
    return outStream << std::string(inText.begin(), inText.end());
}
inline IByteStream& operator>>(IByteStream& inStream, UTF8String& outText) {
    std::string text;
    inStream >> text;
    outText.assign(text.begin(), text.end());
    return inStream;
}

/// A time is its ticks as a 64-bit integer.
inline OByteStream& operator<<(OByteStream& outStream, time::TickTime const& inTime) {
    return outStream << inTime.GetTicks();
}
inline IByteStream& operator>>(IByteStream& inStream, time::TickTime& outTime) {
    std::int64_t ticks = 0;
    inStream >> ticks;
    outTime = time::TickTime::TicksToTickTime(ticks);
    return inStream;
}

/// A rate is its ticks per frame as a 64-bit integer.
inline OByteStream& operator<<(OByteStream& outStream, time::FrameRate const& inRate) {
    return outStream << inRate.GetTicksPerFrame();
}
inline IByteStream& operator>>(IByteStream& inStream, time::FrameRate& outRate) {
    std::int64_t ticks = 0;
    inStream >> ticks;
    outRate = time::FrameRate::Create(ticks);
    return inStream;
}

/// Sixteen bytes in the order of the text form.
inline OByteStream& operator<<(OByteStream& outStream, utility::Guid const& inGuid) {
    auto const& fields = inGuid.GetGUID();
    outStream << fields.Data1 << fields.Data2 << fields.Data3;
    for (std::uint8_t const byte : fields.Data4) {
        outStream << byte;
    }
    return outStream;
}
inline IByteStream& operator>>(IByteStream& inStream, utility::Guid& outGuid) {
    _GUID fields{};
    inStream >> fields.Data1 >> fields.Data2 >> fields.Data3;
    for (std::uint8_t& byte : fields.Data4) {
        inStream >> byte;
    }
    outGuid = utility::Guid(fields);
    return inStream;
}

/// A point is x and y; a rectangle x, y, width and height.
template <typename T>
OByteStream& operator<<(OByteStream& outStream, geom::PointT<T> const& inPoint) {
    return outStream << inPoint.x << inPoint.y;
}
template <typename T>
IByteStream& operator>>(IByteStream& inStream, geom::PointT<T>& outPoint) {
    geom::PointT<T> point;
    inStream >> point.x >> point.y;
    outPoint = point;
    return inStream;
}

/// A rectangle is x, y, width and height.
template <typename T>
OByteStream& operator<<(OByteStream& outStream, geom::RectT<T> const& inRect) {
    return outStream << inRect.x << inRect.y << inRect.width << inRect.height;
}
template <typename T>
IByteStream& operator>>(IByteStream& inStream, geom::RectT<T>& outRect) {
    geom::RectT<T> rect;
    inStream >> rect.x >> rect.y >> rect.width >> rect.height;
    outRect = rect;
    return inStream;
}

template <typename First, typename Second>
OByteStream& operator<<(OByteStream& outStream, std::pair<First, Second> const& inPair);
template <typename First, typename Second>
IByteStream& operator>>(IByteStream& inStream, std::pair<First, Second>& outPair);

/// A vector is the number of its elements as a 32-bit integer, and the elements. One with more is
/// refused with `byte_stream_exception` before a byte is written. Reading takes no more memory than
/// the elements that are there, whatever number the data gives.
template <typename T>
OByteStream& operator<<(OByteStream& outStream, std::vector<T> const& inVector) {
    if (inVector.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw byte_stream_exception();
    }
    outStream << static_cast<std::uint32_t>(inVector.size());
    for (T const& element : inVector) {
        outStream << element;
    }
    return outStream;
}
template <typename T>
IByteStream& operator>>(IByteStream& inStream, std::vector<T>& outVector) {
    outVector.clear();
    std::uint32_t count = 0;
    inStream >> count;
    for (; count != 0; --count) {
        T element{};
        inStream >> element;
        outVector.push_back(std::move(element));
    }
    return inStream;
}

/// A pair is its first and its second value.
template <typename First, typename Second>
OByteStream& operator<<(OByteStream& outStream, std::pair<First, Second> const& inPair) {
    return outStream << inPair.first << inPair.second;
}
template <typename First, typename Second>
IByteStream& operator>>(IByteStream& inStream, std::pair<First, Second>& outPair) {
    std::pair<First, Second> pair;
    inStream >> pair.first >> pair.second;
    outPair = std::move(pair);
    return inStream;
}

} // namespace brindle::filesupport
