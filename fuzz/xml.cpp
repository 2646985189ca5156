// Parses any bytes. The elements of the events have to be nested, and closed if the parse succeeds;
// a failure has to say what it was, and where a malformed document is malformed.

#include <brindle/xml/ExpatParser.h>

#include <cstdlib>
#include <vector>

using namespace brindle;

namespace {

void Require(bool inIsTrue) {
    if (!inIsTrue) {
        std::abort();
    }
}

class Nesting : public xml::AbstractParseHandler {
public:
    explicit Nesting(bool& outIsEnded) : mIsEnded(outIsEnded) {}

    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const&) override {
        mOpen.push_back(inName);
    }
    void EndElement(UTF16String const& inName) override {
        Require(!mOpen.empty() && mOpen.back() == inName);
        mOpen.pop_back();
    }
    void Characters(UTF16String const& inText) override {
        Require(!mOpen.empty() && !inText.empty());
    }
    void EndDocument() override {
        Require(mOpen.empty());
        mIsEnded = true;
    }

private:
    std::vector<UTF16String> mOpen;
    bool& mIsEnded;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    bool isEnded = false;
    std::unique_ptr<xml::AbstractParseHandler> handler = std::make_unique<Nesting>(isEnded);
    xml::ExpatParser parser(handler);
    bool const isWhole =
        parser.ParseBuffer(UTF8String(inData, inSize)) == xml::kXMLParseStatus_Success;
    xml::XMLParseFault const& fault = parser.LastFault();
    Require(isWhole == isEnded);
    Require(fault.kind == (isWhole ? xml::kXMLParseFault_None : xml::kXMLParseFault_Malformed));
    Require(isWhole || (fault.line > 0 && fault.column > 0 && *fault.reason != 0));
    return 0;
}
