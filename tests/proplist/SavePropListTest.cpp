#include "proplist/src/Readable.h"
#include "tests/InTemporaryDirectory.h"
#include "tests/SystemCallFaults.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListUtils.h>

#include <expat.h>
#include <random>
#include <sys/resource.h>

namespace brindle::proplist {

namespace {

namespace fs = std::filesystem;

class SavePropList : public tests::InTemporaryDirectory {
protected:
    SavePropList() {
        UTF8String document;
        mList.SetValue("name"_utf8, UTF16String(1000, 'n'));
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

    PropList mList;
    std::string mDocument;
};

/// Whether a parser delivers the text as it was put into a document.
bool ComesBack(UTF8String const& inText) {
    auto const parser = XML_ParserCreate("UTF-8");
    UTF8String read;
    XML_SetUserData(parser, &read);
    XML_SetCharacterDataHandler(parser, [](void* ioRead, XML_Char const* inPart, int inLength) {
        static_cast<UTF8String*>(ioRead)->append(inPart, inPart + inLength);
    });
    auto const document = "<a>" + std::string(inText.begin(), inText.end()) + "</a>";
    auto const status = XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK && read == inText;
}

TEST_F(SavePropList, AFaultAtAnyCallLeavesTheOldDocumentOrTheNew) {
    using Fault = tests::SystemCallFault;
    for (std::string const place : {"none", "file", "dir/file"}) {
        int points = 0;
        std::vector<long> order;
        for (Fault fault :
             {Fault{Fault::kKillBefore}, Fault{Fault::kKillAfter}, Fault{Fault::kRefuse, ENOSPC},
              Fault{Fault::kRefuse, EIO}, Fault{Fault::kRefuse, EACCES}}) {
            for (;; ++fault.call, ++points) {
                for (auto const& entry : fs::directory_iterator(mTemporary.Native())) {
                    fs::remove_all(entry);
                }
                fs::create_directory(Native("dir"));
                if (place != "none") {
                    fs::create_symlink("dir/file", Native("file"));
                    fs::remove(Native(place));
                    Fill(place, "old");
                    fs::permissions(Native(place), fs::perms(0640));
                }
                auto const old = ContentOf("file");
                auto const before = EntryCount();
                auto const run = tests::RunWithFault([&] { return Saves(mList); }, fault);
                if (!run.hasHappened) {
                    EXPECT_EQ(run.status, 1);
                    break;
                }
                SCOPED_TRACE(place + ": call " + std::to_string(run.call));
                bool const isNew = ContentOf("file") == mDocument;
                EXPECT_TRUE(isNew || ContentOf("file") == old);
                if (run.status >= 0) {
                    EXPECT_TRUE(run.status == isNew || run.call == SYS_fsync);
                    EXPECT_EQ(EntryCount(), before + (isNew && place == "none"));
                } else if (fault.kind == Fault::kKillBefore &&
                           (run.call == SYS_fsync || run.call == SYS_renameat)) {
                    order.push_back(run.call);
                }
                EXPECT_TRUE(Saves(mList)) << "over what is left";
                EXPECT_EQ(ContentOf("file"), mDocument);
                EXPECT_TRUE(place == "none" ||
                            fs::status(Native(place)).permissions() == fs::perms(0640));
            }
        }
        EXPECT_EQ(order, (std::vector<long>{SYS_fsync, SYS_renameat, SYS_fsync}));
        std::cout << place << ": faults at " << points << " points\n";
    }
}

TEST_F(SavePropList, ADiskThatIsFullAtAnyByteKeepsTheOldDocument) {
    Fill("file", "old");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    auto* const oldHandler = std::signal(SIGXFSZ, SIG_IGN); // as a host does, to get an error
    for (rlimit limit{0, before.rlim_max}; limit.rlim_cur <= mDocument.size(); ++limit.rlim_cur) {
        setrlimit(RLIMIT_FSIZE, &limit);
        bool const isSaved = Saves(mList);
        setrlimit(RLIMIT_FSIZE, &before);
        ASSERT_EQ(isSaved, limit.rlim_cur == mDocument.size());
        ASSERT_EQ(ContentOf("file"), isSaved ? mDocument : "old");
        ASSERT_EQ(EntryCount(), 1);
    }
    std::signal(SIGXFSZ, oldHandler);
}

TEST_F(SavePropList, WhatNoReaderWouldGiveBackIsRefused) {
    std::mt19937 random(1);
    auto const odd =
        "\0\t\n\r\x1F\x7F\x80\x8F\x90\x9F\xA0\xBD\xBE\xBF\xC0\xC2\xE0\xED\xEF\xF0\xF4\xF5"_utf8;
    for (int round = 0; round < 100'000; ++round) {
        UTF8String text(random() % 140, 'a');
        std::size_t const start = random() % 140, count = random() % 5;
        for (auto i = start; i < std::min(start + count, text.size()); ++i) {
            text[i] = odd[random() % odd.size()];
        }
        ASSERT_EQ(impl::IsReadable(text), ComesBack(text)) << testing::PrintToString(text);
    }

    auto const cut = u"not a short\0text"_utf16;
    std::function<void(PropList&)> const cases[] = {
        [](PropList& ioList) { ioList.SetValue("\r"_utf8, true); },
        [](PropList& ioList) {
            ioList.SetValue(""_utf8, std::list<UTF8String>{{}, {0x80}});
        },
        [](PropList& ioList) { ioList.SetValue(""_utf8, UTF16String{0xD800}); },
        [&](PropList& ioList) { ioList.SetValue(""_utf8, cut); },
        [&](PropList& ioList) {
            ioList.SetValue(""_utf8, std::list<UTF16String>{{}, cut});
        },
    };
    Fill("file", "old");
    for (auto const& makeBad : cases) {
        PropList list;
        auto* inner = &list;
        for (int depth = 0; depth < 100'000; ++depth) {
            inner = inner->NewSubList("l"_utf8);
        }
        makeBad(*inner);
        EXPECT_FALSE(Saves(list));
        EXPECT_EQ(ContentOf("file"), "old");
    }
    EXPECT_EQ(EntryCount(), 1);
}

} // namespace

} // namespace brindle::proplist
