#pragma once

#include <cstdint>

namespace brindle::arrange::impl {

/// A form of layout of a group's children. Those of the last two forms break them into lines, in
/// every possible way.
enum class LayoutForm : std::uint8_t { kRow, kColumn, kRowsInColumn, kColumnsInRow };

} // namespace brindle::arrange::impl
