// Reads any bytes as the document of a list. Whatever was read, whole or up to a fault, has to be
// written so that it reads back the same, once carriage returns have become line feeds; with exact
// numbers the list itself comes back.

#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include "tests/support/RecordingErrorManager.h"

#include <cstdlib>

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    tests::RecordingErrorManager const errors;
    std::unique_ptr<xml::DocParserFactory> factory(new xml::ExpatParserFactory);
    xml::SetParserFactory(factory);
    UTF8String text(inData, inData + inSize);
    UTF8String before;
    for (int time = 0; time < 3; ++time) {
        before.swap(text);
        proplist::PropList list;
        proplist::utils::ReadPropList(before, list);
        proplist::utils::WritePropList(text, list);
        UTF8String exact;
        proplist::utils::WritePropList(exact, list, proplist::utils::kExactNumbers);
        proplist::PropList again;
        proplist::utils::ReadPropList(exact, again);
        if (list.Clone() != list || (time == 2 && again != list)) {
            std::abort();
        }
    }
    if (text != before) {
        std::abort();
    }
    return 0;
}
