#include "platform/linux/ErrnoTable.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/SystemCallFaults.h"

#include <brindle/config/Describe.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CopyFile.h>
#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/LimitedByteStream.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/RLEByteStream.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/filesupport/SafeSaveStream.h>

namespace brindle::filesupport {

namespace {

class Failures : public tests::InTemporaryDirectory {
protected:
    Failures() {
        Fill("file", "12345678");
        std::filesystem::create_directory(Native("dir"));
        Fill("dir/x", "");
    }
    File FileAt(std::string const& inName) const { return File(At(inName)); }
    Dir DirAt(std::string const& inName) const { return Dir(At(inName)); }
};

/// What a user is told of the exception; "%" stands for the directory of the test.
template <typename Action>
std::string Told(std::string const& inDirectory, Action const& inAction) {
    try {
        inAction();
        return "nothing thrown";
    } catch (std::exception const& error) {
        auto text = config::DescribeInUTF8(error);
        for (std::size_t at; (at = text.find(inDirectory)) != text.npos;) {
            text.replace(at, inDirectory.size(), "%");
        }
        return text;
    }
}

TEST_F(Failures, TellWhatWasToBeDoneWithWhatAndWhy) {
    namespace fs = std::filesystem;
    fs::create_symlink("loop", Native("loop"));
    fs::create_directory(Native("closed"));
    Fill("closed/x", "");
    fs::permissions(Native("closed"), fs::perms(0));
    fs::permissions(mTemporary.Native(), fs::perms(0777));
    std::string const name(300, 'n');
    IPlatformByteStream file(FileAt("file"));
    struct {
        std::string expected;
        std::function<void()> action;
    } const cases[] = {
        {"The file '%/none/x' could not be found. A directory on the way does not exist.",
         [&] { IPlatformByteStream{FileAt("none/x")}; }},
        {"Could not look at '%/loop'. Symbolic links lead around in a circle.",
         [&] { FileAt("loop").Modified(); }},
        {"Could not open '%/loop'. Symbolic links lead around in a circle.",
         [&] { IPlatformByteStream{FileAt("loop")}; }},
        {"Could not create the file '%/" + name + "'. The name is too long.",
         [&] { FileAt(name).Create(); }},
        {"Could not open '%/closed/x'. Permission was denied.",
         [&] {
             tests::OrdinaryUser const ordinary;
             (void)ReadFile(FileAt("closed/x"), 9);
         }},
        {"Could not delete the file '%/closed/x'. Permission was denied.",
         [&] {
             tests::OrdinaryUser const ordinary;
             FileAt("closed/x").Delete();
         }},
        {"Could not delete '%/file'. It is not a directory.", [&] { DirAt("file").Delete(); }},
        {"Could not write '%/big'. The file would be too large.",
         [&] {
             tests::FileSizeLimit const limit(1);
             WriteFile(FileAt("big"), "123");
         }},
        {"Could not read '%/file'. The file would be too large.",
         [&] { (void)ReadFile(FileAt("file"), 2); }},
        {"Could not open '%/file'. Another program is using it.",
         [&] { OPlatformByteStream{FileAt("file")}; }},
        {"Could not look at '%/none'. It does not exist.",
         [&] { SafeSave::RemoveAbandoned(DirAt("none")); }},
        {"Could not read '%/file'. The file is too short.",
         [&] {
             file.CurPos(8);
             file.Get();
         }},
        {"Could not read '%/file'. The file is too short.",
         [&] {
             IBufferedByteStream buffered(file, 8, 4);
             ICRCByteStream checked(buffered);
             ILimitedByteStream part(checked, 0);
             part.Get();
         }},
        {"Could not read '%/file'. The file is too short.",
         [&] {
             IBufferedByteStream buffered(file, 64, 4);
             buffered.CurPos(7);
             std::uint32_t value = 0;
             buffered >> value;
         }},
        {"Could not seek in '%/file'. The file is too short.",
         [&] { IBufferedByteStream(file, 64, 4).CurPos(9); }},
        {"Could not read '%/file'. The file is too short.",
         [&] {
             IRLEByteStream unpacked(file);
             file.CurPos(8);
             unpacked.Get();
         }},
    };
    for (auto const& [expected, action] : cases) {
        EXPECT_EQ(Told(mTemporary.Native(), action), expected);
    }
    fs::permissions(Native("closed"), fs::perms(0700));
}

TEST_F(Failures, HaveTheCauseWhateverTheSystemRefuses) {
    struct {
        char const* name;
        bool isPlain; // has no other way to take if the first one is barred
        std::function<void()> action;
    } const operations[] = {
        {"create", true, [&] { FileAt("new").Create(); }},
        {"delete", true, [&] { FileAt("file").Delete(); }},
        {"rename", true, [&] { FileAt("file").Rename(u"other"_utf16); }},
        {"touch", true, [&] { FileAt("file").SetModified(0); }},
        {"read", true, [&] { (void)ReadFile(FileAt("file"), 100); }},
        {"replace", true, [&] { WriteFile(FileAt("file"), "123"); }},
        {"copy", true, [&] { CopyFile(FileAt("file"), FileAt("copy")); }},
        {"make a directory", true, [&] { DirAt("d/e").CreateAll(); }},
        {"remove a tree", false, [&] { DirAt("dir").Delete(); }},
        {"safe save", false,
         [&] {
             SafeSave save(FileAt("file"));
             OPlatformByteStream(save.GetTempFile()).Put('x');
             save.Commit();
         }},
        {"streams", false,
         [&] {
             IPlatformByteStream in(FileAt("file"));
             OPlatformByteStream out(FileAt("new"), kMakeNewFile);
             out.WriteBlock(reinterpret_cast<std::uint8_t const*>("x"), 1);
             out.CurPos(in.Length() + in.Get());
             static_cast<void>(out.Length());
         }},
    };
    enum { kDone, kKnowsAll, kKnowsNoOperation, kKnowsNoPath, kHasAnotherCause, kIsStrange };
    int failures = 0;
    for (auto const& [name, isPlain, action] : operations) {
        for (int const error : {ENOSPC, EROFS, ELOOP}) {
            auto const work = [&, &act = action, exact = isPlain]() -> int {
                try {
                    act();
                    return kDone;
                } catch (config::FileFailure const& failure) {
                    return failure.Operation() == config::FileOperation::kNone ? kKnowsNoOperation
                           : failure.Path().empty()                            ? kKnowsNoPath
                           : failure.Cause() == utility::SystemError::kNone    ? kHasAnotherCause
                           : exact && failure.Cause() != platform::ErrorFromErrno(error)
                               ? kHasAnotherCause
                               : kKnowsAll;
                } catch (...) {
                    return kIsStrange;
                }
            };
            for (int call = 1;; ++call) {
                for (auto const left : {"new", "other", "copy", "d/e", "d", "dir/x", "dir"}) {
                    std::filesystem::remove_all(Native(left));
                }
                std::filesystem::create_directory(Native("dir"));
                Fill("dir/x", "");
                Fill("file", "12345678");
                auto const run =
                    tests::RunWithFault(work, {tests::SystemCallFault::kRefuse, error, call});
                EXPECT_LE(run.status, kKnowsAll)
                    << name << ", error " << error << " of system call " << run.call;
                failures += run.status == kKnowsAll ? 1 : 0;
                if (!run.hasHappened) {
                    break;
                }
            }
        }
    }
    EXPECT_GT(failures, 50) << "the system was hardly ever refused anything";
}

} // namespace

} // namespace brindle::filesupport
