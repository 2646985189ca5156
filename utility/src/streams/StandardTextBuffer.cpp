#include "utility/src/streams/StandardTextBuffer.h"

#include <brindle/utility/TextConversions.h>
#include <brindle/utility/Unicode.h>

#include <utility>

namespace brindle::utility {

std::streamsize StandardTextBuffer::xsputn(std::uint16_t const* inUnits, std::streamsize inCount) {
    UTF16String text;
    if (mHighSurrogate != 0) {
        text += std::exchange(mHighSurrogate, std::uint16_t{0});
    }
    text.append(inUnits, static_cast<std::size_t>(inCount));
    if (!text.empty() && UnicodeSurrogate(text.back()) == kSurrogate_High) {
        mHighSurrogate = text.back();
        text.pop_back();
    }
    auto const bytes = Utf8(text);
    auto const size = static_cast<std::streamsize>(bytes.size());
    auto* const buffer = mStream.rdbuf();
    bool const isWritten = buffer != nullptr && buffer->sputn(View(bytes).data(), size) == size;
    return isWritten ? inCount : 0;
}

StandardTextBuffer::int_type StandardTextBuffer::overflow(int_type inUnit) {
    if (traits_type::eq_int_type(inUnit, traits_type::eof())) {
        return traits_type::not_eof(inUnit);
    }
    auto const unit = traits_type::to_char_type(inUnit);
    return xsputn(&unit, 1) == 1 ? inUnit : traits_type::eof();
}

int StandardTextBuffer::sync() {
    auto* const buffer = mStream.rdbuf();
    return buffer != nullptr ? buffer->pubsync() : -1;
}

} // namespace brindle::utility
