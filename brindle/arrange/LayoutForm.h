#pragma once

#include <cstdint>

namespace brindle::arrange::impl {

/// A family of layouts of a group's children. The last two break them into lines, in every way.
enum class LayoutForm : std::uint8_t { kRow, kColumn, kRowsInColumn, kColumnsInRow };

} // namespace brindle::arrange::impl
