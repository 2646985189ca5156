#include <brindle/debug/TraceExecutorExceptions.h>

#include "tests/debug/InPreferences.h"

#include <brindle/debug/Trace.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace brindle::debug {

namespace {

class Recorder : public TraceHandler {
public:
    void Trace(UTF8String const& inText) override { text += tests::Narrow(inText); }

    std::string text;
};

class ExecutorExceptions : public tests::InPreferences {};

TEST_F(ExecutorExceptions, AreTracedIfTheirCategoryIsRaised) {
    EXPECT_EQ(tests::InProcess([] {
                  Recorder recorder;
                  InstallMasterTraceHandler(&recorder);
                  auto const pool = threads::CreateAsyncThreadedExecutor(
                      "pool", 1, threads::kThreadPriorityNormal);
                  auto const fail = [&] {
                      pool->Post([] { throw std::runtime_error("why"); }, 0);
                      pool->Post([] { throw 1; }, 0);
                      pool->Synchronize();
                  };
                  auto const executors = tests::AsUTF8("Executors");
                  SetTraceVolume(executors, 6);
                  fail();
                  TraceExecutorExceptions(true);
                  SetTraceVolume(executors, 5);
                  fail();
                  SetTraceVolume(executors, 6);
                  fail();
                  TraceExecutorExceptions(false);
                  fail();
                  std::string texts;
                  for (std::size_t end = 0, place = 0;
                       (place = recorder.text.find(" <Executors>", end)) != std::string::npos;) {
                      end = recorder.text.find("\r\n", place);
                      texts += recorder.text.substr(place, end - place) + '\n';
                  }
                  return texts;
              }),
              " <Executors> <6> an exception left a function posted to pool: why\n"
              " <Executors> <6> an exception left a function posted to pool: "
              "not a std::exception\n");
}

} // namespace

} // namespace brindle::debug
