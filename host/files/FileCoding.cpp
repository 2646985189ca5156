#include "host/files/FileCoding.h"

#include "host/files/FileErrors.h"
#include "host/files/WhyUnreadable.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSaveStream.h>

#include <memory>

namespace brindle::host {

using namespace filesupport;

namespace {

/// The file IN. Its failures are thrown as `unreadable_error`, and reading shows a progress line.
class Source final : public IPlatformByteStream {
public:
    Source(File const& inFile, Diagnostics& ioDiagnostics)
        : IPlatformByteStream(inFile), mDiagnostics(ioDiagnostics), mLength(Length()) {}

    void ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) override {
        try {
            IPlatformByteStream::ReadBlock(outBytes, inCount);
        } catch (eof_error const&) {
            if (CurPos() < mLength) {
                throw unreadable_error("became shorter while it was read");
            }
            throw;
        } catch (io_error const&) {
            throw unreadable_error("cannot be read");
        }
        mDiagnostics.ShowProgress("read " + std::to_string(CurPos() >> 20) + " of " +
                                  std::to_string(mLength >> 20) + " MiB");
    }

private:
    Diagnostics& mDiagnostics;
    std::uint64_t const mLength;
};

/// The new version of OUT. Its failures are thrown as `unwritable_error`.
class Sink final : public OSafeSaveStream {
public:
    using OSafeSaveStream::OSafeSaveStream;

    void WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) override {
        try {
            OSafeSaveStream::WriteBlock(inBytes, inCount);
        } catch (io_error const&) {
            throw unwritable_error("cannot be written, the disk may be full");
        }
    }
};

std::unique_ptr<Source> OpenSource(File const& inFile, Diagnostics& ioDiagnostics) {
    try {
        return std::make_unique<Source>(inFile, ioDiagnostics);
    } catch (file_exception const&) {
    } catch (byte_stream_exception const&) {
    }
    throw unreadable_error(WhyUnreadable(inFile));
}

/// A target that the final step could not replace is refused here, before hours of work.
void RequireReplaceable(File const& inTarget) {
    FileKind const kind = KindOf(inTarget);
    if (kind != FileKind::kMissing && kind != FileKind::kRegular) {
        throw unwritable_error(WhyUnreadable(inTarget));
    }
}

void CodeInto(File const& inTarget, File const& inFile, Diagnostics& ioDiagnostics,
              Coding inCoding) {
    auto source = OpenSource(inFile, ioDiagnostics);
    RequireReplaceable(inTarget);
    try {
        Sink sink(inTarget);
        inCoding(*source, sink);
        source.reset(); // it may be the file that is replaced
        sink.Commit();
    } catch (create_invalidpath_exception const&) {
        throw unwritable_error("no such directory");
    } catch (create_exception const&) {
        throw unwritable_error("its directory takes no new file");
    } catch (rename_file const&) {
        throw unwritable_error("cannot be replaced, it may be open or write-protected");
    }
}

} // namespace

void CodeFile(std::string const& inVerb, Arguments const& inArguments, Diagnostics& ioDiagnostics,
              Coding inCoding) {
    auto const& names = inArguments.Operands();
    if (names.size() != 2) {
        throw usage_error(inVerb + " needs IN and OUT");
    }
    try {
        CodeInto(FileFromNative(names[1]), FileFromNative(names[0]), ioDiagnostics, inCoding);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(names[0], error.what());
    } catch (unwritable_error const& error) {
        ioDiagnostics.Report(names[1], error.what());
    }
}

} // namespace brindle::host
