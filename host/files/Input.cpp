#include "host/files/Input.h"

#include "host/files/FileErrors.h"
#include "host/files/SystemReason.h"

#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace brindle::host {

using namespace filesupport;

namespace {

constexpr std::uint32_t kBufferSize = 256 * 1024;

std::unique_ptr<IPlatformByteStream> OpenFile(File const& inFile) {
    try {
        return std::make_unique<IPlatformByteStream>(inFile, kShareWithEverybody);
    } catch (config::FileFailure const& failure) {
        throw unreadable_error(ReasonText(failure));
    }
}

} // namespace

Input::Input(std::string const& inName, Diagnostics* inDiagnostics)
    : mDiagnostics(inDiagnostics), mBuffer(kBufferSize) {
    if (inName == kStandardStream) {
        mStream = &utility::streams::In;
        return;
    }
    File const file = FileFromNative(inName);
    switch (KindOf(file)) {
    case FileKind::kDirectory:
        throw unreadable_error("is a directory");
    case FileKind::kPipe:
    case FileKind::kDevice:
        errno = 0;
        mOther.open(inName, std::ios::binary);
        mStream = &mOther;
        if (!mOther.is_open()) {
            throw unreadable_error("cannot be opened: " + std::generic_category().message(errno));
        }
        break;
    default:
        mFile = OpenFile(file);
        mLength = mFile->Length();
    }
}

Input::~Input() = default;

std::uint8_t Input::Get() {
    if (mNext == mEnd && !Fill()) {
        throw eof_error();
    }
    return mBuffer[mNext++];
}

void Input::ReadBlock(std::uint8_t* outBytes, std::uint32_t inCount) {
    if (ReadUpTo(outBytes, inCount) < inCount) {
        throw eof_error();
    }
}

std::uint32_t Input::ReadUpTo(std::uint8_t* outBytes, std::uint32_t inCount) {
    std::uint32_t done = 0;
    while (done < inCount && (mNext != mEnd || Fill())) {
        auto const count =
            static_cast<std::uint32_t>(std::min<std::size_t>(mEnd - mNext, inCount - done));
        std::copy_n(mBuffer.data() + mNext, count, outBytes + done);
        mNext += count;
        done += count;
    }
    return done;
}

void Input::CurPos(std::uint64_t) {
    throw byte_stream_exception();
}

/// Returns how many bytes there were.
std::uint32_t Input::ReadFromSource(std::uint8_t* outBytes, std::uint32_t inCount) {
    if (mStream != nullptr) {
        errno = 0;
        mStream->read(reinterpret_cast<char*>(outBytes), inCount);
        // The stream of standard input takes every failure for the end.
        if (mStream->bad() || (mStream == &utility::streams::In && std::ferror(stdin) != 0)) {
            throw unreadable_error("cannot be read: " + std::generic_category().message(errno));
        }
        return static_cast<std::uint32_t>(mStream->gcount());
    }
    try {
        mFile->ReadBlock(outBytes, inCount);
        return inCount;
    } catch (eof_error const&) {
        return static_cast<std::uint32_t>(mFile->CurPos() - mPosition);
    } catch (byte_stream_exception const& failure) {
        throw unreadable_error(ReasonText(failure));
    }
}

/// False at the end.
bool Input::Fill() {
    std::uint32_t const count = ReadFromSource(mBuffer.data(), kBufferSize);
    mPosition += count;
    mNext = 0;
    mEnd = count;
    if (count == 0 && mPosition < mLength) {
        throw unsteady_error("became shorter while it was read");
    }
    if (mDiagnostics != nullptr) {
        mDiagnostics->ShowProgress("read " + std::to_string(mPosition >> 20) +
                                   (mLength == 0 ? "" : " of " + std::to_string(mLength >> 20)) +
                                   " MiB");
    }
    return count != 0;
}

UTF8String ReadAll(std::string const& inName) {
    Input input(inName);
    UTF8String content;
    for (std::uint32_t count = kBufferSize; count == kBufferSize;) {
        std::size_t const before = content.size();
        content.resize(before + kBufferSize);
        count = input.ReadUpTo(content.data() + before, kBufferSize);
        content.resize(before + count);
    }
    return content;
}

} // namespace brindle::host
