#pragma once

/// Marks what `libbrindle` exports. The library is built with hidden visibility, so that a symbol
/// without this mark is the library's own.
#define BRN_API __attribute__((visibility("default")))
