// Questions whether a message is wanted that are answered no, which release builds ask all the
// time, and a developer's setting that is changed durably.

#include "bench/WorkingDirectory.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/TraceCategory.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>

#include <benchmark/benchmark.h>
#include <boost/log/core.hpp>
#include <boost/log/expressions.hpp>
#include <boost/log/sources/severity_channel_logger.hpp>
#include <glib.h>
#include <spdlog/sinks/null_sink.h>
#include <spdlog/spdlog.h>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace brindle::literals;

/// The preference directory of the measured process.
class Preferences {
public:
    Preferences() { ::setenv("XDG_CONFIG_HOME", mDirectory.Path().c_str(), 1); }
    Preferences(Preferences const&) = delete;
    Preferences& operator=(Preferences const&) = delete;
    ~Preferences() { brindle::debug::ShutdownTraceManager(); }

    static std::string Path() {
        return brindle::filesupport::NativePath(brindle::filesupport::Dir::PrefDir());
    }

private:
    WorkingDirectory mDirectory;
};

Preferences& ThePreferences() {
    static Preferences preferences;
    return preferences;
}

/// The volume above that of a known category, which the compiler must not know.
std::int32_t LoudVolume() {
    ThePreferences();
    std::int32_t volume = brindle::debug::GetTraceVolume("decoder"_utf8) + 1;
    benchmark::DoNotOptimize(volume);
    return volume;
}

void Name_Brindle(benchmark::State& ioState) {
    auto const volume = LoudVolume();
    auto const name = "decoder"_utf8;
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(brindle::debug::TraceEnabled(name, volume, true));
    }
}

void Handle_Brindle(benchmark::State& ioState) {
    auto const volume = LoudVolume();
    brindle::debug::TraceCategory const category("decoder"_utf8);
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(category.Enabled(volume));
        benchmark::ClobberMemory();
    }
}

void Name_Spdlog(benchmark::State& ioState) {
    static auto const logger = spdlog::null_logger_mt("decoder by name");
    std::string const name = "decoder by name";
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(spdlog::get(name)->should_log(spdlog::level::debug));
    }
}

void Handle_Spdlog(benchmark::State& ioState) {
    static auto const logger = spdlog::null_logger_mt("decoder");
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(logger->should_log(spdlog::level::debug));
        benchmark::ClobberMemory();
    }
}

void Handle_Load(benchmark::State& ioState) {
    static std::atomic<std::int64_t> limit{10};
    auto const volume = LoudVolume();
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(2 * volume <= limit.load(std::memory_order_relaxed));
        benchmark::ClobberMemory();
    }
}

BOOST_LOG_ATTRIBUTE_KEYWORD(S_severity, "Severity", int)
BOOST_LOG_ATTRIBUTE_KEYWORD(S_channel, "Channel", std::string)

void Name_Boost(benchmark::State& ioState) {
    auto limits = boost::log::expressions::channel_severity_filter(S_channel, S_severity);
    limits["decoder"] = 6;
    boost::log::core::get()->set_filter(limits);
    boost::log::sources::severity_channel_logger_mt<int> logger(boost::log::keywords::channel =
                                                                    "decoder");
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(
            static_cast<bool>(logger.open_record(boost::log::keywords::severity = 5)));
    }
    boost::log::core::get()->reset_filter();
}

void Name_GLib(benchmark::State& ioState) {
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(g_log_writer_default_would_drop(G_LOG_LEVEL_DEBUG, "decoder"));
    }
}

#define BRN_QUESTION(inFunction, inName)                                                           \
    BENCHMARK(inFunction)->Name(inName "/answered no");                                            \
    BENCHMARK(inFunction)->Name(inName "/answered no, two threads")->Threads(2)

BRN_QUESTION(Name_Brindle, "trace question by name/brindle");
BRN_QUESTION(Name_Spdlog, "trace question by name/spdlog::get");
BRN_QUESTION(Name_Boost, "trace question by name/Boost.Log filter");
BRN_QUESTION(Name_GLib, "trace question by name/GLib debug domain");
BRN_QUESTION(Handle_Brindle, "trace question by handle/brindle");
BRN_QUESTION(Handle_Spdlog, "trace question by handle/spdlog should_log");
BRN_QUESTION(Handle_Load, "trace question by handle/(relaxed load)");

/// A hundred settings, of which one changes.
void Set_Brindle(benchmark::State& ioState) {
    ThePreferences();
    auto& database = brindle::debug::DebugDatabase::Instance();
    for (std::uint8_t key = 0; key < 100; ++key) {
        database.GetEntry({'k', 'e', 'y', '0', static_cast<std::uint8_t>('!' + key)},
                          "a value of a setting"_utf8);
    }
    for (auto _ : ioState) {
        database.SetEntry("key0a"_utf8, "a value of a setting"_utf8);
    }
}

void Set_C(benchmark::State& ioState, bool inSyncsDirectory) {
    ThePreferences();
    auto const directory = Preferences::Path();
    auto const target = directory + "/peer.txt";
    auto const temp = directory + "/peer.new.txt";
    std::string text;
    for (int key = 0; key < 100; ++key) {
        text += "key0x\ta value of a setting\n";
    }
    for (auto _ : ioState) {
        int const file = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        auto const written = ::write(file, text.data(), text.size());
        bool isSet = written == static_cast<ssize_t>(text.size()) && ::fsync(file) == 0 &&
                     ::close(file) == 0 && std::rename(temp.c_str(), target.c_str()) == 0;
        if (inSyncsDirectory) {
            int const parent = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            isSet = ::fsync(parent) == 0 && ::close(parent) == 0 && isSet;
        }
        if (!isSet) {
            ioState.SkipWithError("not set");
            break;
        }
    }
}

BENCHMARK(Set_Brindle)->Name("DebugDatabase::SetEntry/brindle/100 keys, durable")->UseRealTime();
BENCHMARK_CAPTURE(Set_C, Synced, true)
    ->Name("DebugDatabase::SetEntry/C, directory synced/100 keys, durable")
    ->UseRealTime();
BENCHMARK_CAPTURE(Set_C, Unsynced, false)
    ->Name("DebugDatabase::SetEntry/(C, directory not synced)/100 keys, durable")
    ->UseRealTime();

} // namespace
