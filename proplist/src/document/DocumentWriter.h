#pragma once

#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <functional>

namespace brindle::proplist::impl {

/// Takes what was written so far out of `ioText`, which it leaves empty. What it takes ends between
/// two lines.
using TakeBlock = std::function<void(UTF8String& ioText)>;

/// How long a text grows before a block of it is taken.
constexpr std::size_t kWrittenBlock = std::size_t{1} << 16;

/// Appends the list as an XML element. An empty `inTake` leaves the whole text in `ioText`.
void AppendFragment(UTF8String& ioText, PropList const& inList,
                    utils::WriteOptions const& inOptions, TakeBlock const& inTake);

/// Appends the whole document.
void AppendDocument(UTF8String& ioText, PropList const& inList,
                    utils::WriteOptions const& inOptions, TakeBlock const& inTake);

} // namespace brindle::proplist::impl
