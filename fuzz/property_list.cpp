// Any bytes as the document of a list. What was read of them, all or what stands before a fault, is
// written as a document that reads back without an error and as the same list.

#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include "tests/RecordingErrorManager.h"

#include <cstdlib>

using namespace brindle;

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    if (!xml::Initialized()) {
        std::unique_ptr<xml::DocParserFactory> factory(new xml::ExpatParserFactory);
        xml::SetParserFactory(factory);
    }
    tests::RecordingErrorManager errors;
    UTF8String text(inData, inData + inSize);
    // To XML a carriage return is a line feed, so a list that holds one settles at the second time.
    for (bool const isSettled : {false, false, true}) {
        proplist::PropList list;
        proplist::utils::ReadPropList(text, list);
        UTF8String written;
        proplist::utils::WritePropList(written, list);
        if (isSettled && (written != text || errors.codes.back() == 22)) {
            std::abort();
        }
        text = written;
        errors.codes = {0};
    }
    return 0;
}
