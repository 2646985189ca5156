#pragma once

#include "Order.h"

#include <brindle/proplist/MediaValues.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/PercentNames.h>

namespace offload {

/// What the manifest says of a file: the original's size and time, and the CRC-32 of its content.
struct Entry {
    std::uint64_t size = 0;
    std::uint64_t modified = 0; // in 100-nanosecond ticks since 1601
    std::uint32_t crc = 0;
};

/// The property list beside the copies that says which files were offloaded. Entries of earlier
/// runs stay in it, so that several cards can go into one directory. Paths are relative.
class Manifest {
public:
    /// Reads the one of the destination, if there is one.
    explicit Manifest(Order const& inOrder)
        : file(inOrder.destination, u"offload-manifest.xml"_utf16) {
        damaged = proplist::utils::LoadPropList(file, mList).renamedTo;
        mList.NewSubList("files");
        mKnown = mList.Clone();
        mList.Set("start", inOrder.start.time);
        mList.Set("timecode", inOrder.format->ToText(inOrder.start.time));
        mList.Set("rate", inOrder.rate);
    }

    /// What the file held when it was read. Any thread may call.
    std::optional<Entry> Find(std::filesystem::path const& inPath) const {
        Entry entry;
        auto const* const list =
            mKnown.GetSubList("files")->GetSubList(utility::PercentEncoded(inPath));
        bool const isKnown = list != nullptr && list->TryGet("size", entry.size) &&
                             list->TryGet("modified", entry.modified) &&
                             list->TryGet("crc", entry.crc);
        return isKnown ? std::optional(entry) : std::nullopt;
    }

    void Set(std::filesystem::path const& inPath, Entry const& inEntry) {
        auto* const list = mList.NewSubList("files")->NewSubList(utility::PercentEncoded(inPath));
        list->Set("size", inEntry.size);
        list->Set("modified", inEntry.modified);
        list->Set("crc", inEntry.crc);
    }

    /// Replaces the file. Throws as `SavePropList`.
    void Save() const { proplist::utils::SavePropList(file, mList); }

    filesupport::File const file;
    UTF16String damaged; // where a damaged manifest was moved, if it was damaged

private:
    proplist::PropList mList;
    proplist::PropList mKnown; // never changed
};

} // namespace offload
