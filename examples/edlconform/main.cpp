// Checks edit decision lists, conforms them to a frame rate, and prints the time of each reel.
//
//   --from=RATE                    the rate at which the lists count, such as 25 or 29.97
//   --to=RATE                      another rate to conform to
//   --counting=drop or non-drop    another counting than that of the lists
//   --start=01:00:00:00+25*60      where the record time begins
//   --sort=reel or source          by reel and record time, or by reel and source time; without
//                                  it, by record time
//   --reels='A B C'                the reels that exist
//   --output=DIR                   writes the conformed lists
//   --plist=FILE                   writes a property list with the exact times
//   --cache=DIR                    keeps what was read
//   --jobs=N                       how many lists are read at once; without it, one a processor
//
// Exit status: 0 done, 1 done but something was reported, 2 wrong usage.
#include "EditList.h"

#include <brindle/config/Describe.h>
#include <brindle/config/PrintingErrorManager.h>
#include <brindle/config/ScopedManagers.h>
#include <brindle/filesupport/PathNames.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/ForEach.h>
#include <brindle/time/FrameRateNames.h>

#include <iostream>

namespace edlconform {

constexpr char kHelp[] =
    "$$$/edl/Help=usage: edlconform --from=RATE [OPTION=VALUE...] FILE...\noptions: --to= --sort= "
    "--counting= --start= --reels= --output= --plist= --cache= --jobs=\n";

void Require(bool inIsMet, char const* inKey) {
    if (!inIsMet) {
        throw std::invalid_argument(inKey);
    }
}

// bridge: the options and operands of a command line
struct Arguments {
    Arguments(int inCount, char** inWords) {
        for (int i = 1; i < inCount; ++i) {
            std::string const word = inWords[i], name = word.substr(0, word.find('='));
            bool const isOption = word.compare(0, 2, "--") == 0;
            Require(!isOption || std::string(kHelp).find(name + '=') != std::string::npos,
                    "$$$/edl/Option=There is no such option.");
            (isOption ? words[name] : files.emplace_back()) =
                word.substr(isOption ? word.find('=') + 1 : 0);
        }
    }
    /// Empty if there is no such option.
    std::string operator[](std::string const& inName) const {
        return words.count("--" + inName) != 0 ? words.at("--" + inName) : "";
    }

    std::map<std::string, std::string> words{{"--jobs", "-1"}};
    std::vector<std::string> files;
};
// end of bridge

FrameRate RateOf(std::string const& inName) {
    auto const rate = FrameRate::FromName(inName);
    Require(rate && TimecodeFormat::Create(*rate, FrameCounting::kNonDrop),
            "$$$/edl/Rate=--from and --to are frame rates that have timecode.");
    return *rate;
}

File FileIn(std::string const& inDir, std::string const& inFile, UTF16String const& inExtension) {
    File const file(DirFromNative(inDir), FileFromNative(inFile).GetName());
    return WithExtension(file, inExtension);
}

/// Makes a list, which is sorted by record time, what the options want. Its times stay exact.
void Change(EditList& ioList, Arguments const& inArguments) {
    std::string const counting = inArguments["counting"], start = inArguments["start"],
                      sort = inArguments["sort"];
    ioList.rate = RateOf(inArguments[inArguments["to"].empty() ? "from" : "to"]);
    bool const isCounted = ioList.Count(counting.empty() ? ioList.isDropFrame : counting == "drop");
    Require(counting.empty() || (isCounted && (counting == "drop" || counting == "non-drop")),
            "$$$/edl/Counting=--counting is drop, if the rate has it, or non-drop.");
    auto const begin = ioList.Format().Evaluate(start.empty() ? "0" : start);
    Require(begin.fault == TimecodeFault::kNone &&
                begin.time == std::clamp(begin.time, kTickTime_Zero, kTickTime_Max),
            "$$$/edl/Start=--start is no time at this rate.");
    bool const isMoved = !start.empty() && !ioList.events.empty();
    TickTime const way = isMoved ? begin.time - ioList.events[0].recordIn : TickTime();
    for (Event& event : ioList.events) {
        event.recordIn += way;
        event.recordOut += way;
    }
    Require(sort.empty() || sort == "reel" || sort == "source",
            "$$$/edl/Sort=--sort is reel or source.");
    Sort(ioList, !sort.empty(), sort == "source");
}

/// What became of a list: nothing if it could not be read.
using Outcome = std::pair<std::optional<EditList>, std::vector<CollectedError>>;

Outcome Process(std::string const& inFile, Arguments const& inArguments) {
    File const cache = FileIn(inArguments["cache"], inFile, u".cache"_utf16);
    ErrorCollector errors;
    try {
        EditList list{inFile, RateOf(inArguments["from"]), false, {}, {}};
        Load(list, inArguments["cache"].empty() ? nullptr : &cache, errors);
        Sort(list, false, false);
        Check(list, Words(Utf16(inArguments["reels"])));
        Change(list, inArguments);
        EditList const conformed = Conformed(list);
        if (!inArguments["output"].empty()) {
            WriteFile(FileIn(inArguments["output"], inFile, u".edl"_utf16), TextOf(conformed));
        }
        return {list, errors.TakeErrors()};
    } catch (std::exception const& error) {
        Report("$$$/edl/Failed=^1: ^2", inFile, Describe(error));
    }
    return {std::nullopt, errors.TakeErrors()};
}

/// Prints the total of each reel and of the list, and adds the exact times to the property list.
void Tell(EditList const& inList, proplist::PropList& ioProperties) {
    std::map<UTF16String, TickTime, NaturalLess> totals;
    auto* const list = ioProperties.NewSubList(inList.name);
    for (Event const& event : inList.events) {
        totals[event.reel] += event.recordOut - event.recordIn;
        auto* const entry = list->NewSubList(ToStd(NumberToString(event.line, 6, 0, {})));
        entry->Set("reel", event.reel);
        entry->Set("source", std::vector<TickTime>{event.sourceIn, event.sourceOut});
        entry->Set("record", std::vector<TickTime>{event.recordIn, event.recordOut});
    }
    TickTime sum;
    for (auto const& [reel, total] : totals) {
        sum += total;
        std::cout << "  " << reel << ' ' << inList.Format().ToText(total) << '\n';
    }
    std::cout << Text("$$$/edl/Total=^1: ^2 ^2{one=event|other=events}, ^3\n",
                      {inList.name, inList.events.size(), inList.Format().ToText(sum)});
}

void Run(Arguments const& inArguments) {
    std::map<std::filesystem::path, int> uses;
    for (std::filesystem::path const file : inArguments.files) {
        auto const target = ToPath(FileIn(inArguments["output"], file, u".edl"_utf16));
        Require(
            ++uses[absolute(file).lexically_normal()] == 1 &&
                (inArguments["output"].empty() || ++uses[absolute(target).lexically_normal()] == 1),
            "$$$/edl/Target=A list comes twice, or would be replaced by another one.");
    }
    EditList none{"", RateOf(inArguments["from"]), false, {}, {}};
    Change(none, inArguments); // throws if the options make no sense
    Require(!inArguments.files.empty(), "$$$/edl/Files=There is no FILE.");
    proplist::PropList properties;
    auto const process = [&](std::size_t i) { return Process(inArguments.files[i], inArguments); };
    auto const pool = threads::CreateAsyncThreadedExecutor(
        "edlconform", std::atoi(inArguments["jobs"].c_str()), threads::kThreadPriorityNormal);
    auto const deliver = [&](std::size_t, Outcome const& outcome) {
        std::for_each(outcome.second.begin(), outcome.second.end(),
                      std::mem_fn(&CollectedError::Raise));
        if (outcome.first) {
            Tell(*outcome.first, properties);
        }
    };
    threads::ForEach(pool, inArguments.files.size(), process, deliver);
    if (!inArguments["plist"].empty()) {
        proplist::utils::SavePropList(FileFromNative(inArguments["plist"]), properties);
    }
}

} // namespace edlconform

int main(int inCount, char** inWords) {
    using namespace edlconform;
    PrintingErrorManager errors("edlconform");
    ScopedErrorManager const installed(errors);
    bool isMisused = false;
    try {
        Run({inCount, inWords});
        if (!std::cout.flush()) {
            Report("$$$/edl/Output=Standard output could not be written.");
        }
    } catch (std::exception const& error) {
        errors.PrintException(error);
        isMisused = dynamic_cast<std::invalid_argument const*>(&error) != nullptr;
        std::cerr << Text(isMisused ? kHelp : "");
    }
    return isMisused ? 2 : errors.Count() == 0 ? 0 : 1;
}
