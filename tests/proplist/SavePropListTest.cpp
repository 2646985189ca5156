#include "platform/FileContent.h"
#include "platform/Files.h"
#include "proplist/src/document/DocumentCheck.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <expat.h>
#include <random>

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

bool ParserGivesBack(std::string const& inText) {
    auto const parser = XML_ParserCreate("UTF-8");
    std::string const document = "<a>" + inText + "</a>";
    std::string read;
    XML_SetUserData(parser, &read);
    XML_SetCharacterDataHandler(parser, [](void* ioRead, XML_Char const* inPart, int inLength) {
        static_cast<std::string*>(ioRead)->append(inPart, inPart + inLength);
    });
    auto const status = XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
    XML_ParserFree(parser);
    return status == XML_STATUS_OK && read == inText;
}

TEST_F(SavePropList, AFaultAtAnyCallLeavesTheOldDocumentOrTheNew) {
    using Fault = tests::SystemCallFault;
    auto const elsewhere = tests::TemporaryDirectory::OnAnotherFileSystem();
    auto const far = elsewhere.Native("file");
    // What is saved over: no file, a file, files behind links; and a file that is replaced as
    // bytes.
    for (std::string const place : {"none", "file", "dir/file", far.c_str(), "bytes"}) {
        int points = 0;
        auto const save = [&] {
            return place != "bytes"
                       ? Saves(mList)
                       : platform::ReplaceContent(At("file"), mDocument.data(), mDocument.size()) ==
                             platform::kError_None;
        };
        for (auto fault : {Fault{Fault::kKillBefore, 0}, Fault{Fault::kKillAfter, 0},
                           Fault{Fault::kRefuse, ENOSPC}, Fault{Fault::kRefuse, EIO},
                           Fault{Fault::kRefuse, EACCES}}) {
            for (;; ++fault.call, ++points) {
                fs::remove(Native("file"));
                fs::remove_all(Native("dir"));
                fs::create_directory(Native("dir"));
                if (place.find('/') != std::string::npos) {
                    fs::create_symlink(place, Native("file"));
                }
                if (place != "none") {
                    Fill("file", "old");
                    fs::permissions(Native("file"), fs::perms(0640));
                }
                auto const old = ContentOf("file");
                auto const countFiles = [&] {
                    return EntryCount() + EntryCount("dir") +
                           std::distance(fs::directory_iterator(elsewhere.Native()), {});
                };
                auto const before = countFiles();
                auto const run = tests::RunWithFault(save, fault);
                if (!run.hasHappened) {
                    EXPECT_EQ(run.status, 1);
                    bool const isNameless = run.syncs.find('l') != std::string::npos;
                    EXPECT_EQ(run.syncs, !isNameless       ? "wsrS"
                                         : place == "none" ? "wslS"
                                                           : "wsllrS");
                    break;
                }
                SCOPED_TRACE(place + ": call " + std::to_string(run.call));
                bool const isNew = ContentOf("file") == mDocument;
                EXPECT_EQ(ContentOf("file"), isNew ? mDocument : old);
                if (run.status >= 0 || fault.kind == Fault::kRefuse) {
                    EXPECT_TRUE(run.status == isNew || run.call == SYS_fsync) << run.status;
                    EXPECT_FALSE(run.status == 1 && run.call == SYS_fsync && fault.error == EIO);
                    EXPECT_EQ(countFiles(), before + (isNew && place == "none"));
                }
                EXPECT_TRUE(save()) << "over what is left";
                EXPECT_EQ(ContentOf("file"), mDocument);
                EXPECT_EQ(fs::status(Native("file")).permissions() == fs::perms(0640),
                          place != "none");
            }
        }
        // Flushed, because the children inherit what is buffered.
        std::cout << place << ": faults at " << points << " points" << std::endl;
    }
}

TEST_F(SavePropList, ADiskThatIsFullAtAnyByteKeepsTheOldDocument) {
    Fill("file", "old");
    for (std::size_t size = 0; size <= mDocument.size(); ++size) {
        bool isSaved = false;
        {
            tests::FileSizeLimit const limit(size);
            isSaved = Saves(mList);
        }
        ASSERT_EQ(isSaved, size == mDocument.size());
        ASSERT_EQ(ContentOf("file"), isSaved ? mDocument : "old");
        ASSERT_EQ(EntryCount(), 1);
    }
}

TEST_F(SavePropList, WhatNoReaderWouldGiveBackIsRefused) {
    std::mt19937 random(1);
    std::string const odd(
        "\0\t\n\r\x1F\x7F\x80\x8F\x90\x9F\xA0\xBD\xBE\xBF\xC0\xC2\xE0\xED\xEF\xF0\xF4\xF5", 22);
    for (int round = 0; round < 50'000; ++round) {
        std::string text(random() % 140, 'a');
        for (auto i = random() % 140, end = i + random() % 5; i < end && i < text.size(); ++i) {
            text[i] = odd[random() % odd.size()];
        }
        ASSERT_EQ(impl::HasOnlyXMLCharacters({text.begin(), text.end()}), ParserGivesBack(text))
            << testing::PrintToString(text);
    }

    UTF16String const cut = u"not a short\0text"_utf16;
    Fill("file", "old");
    for (int bad = 0; bad < 5; ++bad) {
        PropList list;
        auto* inner = &list;
        for (int depth = 0; depth < 100'000; ++depth) {
            inner = inner->NewSubList("l"_utf8);
        }
        inner->SetValue(bad == 0 ? "\x1F"_utf8 : "a"_utf8, true);
        inner->SetValue("b"_utf8, std::list<UTF8String>(1, bad == 1 ? "\x80"_utf8 : "\t"_utf8));
        inner->SetValue("c"_utf8, UTF16String(1, bad == 2 ? 0xD800 : 'c'));
        inner->SetValue("d"_utf8, bad == 3 ? cut : UTF16String());
        inner->SetValue("e"_utf8, std::list<UTF16String>(2, bad == 4 ? cut : UTF16String()));
        EXPECT_FALSE(Saves(list)) << bad;
    }
    EXPECT_EQ(ContentOf("file"), "old");
    EXPECT_EQ(EntryCount(), 1);
    std::unique_ptr<xml::DocParserFactory> factory(new xml::ExpatParserFactory);
    xml::SetParserFactory(factory);
    PropList list, read;
    auto const returns = "\r\n&\r"_utf8;
    list.SetValue(returns, returns);
    ASSERT_TRUE(Saves(list));
    utils::LoadPropList(At("file"), read, false);
    xml::ResetParserFactory();
    UTF8String back;
    EXPECT_TRUE(read.GetValue(returns, back));
    EXPECT_EQ(back, returns);
}

} // namespace

} // namespace brindle::proplist
