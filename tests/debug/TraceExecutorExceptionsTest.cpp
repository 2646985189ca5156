#include <brindle/debug/TraceExecutorExceptions.h>

#include "tests/debug/DialogTests.h"

#include <brindle/console/Console.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace brindle::debug {

namespace {

class ExecutorExceptions : public tests::InPreferences {};

TEST_F(ExecutorExceptions, AreTracedIfTheirCategoryIsRaised) {
    auto const traced = tests::InProcess([] {
        tests::RecordingHandler handler;
        auto const pool =
            threads::CreateAsyncThreadedExecutor("pool", 1, threads::kThreadPriorityNormal);
        for (bool const isConnected : {false, true, false}) {
            isConnected ? console::Initialize() : console::Terminate();
            for (std::int32_t const volume : {5, 6}) {
                SetTraceVolume(tests::AsUTF8("Executors"), volume);
                pool->Post([] { throw std::runtime_error("why"); }, 0);
                pool->Post([] { throw 1; }, 0);
                pool->Synchronize();
            }
        }
        return handler.Text();
    });
    std::string const line = " <Executors> <6> an exception left a function posted to pool: ";
    auto const first = traced.find(line + "why\r\n");
    EXPECT_NE(first, std::string::npos) << traced;
    EXPECT_NE(traced.find(line + "not a std::exception\r\n", first), std::string::npos) << traced;
    EXPECT_EQ(std::count(traced.begin(), traced.end(), '\n'), 2) << traced;
}

} // namespace

} // namespace brindle::debug
