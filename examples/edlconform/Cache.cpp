#include "EditList.h"

#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/StringByteStream.h>
#include <brindle/filesupport/WireForm.h>

namespace edlconform {

// The wire form of an event is that of its fields.
OByteStream& operator<<(OByteStream& ioStream, Event const& inEvent) {
    std::apply([&](auto const&... fields) { (ioStream << ... << fields); }, Fields(inEvent));
    return ioStream;
}
IByteStream& operator>>(IByteStream& ioStream, Event& outEvent) {
    std::apply([&](auto&... fields) { (ioStream >> ... >> fields); }, Fields(outEvent));
    return ioStream;
}

/// In which form a cache is, at which rate, of which version of which list.
using CacheKey = std::vector<std::uint64_t>;

/// Returns false if the cache has another key, and throws if it is damaged.
bool ReadCache(File const& inCache, CacheKey const& inKey, EditList& ioList) {
    auto const bytes = ReadFile(inCache, 256 << 20);
    IBufferByteStream cache(bytes.data(), bytes.size());
    ICRCByteStream summed(cache);
    CacheKey key;
    std::uint32_t sum = 0;
    EditList list = ioList;
    summed >> key >> list.isDropFrame >> list.head >> list.events;
    cache >> sum;
    if (sum != summed.Value()) {
        throw byte_stream_exception();
    }
    ioList = key == inKey ? list : ioList;
    return key == inKey;
}

void Load(EditList& ioList, File const* inCache, ErrorCollector const& inErrors) {
    File const file = FileFromNative(ioList.name);
    // A change from now on makes the cache stale.
    CacheKey const key{1, static_cast<std::uint64_t>(ioList.rate.GetTicksPerFrame()),
                       file.Modified(), file.Size(kFileSize_Data),
                       hash_value(absolute(ToPath(file)))};
    try {
        if (inCache != nullptr && inCache->Exists() && ReadCache(*inCache, key, ioList)) {
            return;
        }
    } catch (byte_stream_exception const&) {
        Report("$$$/edl/Damaged=^1: the cache was damaged, and is made again.", ioList.name);
    }
    std::size_t const reported = inErrors.Errors().size();
    ReadText(ioList, ReadFile(file, 256 << 20));
    if (inCache != nullptr && inErrors.Errors().size() == reported) {
        std::string bytes;
        OStringByteStream cache(bytes);
        OCRCByteStream summed(cache);
        summed << key << ioList.isDropFrame << ioList.head << ioList.events;
        cache << summed.Value();
        WriteFile(*inCache, bytes);
    }
}

} // namespace edlconform
