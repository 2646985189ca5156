#pragma once

#include <brindle/config/Errors.h>
#include <brindle/config/ReplacementValue.h>

#include <cstdint>

namespace brindle::proplist::impl {

enum ReadError : std::int32_t {
    kReadError_VersionGreaterThan = 20,
    kReadError_MissingParserFactory = 21,
    kReadError_Parsing = 22
};

inline void ThrowReadError(ReadError inError, char const* inKey,
                           config::ReplacementValue const& inFirst = {},
                           config::ReplacementValue const& inSecond = {}) {
    config::ThrowError(config::kErrorLevel_NonFatal, inKey, config::kErrorModule_PropList, inError,
                       true, inFirst, inSecond, {}, {});
}

} // namespace brindle::proplist::impl
