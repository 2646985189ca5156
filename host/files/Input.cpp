#include "host/files/Input.h"

#include "host/files/FileErrors.h"
#include "host/files/SystemReasons.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Streams.h>

#include <algorithm>

namespace brindle::host {

using namespace filesupport;

namespace {

constexpr std::uint32_t kBufferSize = 256 * 1024;

std::unique_ptr<IPlatformByteStream> OpenFile(std::string const& inName) {
    try {
        return std::make_unique<IPlatformByteStream>(FileFromNative(inName));
    } catch (file_exception const&) {
    } catch (byte_stream_exception const&) {
    }
    throw unreadable_error(WhyUnreadable(inName));
}

} // namespace

Input::Input(std::string const& inName, Diagnostics* inDiagnostics)
    : mDiagnostics(inDiagnostics), mBuffer(kBufferSize) {
    if (inName == kStandardStream) {
        mStream = &utility::streams::In;
        return;
    }
    switch (KindOf(FileFromNative(inName))) {
    case FileKind::kPipe:
    case FileKind::kDevice:
        mOther.open(inName, std::ios::binary);
        mStream = &mOther;
        if (!mOther.is_open()) {
            throw unreadable_error(WhyUnreadable(inName));
        }
        break;
    default:
        mFile = OpenFile(inName);
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
        mStream->read(reinterpret_cast<char*>(outBytes), inCount);
        if (mStream->bad()) {
            throw unreadable_error("cannot be read");
        }
        return static_cast<std::uint32_t>(mStream->gcount());
    }
    try {
        mFile->ReadBlock(outBytes, inCount);
        return inCount;
    } catch (eof_error const&) {
        return static_cast<std::uint32_t>(mFile->CurPos() - mPosition);
    } catch (byte_stream_exception const&) {
        throw unreadable_error("cannot be read");
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
