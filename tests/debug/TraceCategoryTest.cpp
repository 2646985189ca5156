#include <brindle/debug/Trace.h>
#include <brindle/debug/TraceCategory.h>

#include "tests/debug/AllocationHook.h"
#include "tests/debug/InPreferences.h"
#include "tests/support/InThreads.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/FileExceptions.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

namespace brindle::debug {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;

std::string const kFile = "Trace Database.txt";

class TraceFile : public tests::InPreferences {};

std::string Answers(std::initializer_list<bool> inAnswers) {
    std::string text;
    for (bool const answer : inAnswers) {
        text += answer ? 'y' : 'n';
    }
    return text;
}

TEST_F(TraceFile, IsReadFieldByField) {
    using namespace std::string_literals;
    struct Case {
        char const* name;
        std::string content;
        char const* written; // after a volume of "z" was set
    } const cases[] = {
        {"no last line feed", "a\t1\t7\nb\t1\t7", "a\t1\t7\nz\t1\t1\n"},
        {"enabled is 1 alone", "a\t2\t7\nb\ttrue\t7\nc\t01\t7\n",
         "a\t0\t7\nb\t0\t7\nc\t1\t7\nz\t1\t1\n"},
        {"what is no number", "a\t\t7x\nb\t1\t-3\nc\t1\t9999999999\nd\t1\t+-4\n",
         "a\t0\t0\nb\t1\t-3\nc\t1\t0\nd\t1\t0\nz\t1\t1\n"},
        {"white space and sign", "a\t 1 \t +7\r\n", "a\t1\t7\nz\t1\t1\n"},
        {"a tab in a name", "a\tb\t1\t5\n", "a\t0\t0\nz\t1\t1\n"},
        {"too few tabs", "a\t1\nb\t1\t7\nc\t1\t8\n", "a\t0\t0\nc\t1\t8\nz\t1\t1\n"},
        {"the last of two lines", "a\t1\t7\na\t0\t8\n", "a\t0\t8\nz\t1\t1\n"},
        {"text behind a NUL", "a\t1\t7\n\0b\t1\t7\n"s, "a\t1\t7\nz\t1\t1\n"},
    };
    for (auto const& each : cases) {
        SCOPED_TRACE(each.name);
        Fill(Preference(kFile), each.content);
        EXPECT_EQ(InProcess([] {
                      SetTraceVolume("z"_utf8, 1);
                      return std::string();
                  }),
                  "");
        EXPECT_EQ(ContentOf(Preference(kFile)), each.written);
    }
}

/// The volumes by their definition, for files that somebody else edits.
struct Model {
    struct Setting {
        bool isEnabled;
        std::int32_t volume;
    };
    using Settings = std::map<std::string, Setting>;

    std::optional<Settings> categories;
    std::optional<Setting> master;
    bool isWriting = true;
    std::string file;

    Settings& Loaded() {
        if (!categories) {
            categories.emplace();
            std::istringstream lines(file);
            std::string name;
            Setting setting{true, 5};
            while (std::getline(lines, name, '\t') &&
                   lines >> setting.isEnabled >> setting.volume) {
                (*categories)[name] = setting;
                lines.ignore();
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
    Setting& Master() {
        if (!master) {
            master = Category("Master", {true, 10});
        }
        return *master;
    }
    bool IsEnabled(std::string const& inName, std::int32_t inVolume) {
        if (!Master().isEnabled || inVolume > Master().volume) {
            return false;
        }
        auto const setting = Category(inName);
        return setting.isEnabled && inVolume <= setting.volume;
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

std::string NamesOf(Model::Settings const& inSettings) {
    std::string names;
    for (auto const& each : inSettings) {
        names += each.first + ' ';
    }
    return names;
}

/// Does the same at random to the library and to the model, and returns what differs.
std::string CompareWithModel(unsigned inSeed, std::string const& inFile) {
    std::string const names[] = {"a", "b", "Master", std::string(40, 'c')};
    std::mt19937 random(inSeed);
    auto const volume = [&] { return static_cast<std::int32_t>(random() % 13) - 1; };
    Model model;
    std::vector<TraceCategory> handles;
    for (auto const& name : names) {
        handles.emplace_back(AsUTF8(name));
    }
    for (int step = 0; step < 120; ++step) {
        auto const which = random() % 4;
        auto const& name = names[which];
        auto const category = AsUTF8(name);
        auto const at = volume();
        std::string library;
        std::string expected;
        auto const action = random() % 20;
        if (action < 8) {
            bool const handleFirst = random() % 2 == 0 && handles[which].Enabled(at);
            library = Answers({TraceEnabled(category, at, true), handles[which].Enabled(at)});
            bool const answer = model.IsEnabled(name, at);
            expected = Answers({answer, answer});
            library += handleFirst && !answer ? " the handle first" : "";
        } else if (action < 11) {
            SetTraceVolume(category, at);
            model.Set(name, at);
        } else if (action < 13) {
            SetMasterTraceVolume(at);
            model.SetMaster(at);
        } else if (action < 15) {
            library = std::to_string(GetTraceVolume(category));
            expected = std::to_string(model.Category(name).volume);
        } else if (action == 15) {
            library = std::to_string(GetMasterTraceVolume());
            expected = std::to_string(model.Master().volume);
        } else if (action == 16) {
            std::list<UTF8String> known;
            GetTraceCategories(known);
            for (auto const& each : known) {
                library += Narrow(each) + ' ';
            }
            expected = NamesOf(model.Loaded());
        } else if (action == 17) {
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
        std::string const content((std::istreambuf_iterator<char>(file)), {});
        if (library != expected || content != model.file) {
            return "seed " + std::to_string(inSeed) + ", step " + std::to_string(step) +
                   ", action " + std::to_string(action) + " of " + name + " at " +
                   std::to_string(at) + ": " + library + " instead of " + expected + "; file " +
                   content + " instead of " + model.file;
        }
    }
    return "";
}

TEST_F(TraceFile, AnswersAsItsModelInAnyOrderOfCalls) {
    for (unsigned seed = 0; seed < 10; ++seed) {
        auto const file = Native(Preference(kFile));
        std::filesystem::remove(file);
        EXPECT_EQ(InProcess([&] { return CompareWithModel(seed, file); }), "");
    }
}

TEST_F(TraceFile, ThatCannotBeReadIsReportedOnceAndNotReplaced) {
    std::filesystem::create_directory(Native(Preference(kFile)));
    EXPECT_EQ(InProcess([] {
                  TraceCategory const category("x"_utf8);
                  try {
                      return Answers({category.Enabled(5)});
                  } catch (filesupport::io_error const&) {
                      return Answers({category.Enabled(5), category.Enabled(6)});
                  }
              }),
              "yn");
    std::filesystem::remove(Native(Preference(kFile)));
    std::filesystem::remove_all(Native(mDirectory));
    auto const parent = std::filesystem::path(mDirectory).parent_path();
    std::filesystem::remove_all(Native(parent));
    Fill(parent, "a file in its place");
    EXPECT_EQ(InProcess([] {
                  std::string thrown;
                  for (int call = 0; call < 3; ++call) {
                      try {
                          call < 2 ? static_cast<void>(TraceEnabled("x"_utf8, 5, true))
                                   : SetTraceVolume("x"_utf8, 7);
                      } catch (filesupport::dir_exception const&) {
                          thrown += std::to_string(call);
                      }
                  }
                  return thrown + Answers({TraceEnabled("x"_utf8, 7, true)});
              }),
              "02y")
        << "a question goes on without a preference directory, and a volume is set nevertheless";
}

TEST_F(TraceFile, QuestionsFromWithinAQuestionAreAnsweredNo) {
    EXPECT_EQ(InProcess([] {
                  TraceCategory const known("known"_utf8);
                  std::string text = Answers({known.Enabled(5)});
                  int nested = 0;
                  int passed = 0;
                  bool answer = false;
                  {
                      tests::AllocationHook const hook([&] {
                          ++nested;
                          passed += known.Enabled(0) ? 1 : 0;
                          passed += TraceEnabled("known"_utf8, 0, true) ? 1 : 0;
                          passed += TraceEnabled("new"_utf8, 0, true) ? 1 : 0;
                          passed += TraceEnabled("other"_utf8, 0, true) ? 1 : 0;
                      });
                      answer = TraceEnabled("new"_utf8, 5, true);
                  }
                  text += Answers({answer, nested > 5, known.Enabled(5)});
                  return text + std::to_string(passed);
              }),
              "yyyy0");
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

/// What both databases hold before others change them.
void Settle() {
    SetTraceVolume("decoder"_utf8, 9);
    DebugDatabase::Instance().SetEntry("decoder.slow"_utf8, "true"_utf8);
}

TEST_F(TraceFile, IsWholeAfterAKillOrARefusalAtAnySystemCall) {
    InProcess([] {
        Settle();
        return std::string();
    });
    auto const oldTrace = ContentOf(Preference(kFile));
    auto const oldDebug = ContentOf(Preference("Debug Database.txt"));
    auto const work = [] {
        try {
            SetTraceVolume("decoder"_utf8, 4);
            DebugDatabase::Instance().SetEntry("decoder.slow"_utf8, "false"_utf8);
        } catch (std::exception const&) {
            return 1;
        }
        return 0;
    };
    using tests::SystemCallFault;
    for (auto const kind : {SystemCallFault::kKillBefore, SystemCallFault::kRefuse}) {
        bool hasHappened = kind == SystemCallFault::kKillBefore || !kSanitizerMakesCalls;
        for (int call = 1; hasHappened; ++call) {
            SCOPED_TRACE(std::to_string(kind) + ", call " + std::to_string(call));
            Fill(Preference(kFile), oldTrace);
            Fill(Preference("Debug Database.txt"), oldDebug);
            auto const run = tests::RunWithFault(work, {kind, ENOSPC, call});
            hasHappened = run.hasHappened;
            auto const trace = ContentOf(Preference(kFile));
            auto const debug = ContentOf(Preference("Debug Database.txt"));
            EXPECT_TRUE(trace == oldTrace || trace == "decoder\t1\t4\n") << trace;
            EXPECT_TRUE(debug == oldDebug || debug == "decoder.slow\tfalse\n") << debug;
        }
    }
}

/// Traces, sets volumes and settings from four threads until it is killed.
[[noreturn]] void ChangeEverything(unsigned inProcess) {
    tests::InThreads(4, [inProcess](unsigned inThread) {
        auto const name = std::to_string(inProcess) + " " + std::to_string(inThread);
        for (std::int32_t round = 0;; ++round) {
            SetTraceVolume(AsUTF8(name), round % 10);
            DebugDatabase::Instance().SetEntry(AsUTF8(name), "true"_utf8);
            if (TraceEnabled("decoder"_utf8, 9, true)) {
                Trace((name + '\n').c_str());
            }
        }
    });
    ::_exit(0);
}

bool IsWhole(std::string const& inContent, std::ptrdiff_t inTabs, std::string const& inLine) {
    std::istringstream lines(inContent);
    for (std::string line; std::getline(lines, line);) {
        if (std::count(line.begin(), line.end(), '\t') != inTabs) {
            return false;
        }
    }
    return inContent.find(inLine) != std::string::npos && inContent.back() == '\n';
}

/// Which processes have written the whole lines of a log.
std::string WritersOf(std::string const& inLog) {
    std::regex const line("Ticks = [0-9]+      ([01]) [0-3]|Log file created: .*\r|-*\r");
    std::istringstream lines(inLog);
    std::set<std::string> writers;
    std::smatch match;
    for (std::string each; std::getline(lines, each);) {
        writers.insert(std::regex_match(each, match, line) ? match.str(1) : each);
    }
    std::string text;
    for (auto const& writer : writers) {
        text += writer;
    }
    return text;
}

TEST_F(TraceFile, SurvivesTwoProcessesThatAreKilled) {
    InProcess([] {
        Settle();
        return std::string();
    });
    Fill(Preference("No Client Name Log.txt"), "");
    std::minstd_rand random(1);
    for (int round = 0; round < 100; ++round) {
        pid_t children[2];
        for (unsigned i = 0; i < 2; ++i) {
            children[i] = ::fork();
            if (children[i] == 0) {
                ChangeEverything(i);
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        for (pid_t const child : children) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
        auto const trace = ContentOf(Preference(kFile));
        auto const debug = ContentOf(Preference("Debug Database.txt"));
        ASSERT_TRUE(IsWhole(trace, 2, "decoder\t1\t9\n")) << trace;
        ASSERT_TRUE(IsWhole(debug, 1, "decoder.slow\ttrue\n")) << debug;
        auto const writers = WritersOf(ContentOf(Preference("No Client Name Log.txt")));
        ASSERT_LE(writers.size(), 1u) << "one process has the log: " << writers;
    }
}

} // namespace

} // namespace brindle::debug
