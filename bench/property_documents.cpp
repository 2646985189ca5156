#include "bench/property_entries.h"

#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/xml_parser.hpp>
#include <expat.h>

#include <memory>
#include <sstream>
#include <string>

namespace {

using namespace brindle;
using namespace brindle::proplist;

int Count(benchmark::State& ioState) {
    ioState.SetLabel(ioState.range(0) == 20 ? "20 entries" : "100,000 entries");
    return static_cast<int>(ioState.range(0));
}

UTF8String Document(int inCount) {
    PropList list;
    AddEntries(list, inCount);
    UTF8String text;
    utils::WritePropList(text, list);
    return text;
}

void Read_Brindle(benchmark::State& ioState) {
    std::unique_ptr<xml::DocParserFactory> factory = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(factory);
    UTF8String const text = Document(Count(ioState));
    for (auto _ : ioState) {
        PropList list;
        utils::ReadPropList(text, list);
        if (list.IsEmpty()) {
            ioState.SkipWithError("nothing was read");
        }
    }
    xml::ResetParserFactory();
}

void Read_Plist(benchmark::State& ioState) {
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(MakePlist(Count(ioState)).get(), &text, &length);
    for (auto _ : ioState) {
        plist_t list = nullptr;
        plist_from_xml(text, length, &list);
        if (Plist const owner{list}; owner == nullptr) {
            ioState.SkipWithError("nothing was read");
        }
    }
    plist_to_xml_free(text);
}

void Read_Tree(benchmark::State& ioState) {
    std::ostringstream text;
    boost::property_tree::write_xml(text, MakeTree(Count(ioState)));
    for (auto _ : ioState) {
        std::istringstream input(text.str());
        boost::property_tree::ptree tree;
        boost::property_tree::read_xml(input, tree);
        benchmark::DoNotOptimize(tree);
    }
}

/// The events of our document, which nobody listens to.
void Read_Expat(benchmark::State& ioState) {
    UTF8String const text = Document(Count(ioState));
    for (auto _ : ioState) {
        std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> const parser(
            XML_ParserCreateNS(nullptr, ' '), XML_ParserFree);
        XML_SetElementHandler(
            parser.get(), [](void*, XML_Char const*, XML_Char const**) {},
            [](void*, XML_Char const*) {});
        XML_SetCharacterDataHandler(parser.get(), [](void*, XML_Char const*, int) {});
        if (XML_Parse(parser.get(), reinterpret_cast<char const*>(text.data()),
                      static_cast<int>(text.size()), 1) != XML_STATUS_OK) {
            ioState.SkipWithError("not well-formed");
        }
    }
}

BENCHMARK(Read_Brindle)->Name("ReadPropList/brindle")->Arg(20)->Arg(100'000);
BENCHMARK(Read_Plist)->Name("ReadPropList/libplist")->Arg(20)->Arg(100'000);
BENCHMARK(Read_Tree)->Name("ReadPropList/Boost.PropertyTree")->Arg(20)->Arg(100'000);
BENCHMARK(Read_Expat)->Name("ReadPropList/(Expat, events alone)")->Arg(20)->Arg(100'000);

} // namespace
