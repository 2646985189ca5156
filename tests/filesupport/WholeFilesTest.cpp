#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/Text.h"

#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CopyBytes.h>
#include <brindle/filesupport/CopyFile.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileSum.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/filesupport/SafeSaveStream.h>
#include <brindle/filesupport/StringByteStream.h>
#include <brindle/utility/TextConversions.h>

#include <cctype>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <typeinfo>
#include <vector>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;
using tests::Wide;

std::string Irregular(std::size_t inSize) {
    std::string bytes;
    for (std::uint32_t i = 0; i < inSize; ++i) {
        bytes += static_cast<char>(i * i * 2654435761u >> 24);
    }
    return bytes;
}

class WholeFiles : public tests::InTemporaryDirectory {
protected:
    File FileAt(std::string const& inName) const { return File(At(inName)); }
    static std::string ReadBack(File const& inFile, std::size_t inLimit) {
        auto const bytes = ReadFile(inFile, inLimit);
        return {bytes.begin(), bytes.end()};
    }
    std::string const mContent = Irregular(300'000);
    Dir const mDir{mTemporary.Path()};
};

/// The contract of the operator, byte by byte.
void CopyEachByte(OByteStream& outStream, IByteStream& inStream) {
    auto const length = inStream.Length();
    for (std::uint64_t i = 0; length == 0 || i < length; ++i) {
        std::uint8_t byte = 0;
        try {
            byte = inStream.Get();
        } catch (eof_error const&) {
            if (length == 0) {
                return;
            }
            throw;
        }
        outStream.Put(byte);
    }
}

void CopyByTheOperator(OByteStream& outStream, IByteStream& inStream) {
    outStream << inStream;
}

/// How a copy ended and where it left the streams.
auto OutcomeOf(void (*inCopy)(OByteStream&, IByteStream&), OByteStream& outStream,
               IByteStream& inStream) {
    std::string end = "done";
    auto cause = utility::SystemError::kNone;
    try {
        inCopy(outStream, inStream);
    } catch (config::FileFailure const& failure) {
        end = typeid(failure).name();
        cause = failure.Cause();
    }
    return std::tuple(end, cause, inStream.CurPos(), outStream.CurPos());
}

TEST_F(WholeFiles, TheOperatorActsAsIfByteByByte) {
    std::string const text = mContent.substr(0, 70'000);
    Fill("source", text);
    Fill("empty", "");
    std::uint8_t buffer[100];
    using Source = std::function<std::unique_ptr<IByteStream>()>;
    using Sink = std::function<std::unique_ptr<OByteStream>(std::string&)>;
    std::pair<std::string, Source> const sources[] = {
        {"file", [&] { return std::make_unique<IPlatformByteStream>(FileAt("source")); }},
        {"empty file", [&] { return std::make_unique<IPlatformByteStream>(FileAt("empty")); }},
        {"endless file",
         [&] { return std::make_unique<IPlatformByteStream>(File(Wide("/proc/version"))); }},
        {"string", [&] { return std::make_unique<IStringByteStream>(text); }},
    };
    std::pair<std::string, Sink> const sinks[] = {
        {"file", [&](auto&) { return std::make_unique<OPlatformByteStream>(FileAt("sink")); }},
        {"new version", [&](auto&) { return std::make_unique<OSafeSaveStream>(FileAt("new")); }},
        {"string", [](auto& outText) { return std::make_unique<OStringByteStream>(outText); }},
        {"full", [&](auto&) { return std::make_unique<OBufferByteStream>(buffer, sizeof buffer); }},
    };
    tests::FileSizeLimit const limit(50'000);
    for (auto const& [sourceName, makeSource] : sources) {
        for (auto const& [sinkName, makeSink] : sinks) {
            SCOPED_TRACE(sourceName + " to " + sinkName);
            auto const copy = [&, &sourceOf = makeSource,
                               &sinkOf = makeSink](void (*inCopy)(OByteStream&, IByteStream&)) {
                Fill("sink", "x");
                std::string copied;
                auto const source = sourceOf();
                auto const sink = sinkOf(copied);
                source->CurPos(1);
                auto const outcome = OutcomeOf(inCopy, *sink, *source);
                return std::tuple(outcome, copied, ContentOf("sink"));
            };
            EXPECT_TRUE(copy(&CopyByTheOperator) == copy(&CopyEachByte));
        }
    }
}

TEST_F(WholeFiles, TheOperatorMovesBlocksOnlyWhereNobodyCanTell) {
    struct Upper : IPlatformByteStream {
        using IPlatformByteStream::IPlatformByteStream;
        std::uint8_t Get() override {
            return static_cast<std::uint8_t>(std::toupper(IPlatformByteStream::Get()));
        }
    };
    Fill("file", "abcd");
    std::string text;
    OStringByteStream(text) << Upper(FileAt("file"));
    EXPECT_EQ(text, "ABCD");

    IPlatformByteStream source(FileAt("file"), kShareWithEverybody);
    OPlatformByteStream sink(FileAt("file"));
    sink.CurPos(1);
    sink << source;
    EXPECT_EQ(ContentOf("file"), "aaaaa") << "each byte is read after the one before was written";

    Fill("copy", "");
    Fill("big", mContent);
    auto const copy = [this] {
        OPlatformByteStream(FileAt("copy")) << IPlatformByteStream(FileAt("big"));
        return 0;
    };
    tests::SystemCallFault const hundredth{tests::SystemCallFault::kActBefore, 0, 100, [] {}};
    EXPECT_FALSE(tests::RunWithFault(copy, hundredth).hasHappened) << "too many system calls";
}

TEST_F(WholeFiles, CopyBytesCopiesTheRestAndTellsHowFarItIs) {
    struct OfLength : IStringByteStream {
        OfLength(std::string const& inText, std::uint64_t inLength)
            : IStringByteStream(inText), length(inLength) {}
        std::uint64_t Length() const override { return length; }
        std::uint64_t length;
    };
    for (std::size_t const length : {0u, 300'000u, 1'000'000u}) {
        SCOPED_TRACE(length);
        std::string copy;
        std::vector<std::uint64_t> told;
        OStringByteStream sink(copy);
        OfLength source(mContent, length);
        source.CurPos(1000);
        auto const note = [&](std::uint64_t inDone, std::uint64_t inTotal) {
            told.push_back(inDone);
            EXPECT_EQ(inTotal, length == 0 ? 0 : length - 1000);
        };
        if (length > mContent.size()) {
            EXPECT_THROW(CopyBytes(source, sink, note), eof_error);
        } else {
            EXPECT_EQ(CopyBytes(source, sink, note), 299'000u);
            EXPECT_EQ(told.back(), 299'000u);
        }
        EXPECT_GE(told.size(), 2u);
        EXPECT_TRUE(copy == mContent.substr(1000));
    }
}

TEST_F(WholeFiles, KeepsWhatItIsAskedToKeep) {
    Fill("from", mContent);
    fs::permissions(Native("from"), fs::perms(0640));
    FileAt("from").SetModified(130'000'000'000'000'007);
    OCountingByteStream counter;
    OCRCByteStream crc(counter);
    crc.WriteBlock(reinterpret_cast<std::uint8_t const*>(mContent.data()), 300'000);
    for (int const asked : {0, 1, 2, 4}) {
        SCOPED_TRACE(asked);
        Fill("to", "old");
        fs::permissions(Native("to"), fs::perms(0604));
        CopyOptions options;
        options.keepTimes = asked == 1;
        options.keepPermissions = asked == 2;
        options.sum = asked == 4;
        auto const result = CopyFile(FileAt("from"), FileAt("to"), options);
        EXPECT_TRUE(result.isComplete);
        EXPECT_EQ(result.size, mContent.size());
        EXPECT_EQ(result.crc, asked == 4 ? crc.Value() : 0);
        EXPECT_TRUE(ContentOf("to") == mContent);
        EXPECT_EQ(FileAt("to").Modified() == 130'000'000'000'000'007, asked == 1);
        EXPECT_EQ(fs::status(Native("to")).permissions(), fs::perms(asked == 2 ? 0640 : 0604));
    }
    CopyFile(FileAt("from"), FileAt("new"));
    EXPECT_EQ(fs::status(Native("new")).permissions(), fs::perms(0640)) << "as private";
    CopyFile(File(Wide("/proc/version")), FileAt("to"));
    EXPECT_EQ(ContentOf("to"), ContentOf("/proc/version")) << "a file without a size";
}

TEST_F(WholeFiles, ACopyThatEndsEarlyKeepsTheOldTarget) {
    Fill("from", mContent);
    Fill("to", "old");
    std::optional<OPlatformByteStream> writer;
    std::pair<char const*, std::function<void()>> const cases[] = {
        {"grows", [&] { std::ofstream(Native("from"), std::ios::app) << "x"; }},
        {"is cut", [&] { fs::resize_file(Native("from"), 5); }},
        {"is written again", [&] { Fill("from", mContent); }},
        {"target is written", [&] { writer.emplace(FileAt("to")); }},
    };
    for (auto const& [name, act] : cases) {
        SCOPED_TRACE(name);
        Fill("from", mContent);
        FileAt("from").SetModified(130'000'000'000'000'000);
        CopyOptions options;
        options.progress = [&change = act, calls = 0](std::uint64_t, std::uint64_t) mutable {
            ++calls == 1 ? change() : void();
        };
        try {
            CopyFile(FileAt("from"), FileAt("to"), options);
            ADD_FAILURE();
        } catch (file_exception const& failure) {
            EXPECT_EQ(failure.Cause(), utility::SystemError::kSharingViolation);
        }
        EXPECT_TRUE(ContentOf("to") == "old");
        writer.reset();
    }
    Fill("from", mContent);
    for (int const most : {0, 1, 2}) {
        CopyOptions options;
        options.isCancelled = [most, asked = 0]() mutable { return asked++ == most; };
        EXPECT_FALSE(CopyFile(FileAt("from"), FileAt("to"), options).isComplete);
        EXPECT_TRUE(ContentOf("to") == "old");
    }
    tests::FileSizeLimit const limit(100'000);
    EXPECT_THROW(CopyFile(FileAt("from"), FileAt("to")), file_exception);
    EXPECT_THROW(CopyFile(FileAt("missing"), FileAt("to")), file_not_found_exception);
    EXPECT_THROW(CopyFile(FileAt("from"), FileAt("missing/to")), create_exception);
    EXPECT_TRUE(ContentOf("to") == "old");
    EXPECT_EQ(EntryCount(), 2);
}

TEST_F(WholeFiles, WhateverCallFailsTheTargetIsWhole) {
    auto const content = mContent.substr(0, 5000);
    Fill("from", content);
    CopyOptions all;
    all.sum = all.keepTimes = all.keepPermissions = true;
    std::function<void()> const works[] = {
        [&] { CopyFile(FileAt("from"), FileAt("to")); },
        [&] { CopyFile(FileAt("from"), FileAt("to"), all); },
        [&] { WriteFile(FileAt("to"), content); },
    };
    for (auto const kind : {tests::SystemCallFault::kRefuse, tests::SystemCallFault::kKillAfter}) {
        for (auto const& work : works) {
            bool hasHappened = true;
            for (int call = 1; hasHappened; ++call) {
                SCOPED_TRACE(call);
                Fill("to", "old");
                auto const attempt = [&] {
                    try {
                        work();
                        return 0;
                    } catch (file_exception const&) {
                        return 1;
                    }
                };
                auto const run = tests::RunWithFault(attempt, {kind, EIO, call});
                hasHappened = run.hasHappened;
                auto const left = ContentOf("to");
                EXPECT_TRUE(left == content || (left == "old" && run.status != 0));
                SafeSave::RemoveAbandoned(mDir);
                EXPECT_EQ(EntryCount(), 2);
            }
        }
    }
}

TEST_F(WholeFiles, AreReadUpToALimitWhateverTheirSizeIsSaidToBe) {
    for (std::size_t const size : {1u, 65535u, 65536u, 200'000u}) {
        SCOPED_TRACE(size);
        std::string const content(size, 'x');
        Fill("file", content);
        EXPECT_EQ(ReadBack(FileAt("file"), size), content);
        EXPECT_EQ(ReadBack(FileAt("file"), ~std::size_t{}), content);
        EXPECT_THROW(ReadBack(FileAt("file"), size - 1), file_exception);
    }
    Fill("file", "");
    EXPECT_EQ(ReadBack(FileAt("file"), 0), "");
    File const unsized(Wide("/proc/version"));
    EXPECT_EQ(ReadBack(unsized, 10'000), ContentOf("/proc/version"));
    EXPECT_THROW(ReadBack(FileAt("missing"), 1), file_not_found_exception);
}

TEST_F(WholeFiles, AreReplacedInOneStepOrNotAtAll) {
    tests::FileSizeLimit const limit(4);
    WriteFile(FileAt("file"), "text");
    EXPECT_EQ(ContentOf("file"), "text");
    WriteFile(FileAt("file"), std::vector<std::uint8_t>{'o', 'l', 'd'});
    EXPECT_THROW(WriteFile(FileAt("file"), std::string(10, 'n')), file_exception);
    EXPECT_EQ(ContentOf("file"), "old");
    EXPECT_THROW(WriteFile(FileAt("missing/file"), ""), create_exception);
}

TEST_F(WholeFiles, AreSummedInAnyNumberOfBlocks) {
    Fill("digits", "123456789");
    EXPECT_EQ(SumOf(FileAt("digits")), 0xCBF43926u); // the published check value
    Fill("zeros", std::string(1 << 20, '\0'));
    EXPECT_EQ(SumOf(FileAt("zeros")), 0xA738EA1Cu); // zlib's
    Fill("empty", "");
    EXPECT_EQ(SumOf(FileAt("empty")), 0u);
    EXPECT_THROW(static_cast<void>(SumOf(FileAt("digits"), [](auto...) { throw 7; })), int);
    EXPECT_THROW(static_cast<void>(SumOf(FileAt("missing"))), file_not_found_exception);
}

TEST_F(WholeFiles, RemainsOfKilledSavesAreRemovedAndNothingElse) {
    // They look like the files of saves, but are none; the empty one may be written at any moment.
    Fill("report.2023.11.xml", "x");
    Fill("a.1.12", "x");
    Fill(".brindle-0123456789abcdeg", "x");
    Fill(".brindle-0123456789abcdef", "");
    fs::create_symlink("a.1.12", Native(".brindle-0000000000000000"));
    SafeSave committed(FileAt("taken.5.51.xml")), live(FileAt("live.xml"));
    std::ofstream(NativePath(committed.GetTempFile())) << "x";
    committed.Commit();
    live.GetTempFile();
    EXPECT_EQ(SafeSave::RemoveAbandoned(mDir), 0u);
    EXPECT_EQ(EntryCount(), 7);

    WalkOptions options;
    options.leaveOutSaves = true;
    std::set<std::string> walked;
    for (RecursiveFileIterator file(mDir, options), end; file != end; ++file) {
        walked.insert(utility::ToStd((*file).GetName()));
    }
    EXPECT_EQ(walked, (std::set<std::string>{"report.2023.11.xml", "a.1.12", "taken.5.51.xml",
                                             ".brindle-0123456789abcdeg"}));
    EXPECT_THROW(SafeSave::RemoveAbandoned(Dir(At("missing"))), dir_exception);
}

TEST_F(WholeFiles, WhateverCallASaveIsKilledAtItsRemainsAreRecognised) {
    auto const work = [this] {
        SafeSave save(FileAt("file.xml"));
        std::ofstream(NativePath(save.GetTempFile())) << "new";
        save.Commit();
        return 0;
    };
    std::size_t unrecognised = 0, removed = 0;
    bool hasHappened = true;
    for (int call = 1; hasHappened; ++call) {
        SCOPED_TRACE(call);
        Fill("file.xml", "old");
        hasHappened =
            tests::RunWithFault(work, {tests::SystemCallFault::kKillAfter, 0, call}).hasHappened;
        auto const content = ContentOf("file.xml");
        EXPECT_TRUE(content == "old" || content == "new");
        removed += SafeSave::RemoveAbandoned(mDir);
        unrecognised += EntryCount() == 1 ? 0u : 1u;
        for (auto const& entry : fs::directory_iterator(Native(""))) {
            fs::remove(entry);
        }
    }
    EXPECT_LT(2 * unrecognised, removed)
        << "only before the file is marked, and at the moment before it takes its place";
}

} // namespace

} // namespace brindle::filesupport
