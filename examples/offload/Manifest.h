#pragma once

#include "Order.h"

#include <brindle/proplist/MediaValues.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/PercentNames.h>

#include <mutex>

namespace offload {

/// The property list beside the copies that says which files were offloaded: under the relative
/// path of each, the original's "size" and time ("modified", in 100-nanosecond ticks since 1601),
/// and the "crc" of its content. Entries of earlier runs stay in it, so that several cards can go
/// into one directory.
class Manifest {
public:
    using Path = std::filesystem::path;

    /// Reads the one of the destination, if there is one; a damaged one is renamed.
    explicit Manifest(Order const& inOrder)
        : file(inOrder.destination, u"offload-manifest.xml"_utf16) {
        proplist::utils::LoadPropList(file, mList);
        mList.NewSubList("files");
        mKnown = mList.Clone();
        mList.Set("start", inOrder.start.time);
        mList.Set("timecode", inOrder.Timecode());
        mList.Set("rate", inOrder.rate);
    }

    /// What the file held when it was read, or null. Any thread may call.
    proplist::PropList const* Find(Path const& inPath) const {
        return mKnown.GetSubList("files")->GetSubList(utility::PercentEncoded(inPath));
    }
    /// Any thread may call.
    void Set(Path const& inPath, proplist::PropList inEntry) {
        std::lock_guard const lock(mMutex);
        *mList.GetSubList("files")->NewSubList(utility::PercentEncoded(inPath)) =
            std::move(inEntry);
    }
    /// Replaces the file. Throws as `SavePropList`.
    void Save() const { proplist::utils::SavePropList(file, mList); }

    filesupport::File const file;

private:
    std::mutex mMutex; // while files are copied
    proplist::PropList mList;
    proplist::PropList mKnown; // never changed
};

} // namespace offload
