#include <brindle/proplist/PropListUtils.h>

#include <algorithm>
#include <array>
#include <list>

namespace brindle::proplist::utils {

namespace {

/// The first `kCount` elements of the array; zeros if it has fewer, or there is none.
template <std::size_t kCount, typename T>
std::array<T, kCount> ReadFirst(UTF8String const& inKey, PropList const* inList) {
    std::array<T, kCount> first{};
    std::list<T> values;
    if (inList != nullptr && inList->GetValue(inKey, values) && values.size() >= kCount) {
        std::copy_n(values.begin(), kCount, first.begin());
    }
    return first;
}

template <typename T>
void Write(UTF8String const& inKey, std::list<T> const& inValues, PropList* ioList) {
    if (ioList != nullptr) {
        ioList->SetValue(inKey, inValues);
    }
}

template <typename T>
void WriteRect(UTF8String const& inKey, geom::RectT<T> const& inRect, PropList* ioList) {
    Write<T>(inKey, {inRect.x, inRect.y, inRect.width, inRect.height}, ioList);
}

template <typename T>
geom::RectT<T> ReadRect(UTF8String const& inKey, PropList const* inList) {
    auto const [x, y, width, height] = ReadFirst<4, T>(inKey, inList);
    return {x, y, width, height};
}

} // namespace

void WriteRectF32(UTF8String const& inKey, geom::RectT<float> const& inRect, PropList* ioList) {
    WriteRect(inKey, inRect, ioList);
}

void WriteRect32(UTF8String const& inKey, geom::RectT<std::int32_t> const& inRect,
                 PropList& ioList) {
    WriteRect(inKey, inRect, &ioList);
}

geom::RectT<float> ReadRectF32(UTF8String const& inKey, PropList const* inList) {
    return ReadRect<float>(inKey, inList);
}

geom::RectT<std::int32_t> ReadRect32(UTF8String const& inKey, PropList const& inList) {
    return ReadRect<std::int32_t>(inKey, &inList);
}

void WritePointF32(UTF8String const& inKey, geom::PointT<float> const& inPoint, PropList* ioList) {
    Write<float>(inKey, {inPoint.x, inPoint.y}, ioList);
}

geom::PointT<float> ReadPointF32(UTF8String const& inKey, PropList const* inList) {
    auto const [x, y] = ReadFirst<2, float>(inKey, inList);
    return {x, y};
}

} // namespace brindle::proplist::utils
