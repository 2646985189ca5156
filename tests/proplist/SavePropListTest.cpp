#include "proplist/src/Readable.h"
#include "tests/InTemporaryDirectory.h"
#include "tests/SystemCallFaults.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/Unicode.h>

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/syscall.h>

namespace brindle::proplist {

namespace {

namespace fs = std::filesystem;

class SavePropList : public tests::InTemporaryDirectory {
protected:
    SavePropList() {
        for (std::uint8_t key = 'a'; key < 'a' + 20; ++key) {
            mList.SetValue({key}, u"a value of 'some' length"_utf16);
        }
        UTF8String document;
        utils::WritePropList(document, mList);
        mDocument.assign(document.begin(), document.end());
    }

    bool Saves(PropList const& inList) const {
        try {
            utils::SavePropList(At("file"), inList);
            return true;
        } catch (filesupport::file_exception const&) {
            return false;
        }
    }

    std::ptrdiff_t EntryCount() const {
        return std::distance(fs::directory_iterator(mTemporary.Native()), {});
    }

    PropList mList;
    std::string mDocument;
};

TEST_F(SavePropList, AFaultAtAnyCallLeavesTheOldDocumentOrTheNew) {
    using tests::SystemCallFault;
    SystemCallFault const faults[]{{SystemCallFault::kKillBefore},
                                   {SystemCallFault::kKillAfter},
                                   {SystemCallFault::kRefuse, ENOSPC},
                                   {SystemCallFault::kRefuse, EIO},
                                   {SystemCallFault::kRefuse, EACCES}};
    for (std::string const old : {"none", "file", "link"}) {
        for (auto fault : faults) {
            for (;; ++fault.call) {
                for (auto const& entry : fs::directory_iterator(mTemporary.Native())) {
                    fs::remove_all(entry);
                }
                fs::create_directory(Native("dir"));
                auto const place = Native(old == "link" ? "dir/file" : "file");
                if (old == "link") {
                    fs::create_symlink("dir/file", Native("file"));
                }
                if (old != "none") {
                    std::ofstream(place) << old;
                    fs::permissions(place, fs::perms(0640));
                }
                auto const before = EntryCount();
                auto const run = tests::RunWithFault([&] { return Saves(mList) ? 0 : 1; }, fault);
                if (!run.hasHappened) {
                    EXPECT_EQ(run.status, 0);
                    break;
                }
                SCOPED_TRACE(old + ", fault " + std::to_string(fault.kind) + " " +
                             std::to_string(fault.error) + " at call " +
                             std::to_string(fault.call) + " number " + std::to_string(run.call));
                bool const isNew = ContentOf("file") == mDocument;
                EXPECT_TRUE(isNew || ContentOf("file") == (old == "none" ? "" : old));
                if (run.status >= 0) {
                    EXPECT_TRUE(run.status == (isNew ? 0 : 1) || run.call == SYS_fsync);
                    EXPECT_EQ(EntryCount(), before + (old == "none" && isNew));
                }
                EXPECT_TRUE(Saves(mList));
                EXPECT_EQ(ContentOf("file"), mDocument);
                if (old != "none") {
                    EXPECT_EQ(fs::status(place).permissions(), fs::perms(0640));
                }
            }
            std::cout << old << ": " << fault.kind << " " << fault.error << " at " << fault.call - 1
                      << " calls\n";
        }
    }
}

TEST_F(SavePropList, ADiskThatIsFullAtAnyByteKeepsTheOldDocument) {
    Fill("file", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    // As a host does: the failure is to arrive as an error.
    auto* const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    int failures = 0;
    for (rlimit limit{0, before.rlim_max};; ++limit.rlim_cur) {
        setrlimit(RLIMIT_FSIZE, &limit);
        bool const isSaved = Saves(mList);
        setrlimit(RLIMIT_FSIZE, &before);
        if (isSaved) {
            break;
        }
        ++failures;
        ASSERT_EQ(ContentOf("file"), "old");
        ASSERT_EQ(EntryCount(), 1);
    }
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(failures, mDocument.size());
    EXPECT_EQ(ContentOf("file"), mDocument);
}

TEST_F(SavePropList, WhatNoReaderWouldGiveBackIsRefused) {
    std::mt19937 random(1);
    std::uint8_t const bytes[]{0,    '\t', '\n', '\r', 0x1F, ' ',  'a',  0x7F,
                               0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBD, 0xBE, 0xBF,
                               0xC0, 0xC2, 0xE0, 0xED, 0xEF, 0xF0, 0xF4, 0xF5};
    int readable = 0;
    for (int round = 0; round < 200000; ++round) {
        UTF8String text(random() % 140, 'a');
        for (auto count = random() % 5, at = random() % 140; count > 0 && at < text.size();
             --count, ++at) {
            text[at] = bytes[random() % sizeof bytes];
        }
        // The conversion drops what is malformed, and ends at a NUL on the way back.
        auto const units = utility::UTF8to16(text);
        bool isReadable = utility::UTF16to8(units) == text;
        for (auto const unit : units) {
            isReadable =
                isReadable && (unit >= 0x20 || unit == '\t' || unit == '\n') && unit < 0xFFFE;
        }
        for (std::size_t i = 0; i + 1 < text.size(); ++i) {
            isReadable = isReadable && !(text[i] == 0xED && text[i + 1] >= 0xA0);
        }
        ASSERT_EQ(impl::IsReadable(text), isReadable) << testing::PrintToString(text);
        readable += isReadable;
    }
    EXPECT_GT(readable, 20000);

    auto const units = UTF16String{'l', 'o', 'n', 'g', 0, 'x'};
    std::function<void(PropList&)> const cases[]{
        [](PropList& ioList) { ioList.SetValue("\r"_utf8, true); },
        [](PropList& ioList) { ioList.SetValue("k"_utf8, "\x80"_utf8); },
        [](PropList& ioList) {
            ioList.SetValue("k"_utf8, std::list<UTF8String>{"a"_utf8, "\0"_utf8});
        },
        [](PropList& ioList) { ioList.SetValue("k"_utf8, UTF16String{0xD800}); },
        [&](PropList& ioList) { ioList.SetValue("k"_utf8, units); },
        [&](PropList& ioList) {
            ioList.SetValue("k"_utf8, std::list<UTF16String>{{}, units});
        },
    };
    Fill("file", "old");
    for (auto const& makeBad : cases) {
        PropList list;
        auto* inner = &list;
        for (int depth = 0; depth < 100000; ++depth) {
            inner = inner->NewSubList("l"_utf8);
        }
        makeBad(*inner);
        EXPECT_FALSE(Saves(list));
        EXPECT_EQ(ContentOf("file"), "old");
        EXPECT_EQ(EntryCount(), 1);
    }
}

} // namespace

} // namespace brindle::proplist
