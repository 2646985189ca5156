#pragma once

#include "platform/Files.h"

#include <brindle/filesupport/ByteStream.h>

#include <typeinfo>

namespace brindle::filesupport::impl {

/// What a class says of its streams so that the copying operator may move blocks through them: that
/// a block has exactly the effect of its bytes, also when it fails in the middle, where the
/// position tells how many bytes were moved.
struct BlockStream {
    /// The class. One that derives from it may have other operations, and nothing is said of it.
    std::type_info const& type;
    bool isFile;
    /// Which file the stream reads or writes; null for a stream in memory, and for a file that no
    /// other stream can read or write.
    platform::Result<platform::FileIdentity> (*identity)(ByteStream_base const& inStream);
    /// The path of the file, also for a derived class; null if there is none.
    UTF16String (*path)(ByteStream_base const& inStream);

    /// Null if nothing is said of the stream.
    static BlockStream const* Of(ByteStream_base const& inStream) noexcept {
        auto const* const blocks = inStream.mBlocks;
        return blocks != nullptr && blocks->type == typeid(inStream) ? blocks : nullptr;
    }

    /// The path of the file that the stream works on, itself or through filters; empty if none is
    /// known.
    static UTF16String PathOf(ByteStream_base const& inStream) {
        auto const* stream = &inStream;
        while (stream->mFiltered != nullptr) {
            stream = stream->mFiltered;
        }
        auto const* const blocks = stream->mBlocks;
        return blocks != nullptr && blocks->path != nullptr ? blocks->path(*stream) : UTF16String();
    }
};

} // namespace brindle::filesupport::impl
