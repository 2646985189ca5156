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
    /// Reads the one of the destination, if there is one; a damaged one is renamed.
    explicit Manifest(Order const& inOrder)
        : mFile(filesupport::FileFromPath(inOrder.to / "offload-manifest.xml")) {
        proplist::utils::LoadPropList(mFile, mList);
        mFiles = mList.NewSubList("files");
        mKnown = mFiles->Clone();
        mList.Set("start", inOrder.start.time);
        mList.Set("timecode", inOrder.Timecode());
        mList.Set("rate", inOrder.rate);
    }

    /// What the file held when it was read, or null. Any thread may call.
    proplist::PropList const* Find(std::filesystem::path const& inPath) const {
        return mKnown.GetSubList(utility::PercentEncoded(inPath));
    }
    /// Any thread may call.
    void Set(std::filesystem::path const& inPath, proplist::PropList inEntry) {
        std::lock_guard const lock(mMutex);
        *mFiles->NewSubList(utility::PercentEncoded(inPath)) = std::move(inEntry);
    }
    /// Replaces the file. Throws as `SavePropList`.
    void Save() const { proplist::utils::SavePropList(mFile, mList); }

private:
    filesupport::File const mFile;
    std::mutex mMutex; // while files are copied
    proplist::PropList mList;
    proplist::PropList* mFiles; // in the list
    proplist::PropList mKnown;  // as it was read
};

} // namespace offload
