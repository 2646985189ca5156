#include "bench/WorkingDirectory.h"

#include <brindle/console/ConsoleLogFile.h>
#include <brindle/utility/Unicode.h>

#include <benchmark/benchmark.h>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/log/sinks/text_file_backend.hpp>
#include <boost/log/sources/record_ostream.hpp>
#include <boost/log/sources/severity_logger.hpp>
#include <boost/log/utility/setup/common_attributes.hpp>
#include <boost/log/utility/setup/file.hpp>
#include <glog/logging.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdlib>
#include <filesystem>
#include <string>

// One line of a log at a time, in the hands of the system before the call returns, so that it
// survives a crash of the process. Each peer is set to flush at every line.

namespace {

std::filesystem::path const& Directory() {
    static WorkingDirectory const directory;
    static std::filesystem::path const path = directory.Path();
    return path;
}

constexpr char const* kText = "<1234> <com.example.media> <5> the frame 1001 has been decoded";

void LabelWithThreads(benchmark::State& ioState) {
    ioState.SetLabel(ioState.threads() == 1 ? "one thread" : "two threads");
}

brindle::console::ConsoleLogFile& BrindleLog() {
    static auto& log = [&]() -> brindle::console::ConsoleLogFile& {
        ::setenv("XDG_CONFIG_HOME", Directory().c_str(), 1);
        auto& instance = *brindle::console::ConsoleLogFile::GetInstance();
        std::string const path = Directory() / "brindle.txt";
        if (!instance.OpenLogFile(brindle::UTF8String(path.begin(), path.end()))) {
            std::abort();
        }
        return instance;
    }();
    return log;
}

void Line_Brindle(benchmark::State& ioState) {
    auto& log = BrindleLog();
    std::string const text = std::string(kText) + "\r\n";
    brindle::UTF8String const line(text.begin(), text.end());
    for (auto _ : ioState) {
        log.WriteToLog(line, true);
    }
    LabelWithThreads(ioState);
}

void Line_Spdlog(benchmark::State& ioState) {
    static auto const log = [] {
        auto made = spdlog::basic_logger_mt("bench", Directory() / "spdlog.txt");
        made->flush_on(spdlog::level::trace);
        return made;
    }();
    for (auto _ : ioState) {
        log->info(kText);
    }
    LabelWithThreads(ioState);
}

void Line_Glog(benchmark::State& ioState) {
    static bool const isSet = [] {
        FLAGS_log_dir = Directory();
        FLAGS_logbuflevel = -1;
        FLAGS_stderrthreshold = google::NUM_SEVERITIES;
        google::InitGoogleLogging("bench");
        return true;
    }();
    static_cast<void>(isSet);
    for (auto _ : ioState) {
        LOG(INFO) << kText;
    }
    LabelWithThreads(ioState);
}

void Line_BoostLog(benchmark::State& ioState) {
    namespace logging = boost::log;
    static bool const isSet = [] {
        logging::add_common_attributes();
        logging::add_file_log(logging::keywords::file_name = (Directory() / "boost.txt").string(),
                              logging::keywords::auto_flush = true,
                              logging::keywords::format = "[%TimeStamp%] %Message%");
        return true;
    }();
    static_cast<void>(isSet);
    logging::sources::severity_logger<int> log;
    for (auto _ : ioState) {
        BOOST_LOG_SEV(log, 1) << kText;
    }
    LabelWithThreads(ioState);
}

BENCHMARK(Line_Brindle)->Name("LogLine/brindle")->ThreadRange(1, 2)->UseRealTime();
BENCHMARK(Line_Spdlog)->Name("LogLine/spdlog")->ThreadRange(1, 2)->UseRealTime();
BENCHMARK(Line_Glog)->Name("LogLine/glog")->ThreadRange(1, 2)->UseRealTime();
BENCHMARK(Line_BoostLog)->Name("LogLine/Boost.Log")->ThreadRange(1, 2)->UseRealTime();

} // namespace
