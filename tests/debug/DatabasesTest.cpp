#include <brindle/debug/Trace.h>
#include <brindle/debug/TraceCategory.h>

#include "tests/debug/OnAllocation.h"
#include "tests/support/InPreferences.h"
#include "tests/support/InThreads.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/FileExceptions.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <thread>

namespace brindle::debug {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;

std::string const kFile = "Trace Database.txt";
std::string const kDebugFile = "Debug Database.txt";

using TraceFile = tests::InPreferences;
using DebugDatabaseFile = tests::InPreferences;

std::string Answers(std::initializer_list<bool> inAnswers) {
    std::string text;
    for (bool const answer : inAnswers) {
        text += answer ? 'y' : 'n';
    }
    return text;
}

TEST_F(TraceFile, IsReadFieldByField) {
    using namespace std::string_literals;
    // What is written again after a volume of "z" was set.
    std::pair<std::string, std::string> const cases[] = {
        {"a\t1\t7\nb\t1\t7", "a\t1\t7\n"},
        {"a\t2\t7\nb\ttrue\t7\nc\t01\t7\n", "a\t0\t7\nb\t0\t7\nc\t1\t7\n"},
        {"a\t\t7x\nb\t1\t-3\nc\t1\t9999999999\nd\t1\t+-4\n",
         "a\t0\t0\nb\t1\t-3\nc\t1\t0\nd\t1\t0\n"},
        {"a\t 1 \t +7\r\n", "a\t1\t7\n"},
        {"a\tb\t1\t5\n", "a\t0\t0\n"},
        {"a\t1\nb\t1\t7\nc\t1\t8\n", "a\t0\t0\nc\t1\t8\n"},
        {"a\t1\t7\na\t0\t8\n", "a\t0\t8\n"},
        {"a\t1\t7\n\0b\t1\t7\n"s, "a\t1\t7\n"},
    };
    for (auto const& [content, written] : cases) {
        Fill(Preference(kFile), content);
        EXPECT_EQ(InProcess([] { return SetTraceVolume("z"_utf8, 1), std::string(); }), "");
        EXPECT_EQ(ContentOf(Preference(kFile)), written + "z\t1\t1\n") << content;
    }
}

/// The volumes by their definition, for files that somebody else edits.
struct Model {
    struct Setting {
        bool isEnabled;
        std::int32_t volume;
    };

    std::optional<std::map<std::string, Setting>> categories;
    std::optional<Setting> master;
    bool isWriting = true;
    std::string file;

    std::map<std::string, Setting>& Loaded() {
        if (!categories) {
            categories.emplace();
            std::istringstream lines(file);
            std::string name;
            for (Setting setting{true, 5}; std::getline(lines, name, '\t'); lines.ignore()) {
                lines >> setting.isEnabled >> setting.volume;
                (*categories)[name] = setting;
            }
        }
        return *categories;
    }
    void Write() {
        if (isWriting) {
            file.clear();
            for (auto const& [name, setting] : Loaded()) {
                file += name + '\t' + std::to_string(setting.isEnabled) + '\t' +
                        std::to_string(setting.volume) + '\n';
            }
        }
    }
    Setting& Category(std::string const& inName, Setting const& inDefault = {true, 5}) {
        auto const [place, isNew] = Loaded().emplace(inName, inDefault);
        if (isNew) {
            Write();
        }
        return place->second;
    }
    Setting& Master() { return master ? *master : master.emplace(Category("Master", {true, 10})); }
    static bool Passes(Setting const& inSetting, std::int32_t inVolume) {
        return inSetting.isEnabled && inVolume <= inSetting.volume;
    }
    bool IsEnabled(std::string const& inName, std::int32_t inVolume) {
        return Passes(Master(), inVolume) && Passes(Category(inName), inVolume);
    }
    void SetMaster(std::int32_t inVolume) {
        Master().volume = inVolume;
        Loaded()["Master"] = Master();
        Write();
    }
    void Set(std::string const& inName, std::int32_t inVolume) {
        Loaded().emplace(inName, Setting{true, 5}).first->second.volume = inVolume;
        Write();
    }
};

/// Does the same at random to the library and to the model, and returns what differs.
std::string CompareWithModel(unsigned inSeed, std::string const& inFile) {
    std::string const names[] = {"a", "b", "Master", std::string(40, 'c')};
    std::mt19937 random(inSeed);
    Model model;
    std::vector<TraceCategory> handles;
    for (auto const& name : names) {
        handles.emplace_back(AsUTF8(name));
    }
    for (int step = 0; step < 120; ++step) {
        auto const which = random() % 4;
        auto const& name = names[which];
        auto const category = AsUTF8(name);
        auto const at = static_cast<std::int32_t>(random() % 13) - 1;
        std::string library, expected;
        auto const action = random() % 18;
        if (action < 8) {
            bool const answer = model.IsEnabled(name, at);
            expected = Answers({answer, answer, answer});
            library = Answers({random() % 2 == 0 ? handles[which].Enabled(at) : answer,
                               TraceEnabled(category, at, true), handles[which].Enabled(at)});
        } else if (action < 11) {
            SetTraceVolume(category, at);
            model.Set(name, at);
        } else if (action < 13) {
            SetMasterTraceVolume(at);
            model.SetMaster(at);
        } else if (action < 15) {
            std::list<UTF8String> known;
            GetTraceCategories(known);
            for (auto const& each : known) {
                library += Narrow(each) + ' ';
            }
            for (auto const& each : model.Loaded()) {
                expected += each.first + ' ';
            }
            library += std::to_string(GetTraceVolume(category)) + ' ' +
                       std::to_string(GetMasterTraceVolume());
            expected += std::to_string(model.Category(name).volume) + ' ' +
                        std::to_string(model.Master().volume);
        } else if (action == 15) {
            model.isWriting = random() % 3 != 0;
            SetDisableFileWrites(!model.isWriting);
            library = Answers({GetDisableFileWrites()});
            expected = Answers({!model.isWriting});
        } else {
            ShutdownTraceManager();
            if (model.categories) {
                model.Write();
                model.categories.reset();
            }
            if (random() % 2 == 0) { // a developer edits the file
                model.file = "a\t0\t9\nMaster\t" + std::to_string(random() % 2) + "\t8\nd\t1\t2\n";
                std::ofstream(inFile) << model.file;
            }
        }
        std::ifstream file(inFile);
        library += "; file " + std::string(std::istreambuf_iterator<char>(file), {});
        expected += "; file " + model.file;
        if (library != expected) {
            return "step " + std::to_string(step) + ", action " + std::to_string(action) + " of " +
                   name + " at " + std::to_string(at) + ": " + library + " instead of " + expected;
        }
    }
    return "";
}

TEST_F(TraceFile, AnswersAsItsModelInAnyOrderOfCalls) {
    for (unsigned seed = 0; seed < 10; ++seed) {
        auto const file = Native(Preference(kFile));
        std::filesystem::remove(file);
        EXPECT_EQ(InProcess([&] { return CompareWithModel(seed, file); }), "") << "seed " << seed;
    }
}

TEST_F(TraceFile, ThatCannotBeReadIsReportedOnceAndNotReplaced) {
    auto const use = [] {
        std::string thrown;
        for (int call = 0; call < 3; ++call) {
            try {
                call < 2 ? static_cast<void>(TraceEnabled("x"_utf8, 5, true))
                         : SetTraceVolume("x"_utf8, 7);
            } catch (config::FileFailure const& failure) {
                bool const isFile = dynamic_cast<filesupport::io_error const*>(&failure) != nullptr;
                thrown += (isFile ? "file " : "directory ") + std::to_string(call);
            }
        }
        return thrown + Answers({TraceEnabled("x"_utf8, 7, true), TraceEnabled("x"_utf8, 8, true)});
    };
    std::filesystem::create_directory(Native(Preference(kFile)));
    EXPECT_EQ(InProcess(use), "file 0yn");
    auto const parent = std::filesystem::path(mDirectory).parent_path();
    std::filesystem::remove_all(Native(parent));
    Fill(parent, "a file in its place");
    EXPECT_EQ(InProcess(use), "directory 0directory 2yn")
        << "a question goes on without a preference directory, and a volume is set nevertheless";
}

TEST_F(TraceFile, QuestionsFromWithinAQuestionAreAnsweredNo) {
    EXPECT_EQ(InProcess([] {
                  TraceCategory const known("known"_utf8);
                  std::string text = Answers({known.Enabled(5)}), nested;
                  std::function<void()> const ask = [&] {
                      nested += Answers({known.Enabled(0), TraceEnabled("known"_utf8, 0, true),
                                         TraceEnabled("new"_utf8, 0, true),
                                         TraceEnabled("other"_utf8, 0, true)});
                  };
                  tests::S_onAllocation = &ask;
                  bool const answer = TraceEnabled("new"_utf8, 5, true);
                  tests::S_onAllocation = nullptr;
                  bool const isRefused = nested.find_first_not_of('n') == std::string::npos;
                  return text + Answers({answer, nested.size() > 20, isRefused, known.Enabled(5)});
              }),
              "yyyyy");
    EXPECT_EQ(ContentOf(Preference(kFile)), "Master\t1\t10\nknown\t1\t5\nnew\t1\t5\n");
}

TEST_F(TraceFile, AnswersThreadsWhileVolumesChange) {
    EXPECT_EQ(InProcess([] {
                  std::atomic<int> wrong{0};
                  tests::InThreads(4, [&](unsigned inThread) {
                      auto const own = AsUTF8("own " + std::to_string(inThread));
                      TraceCategory const handle(own);
                      TraceCategory const shared("shared"_utf8);
                      for (std::int32_t round = 0; round < 25; ++round) {
                          SetTraceVolume(own, round % 9);
                          SetTraceVolume("shared"_utf8, round % 9);
                          static_cast<void>(shared.Enabled(3));
                          // While another thread's question is answered, this one may be
                          // answered no, but nothing above the volume ever passes.
                          wrong += handle.Enabled(round % 9 + 1) ? 1 : 0;
                          wrong += GetTraceVolume(own) == round % 9 ? 0 : 1;
                          static_cast<void>(TraceEnabled(AsUTF8(std::to_string(round)), 1, true));
                      }
                  });
                  TraceCategory const last("own 3"_utf8);
                  return std::to_string(wrong) + Answers({last.Enabled(6), last.Enabled(7)});
              }),
              "0yn");
}

// Checks of the types of objects make calls of the system, which must not be refused.
#if defined(__has_feature)
constexpr bool kSanitizerMakesCalls = __has_feature(undefined_behavior_sanitizer);
#else
constexpr bool kSanitizerMakesCalls = false;
#endif

/// Changes both databases.
int SetBoth(std::int32_t inVolume, UTF8String const& inEntry) try {
    SetTraceVolume("decoder"_utf8, inVolume);
    DebugDatabase::Instance().SetEntry("decoder.slow"_utf8, inEntry);
    return 0;
} catch (std::exception const&) {
    return 1;
}

TEST_F(TraceFile, IsWholeAfterAKillOrARefusalAtAnySystemCall) {
    using tests::SystemCallFault;
    for (auto const kind : {SystemCallFault::kKillBefore, SystemCallFault::kRefuse}) {
        bool hasHappened = kind == SystemCallFault::kKillBefore || !kSanitizerMakesCalls;
        for (int call = 1; hasHappened; ++call) {
            SCOPED_TRACE(std::to_string(kind) + ", call " + std::to_string(call));
            Fill(Preference(kFile), "decoder\t1\t9\n");
            Fill(Preference(kDebugFile), "decoder.slow\ttrue\n");
            auto const work = [] { return SetBoth(4, "false"_utf8); };
            hasHappened = tests::RunWithFault(work, {kind, ENOSPC, call}).hasHappened;
            auto const trace = ContentOf(Preference(kFile));
            auto const debug = ContentOf(Preference(kDebugFile));
            EXPECT_TRUE(trace == "decoder\t1\t9\n" || trace == "decoder\t1\t4\n") << trace;
            EXPECT_TRUE(debug == "decoder.slow\ttrue\n" || debug == "decoder.slow\tfalse\n")
                << debug;
        }
    }
}

/// Traces, sets volumes and settings from four threads until it is killed.
int ChangeEverything(std::string const& inProcess) {
    tests::InThreads(4, [&](unsigned inThread) {
        auto const name = inProcess + std::to_string(inThread);
        for (std::int32_t round = 0;; ++round) {
            SetTraceVolume(AsUTF8(name), round % 10);
            DebugDatabase::Instance().SetEntry(AsUTF8(name), "true"_utf8);
            if (TraceEnabled("decoder"_utf8, 9, true)) {
                Trace((name + '\n').c_str());
            }
        }
    });
    return 0;
}

/// That this line is there, and that no other has another form.
void ExpectWhole(std::string const& inContent, std::string const& inForm,
                 std::string const& inLine) {
    EXPECT_TRUE(std::regex_match(inContent, std::regex("([^\t\n]+" + inForm + "\n)*")))
        << inContent;
    EXPECT_NE(inContent.find(inLine), std::string::npos) << inContent;
}

/// Which processes have written the lines of a log; whole lines that are none of theirs.
std::set<std::string> WritersOf(std::string const& inLog) {
    std::regex const line("Ticks = [0-9]+      ([01]) [0-3]|Log file created: .*\r|-*\r");
    std::istringstream lines(inLog);
    std::set<std::string> writers;
    std::smatch match;
    for (std::string each; std::getline(lines, each);) {
        writers.insert(std::regex_match(each, match, line) ? match.str(1) : each);
    }
    writers.erase("");
    return writers;
}

TEST_F(TraceFile, SurvivesTwoProcessesThatAreKilled) {
    tests::ChildProcess([] { return SetBoth(9, "true"_utf8); }).Wait();
    Fill(Preference("No Client Name Log.txt"), "");
    std::minstd_rand random(1);
    for (int round = 0; round < 100 && !HasFailure(); ++round) {
        {
            tests::ChildProcess const one([] { return ChangeEverything("0 "); });
            tests::ChildProcess const two([] { return ChangeEverything("1 "); });
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        }
        ExpectWhole(ContentOf(Preference(kFile)), "\t[01]\t[0-9]+", "decoder\t1\t9\n");
        ExpectWhole(ContentOf(Preference(kDebugFile)), "\ttrue", "decoder.slow\ttrue\n");
        auto const writers = WritersOf(ContentOf(Preference("No Client Name Log.txt")));
        EXPECT_LE(writers.size(), 1u) << "one process has the log, not also " << *writers.rbegin();
    }
}

/// "key=value;" for each entry.
std::string Listing() {
    std::list<UTF8String> keys;
    DebugDatabase::Instance().GetDebugKeys(keys);
    std::string listing;
    for (auto const& key : keys) {
        listing += Narrow(key) + '=' + Narrow(DebugDatabase::Instance().GetEntry(key, {})) + ';';
    }
    return listing;
}

void Set(std::string const& inKey, std::string const& inValue) {
    DebugDatabase::Instance().SetEntry(AsUTF8(inKey), AsUTF8(inValue));
}

TEST_F(DebugDatabaseFile, IsReadLineByLine) {
    using namespace std::string_literals;
    std::pair<std::string, char const*> const cases[] = {
        {"", ""},
        {"k\tv\nlost\tw", "k=v;"},
        {"k\tv\tw\n", "k=v\tw;"},
        {"no tab\nk\tv\n", "no tab\nk=v;"},
        {"k\tv\nl\tw\0\nm\tx\n"s, "k=v;"},
        {"\0k\tv\n"s, ""},
        {"k\tv\nk\tw\n", "k=w;"},
        {"\t\n", "=;"},
        {"b\t\xFF\r\na\t1\n\x80\t2\n", "a=1;b=\xFF\r;\x80=2;"},
        {"k\tv\n" + std::string(100'000'000, 'x'), "k=v;"},
    };
    for (auto const& [content, listing] : cases) {
        Fill(Preference(kDebugFile), content);
        EXPECT_EQ(InProcess(Listing), listing) << content.substr(0, 99);
    }
}

TEST_F(DebugDatabaseFile, IsWrittenBySetEntryAlone) {
    auto const change = [this] {
        DebugDatabase::Instance().GetEntry("b"_utf8, "default"_utf8);
        std::string text = ContentOf(Preference(kDebugFile));
        Set("a", "1 2\t3");
        DebugDatabase::Instance().Clear();
        text += Listing() + ContentOf(Preference(kDebugFile));
        DebugDatabase::SetDisableFileWrites(true);
        Set("c", "in memory");
        return text + Listing() + (DebugDatabase::GetDisableFileWrites() ? "disabled" : "");
    };
    EXPECT_EQ(InProcess(change), "a\t1 2\t3\nb\tdefault\nc=in memory;disabled");
    EXPECT_EQ(InProcess(Listing), "a=1 2\t3;b=default;") << "cleared entries come back";
    EXPECT_EQ(EntryCount(mDirectory), 1) << "nothing is left beside the file";
}

/// What is thrown by opening it twice and by a change, and what is kept all the same.
std::string Use() {
    std::string text;
    for (int call = 0; call < 3; ++call) {
        try {
            call < 2 ? static_cast<void>(DebugDatabase::Instance()) : Set("k", "v");
        } catch (filesupport::io_error const&) {
            text += "io_error ";
        } catch (filesupport::dir_exception const&) {
            text += "dir_exception ";
        }
    }
    return text + Listing();
}

TEST_F(DebugDatabaseFile, ThatCannotBeReadIsReportedOnceAndNotReplaced) {
    auto const file = Native(Preference(kDebugFile));
    std::filesystem::create_directory(file);
    EXPECT_EQ(InProcess(Use), "io_error k=v;") << "a directory";
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(InProcess(Use), "io_error k=v;") << "a FIFO";
    std::filesystem::remove(file);
    Fill(Preference(kDebugFile), "old\tvalue\n");
    ASSERT_EQ(::truncate(file.c_str(), 300'000'000), 0);
    EXPECT_EQ(InProcess(Listing), "old=value;") << "what follows the NUL is not even read";
    Fill(Preference(kDebugFile), "old\tvalue\n");
    for (std::filesystem::path level = file; level != mTemporary.Native();) {
        level = level.parent_path();
        std::filesystem::permissions(level, std::filesystem::perms::all);
    }
    ASSERT_EQ(::chmod(file.c_str(), 0222), 0);
    auto const useAsOrdinaryUser = [] {
        tests::OrdinaryUser const user;
        return Use();
    };
    EXPECT_EQ(InProcess(useAsOrdinaryUser), "io_error k=v;") << "not readable";
    EXPECT_EQ(ContentOf(Preference(kDebugFile)), "old\tvalue\n");

    auto const parent = std::filesystem::path(mDirectory).parent_path();
    std::filesystem::remove_all(Native(parent));
    Fill(parent, "a file in its place");
    EXPECT_EQ(InProcess(Use), "dir_exception dir_exception k=v;");
}

TEST_F(DebugDatabaseFile, TakesEntriesFromManyThreads) {
    tests::ChildProcess([] {
        tests::InThreads(4, [](unsigned inThread) {
            for (unsigned round = 0; round < 10; ++round) {
                Set(std::to_string(round * 4 + inThread), "v");
                Listing();
            }
        });
        return 0;
    }).Wait();
    auto const content = ContentOf(Preference(kDebugFile));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 40) << content;
}

} // namespace

} // namespace brindle::debug
