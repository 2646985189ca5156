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

UTF8String Document(int inCount) {
    PropList list;
    AddEntries(list, inCount);
    UTF8String text;
    utils::WritePropList(text, list);
    return text;
}

/// Destroys what was read, outside of the measured time.
template <typename Owner>
void Drop(benchmark::State& ioState, Owner& ioOwner) {
    ioState.PauseTiming();
    ioOwner.reset();
    ioState.ResumeTiming();
}

void Read_Brindle(benchmark::State& ioState) {
    std::unique_ptr<xml::DocParserFactory> factory = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(factory);
    UTF8String const text = Document(Count(ioState));
    for (auto _ : ioState) {
        auto list = std::make_unique<PropList>();
        utils::ReadPropList(text, *list);
        if (list->IsEmpty()) {
            ioState.SkipWithError("nothing was read");
        }
        Drop(ioState, list);
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
        Plist owner{list};
        if (owner == nullptr) {
            ioState.SkipWithError("nothing was read");
        }
        Drop(ioState, owner);
    }
    plist_to_xml_free(text);
}

void Read_Tree(benchmark::State& ioState) {
    std::ostringstream text;
    boost::property_tree::write_xml(text, MakeTree(Count(ioState)));
    for (auto _ : ioState) {
        std::istringstream input(text.str());
        auto tree = std::make_unique<boost::property_tree::ptree>();
        boost::property_tree::read_xml(input, *tree);
        Drop(ioState, tree);
    }
}

/// The events of the same document, with empty handlers.
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
