#pragma once

#include <brindle/proplist/PropList.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/ptree.hpp>
#include <plist/plist.h>

#include <memory>

// The same entries for each library: preferences under keys of 12 to 19 bytes in no particular
// order, a tenth of each kind: six types of numbers and flags, two of texts, arrays of three
// integers, and nested lists of one flag.

struct FreePlist {
    void operator()(void* inPlist) const { plist_free(inPlist); }
};
using Plist = std::unique_ptr<void, FreePlist>;

/// The number of entries of the row, 20 or 100,000. Labels the row with it.
int Count(benchmark::State& ioState);

void AddEntries(brindle::proplist::PropList& ioList, int inCount);
Plist MakePlist(int inCount);
boost::property_tree::ptree MakeTree(int inCount);
