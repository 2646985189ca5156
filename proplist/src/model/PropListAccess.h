#pragma once

#include <brindle/proplist/PropList.h>

#include <memory>
#include <utility>

namespace brindle::proplist::impl {

/// What the readers and writers of documents need of a list beyond its public interface.
struct PropListAccess {
    static PropNodeBlocks const& Nodes(PropList const& inList) noexcept { return inList.mNodes; }
    static PropNodeBlocks& Nodes(PropList& ioList) noexcept { return ioList.mNodes; }

    static void SetVersion(PropList& ioList, std::uint16_t inVersion) noexcept {
        ioList.mVersion = inVersion;
    }

    /// The path of a file that should have been read into the list and was not, or not whole. Null
    /// if there is none.
    static UTF16String const* UnreadFile(PropList const& inList) noexcept {
        return inList.mUnreadFile.get();
    }

    static std::unique_ptr<UTF16String>
    ExchangeUnreadFile(PropList& ioList, std::unique_ptr<UTF16String> inPath) noexcept {
        return std::exchange(ioList.mUnreadFile, std::move(inPath));
    }
};

} // namespace brindle::proplist::impl
