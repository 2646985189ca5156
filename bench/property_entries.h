#pragma once

#include <brindle/proplist/PropList.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/ptree.hpp>
#include <plist/plist.h>

#include <memory>

// The same entries for all: preferences under keys of 12 to 19 bytes that come in no order, of
// every type, one in ten of them an array of three integers and one a nested list of one flag.

struct FreePlist {
    void operator()(void* inPlist) const { plist_free(inPlist); }
};
using Plist = std::unique_ptr<void, FreePlist>;

/// How many entries the row is about, 20 or 100,000; labels it by that.
int Count(benchmark::State& ioState);

void AddEntries(brindle::proplist::PropList& ioList, int inCount);
Plist MakePlist(int inCount);
boost::property_tree::ptree MakeTree(int inCount);
