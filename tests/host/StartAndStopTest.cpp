#include "host/setup/StartAndStop.h"

#include "host/setup/HostErrorManager.h"
#include "tests/support/InPreferences.h"

#include <brindle/console/Console.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/TraceCategory.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/TableLocalizer.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <stdexcept>

namespace brindle::host {

namespace {

/// What an application does between its start and its stop.
void Use() {
    debug::DebugDatabase::Instance().SetEntry("key"_utf8, "value"_utf8);
    debug::SetTraceVolume("decoder"_utf8, 6);
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pool", 2, threads::kThreadPriorityNormal);
    debug::TraceCategory const category("decoder"_utf8);
    pool->Post([category] { BRN_TRACE(category, 6, "from a worker"); }, 0);
    pool->Shutdown();
    pool->Synchronize();
    std::basic_stringbuf<std::uint16_t> buffer;
    UTF16OutputStream out(&buffer);
    EXPECT_TRUE(console::ExecuteCommand(u"debug.list"_utf16, out));
}

using StartAndStop = tests::InPreferences;

TEST_F(StartAndStop, MayFollowEachOtherInOneProcess) {
    HostErrorManager errorManager;
    proplist::TableLocalizer localizer;
    for (int run = 0; run < 3; ++run) {
        SCOPED_TRACE(run);
        StartLibrary(errorManager, localizer);
        EXPECT_EQ(filesupport::NativePath(filesupport::Dir::PrefDir()), Native("brindle"));
        filesupport::File(filesupport::Dir::PrefDir(), u"brindle Log.txt"_utf16).Create();
        Use();
        StopLibrary();

        auto const log = ContentOf("brindle/brindle Log.txt");
        EXPECT_NE(log.find("from a worker"), std::string::npos) << log;
        EXPECT_NE(log.find("Log file closed: "), std::string::npos) << log;
        EXPECT_EQ(ContentOf("brindle/Debug Database.txt"), "key\tvalue\n");
        EXPECT_NE(ContentOf("brindle/Trace Database.txt").find("decoder\t1\t6\n"),
                  std::string::npos);
        EXPECT_THROW(config::ErrorManager::Get(), std::logic_error);
        UTF16OutputStream out;
        EXPECT_FALSE(console::ExecuteCommand(u"debug.list"_utf16, out));
    }
}

} // namespace

} // namespace brindle::host
