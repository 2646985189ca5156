#include "host/files/Output.h"

#include "host/commandline/Diagnostics.h"
#include "host/files/FileErrors.h"
#include "host/files/Input.h"
#include "host/files/SystemReason.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Streams.h>

#include <algorithm>

namespace brindle::host {

using namespace filesupport;

namespace {

std::unique_ptr<OSafeSaveStream> BeginFile(std::string const& inName, std::string const& inModel) {
    File const target = FileFromNative(inName);
    FileKind const kind = KindOf(target);
    if (kind == FileKind::kRegular || kind == FileKind::kMissing) {
        bool const hasModel = !inModel.empty() && inModel != kStandardStream;
        try {
            return std::make_unique<OSafeSaveStream>(target,
                                                     hasModel ? FileFromNative(inModel) : File());
        } catch (file_exception const& failure) {
            throw unwritable_error(ReasonText(failure));
        }
    }
    throw unwritable_error(kind == FileKind::kDirectory ? "is a directory" : "is no regular file");
}

} // namespace

Output::Output(std::string const& inName, std::string const& inModel)
    : mFile(inName != kStandardStream ? BeginFile(inName, inModel) : nullptr) {}

Output::~Output() = default;

void Output::Put(std::uint8_t inByte) {
    WriteBlock(&inByte, 1);
}

void Output::WriteBlock(std::uint8_t const* inBytes, std::uint32_t inCount) {
    mPosition += inCount;
    if (mFile == nullptr) {
        utility::streams::Out.write(reinterpret_cast<char const*>(inBytes), inCount);
        return RequireOutput();
    }
    try {
        mFile->WriteBlock(inBytes, inCount);
    } catch (byte_stream_exception const& failure) {
        throw unwritable_error(ReasonText(failure));
    }
}

void Output::WriteText(std::string const& inText) {
    constexpr std::size_t kMost = 1 << 20; // of the 32 bits that count a block
    for (std::size_t done = 0; done < inText.size(); done += kMost) {
        WriteBlock(reinterpret_cast<std::uint8_t const*>(inText.data()) + done,
                   static_cast<std::uint32_t>(std::min(kMost, inText.size() - done)));
    }
}

void Output::CurPos(std::uint64_t inPosition) {
    if (inPosition != mPosition) {
        throw byte_stream_exception();
    }
}

void Output::Commit() {
    if (mFile == nullptr) {
        return; // standard output is flushed, and checked, at the end of the command
    }
    try {
        mFile->Commit();
    } catch (file_exception const& failure) {
        throw unwritable_error(ReasonText(failure));
    }
}

} // namespace brindle::host
