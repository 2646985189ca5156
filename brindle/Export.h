#pragma once

/// Marks what `libbrindle` exports. The library is built with hidden visibility, so a symbol
/// without this mark cannot be linked against.
#define BRN_API __attribute__((visibility("default")))
