// Any text as that of the debug database: it is read without a fault, and what its entries are
// written as reads back as the same entries.

#include "debug/src/database/DatabaseFile.h"

#include <cstdint>
#include <cstdlib>
#include <list>

namespace {

using namespace brindle;

UTF8String Written(UTF8String const& inText) {
    proplist::PropList entries;
    debug::ReadEntries(inText, entries);
    std::list<UTF8String> keys;
    entries.GetPropertyNames(keys);
    UTF8String text;
    for (auto const& key : keys) {
        UTF8String value;
        if (!entries.GetValue(key, value)) {
            std::abort();
        }
        ((text += key) += '\t') += value;
        text += '\n';
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    auto const written = Written(UTF8String(inData, inSize));
    if (Written(written) != written) {
        std::abort();
    }
    return 0;
}
