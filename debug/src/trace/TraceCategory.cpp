#include <brindle/debug/TraceCategory.h>

#include "debug/src/database/ReentrantMutex.h"
#include "debug/src/trace/TraceCells.h"
#include "debug/src/trace/TraceDatabase.h"

#include <brindle/debug/Trace.h>
#include <brindle/filesupport/FileExceptions.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace brindle::debug {

using impl::TraceAnswers;
using impl::TraceCell;
using impl::TraceCells;

namespace {

/// What all categories have in common.
struct Master {
    TraceSetting setting{true, 10};
    bool isKnown = false;
    bool isBeingRead = false;
};

ReentrantMutex S_mutex;
TraceDatabase* S_databaseP BRN_GUARDED_BY(S_mutex) = nullptr;
Master S_master BRN_GUARDED_BY(S_mutex);
// Somebody is finding an answer that is not known.
bool S_nothingPasses BRN_GUARDED_BY(S_mutex) = false;

std::atomic<bool> S_fileWritesAreDisabled{false};

// For the categories that have no cell: those that are not known, or were not asked about.
TraceAnswers S_otherAnswers{{impl::kLimit_AskAlways}};

UTF8String const& MasterName() {
    static UTF8String const& name = *new UTF8String("Master"_utf8);
    return name;
}

/// What can be answered without the database, from what is known now.
std::int64_t LimitOf(UTF8String const* inCategory) BRN_REQUIRES(S_mutex) {
    if (S_databaseP == nullptr || !S_master.isKnown) {
        return impl::kLimit_AskAlways;
    }
    auto const& master = S_master.setting;
    if (!master.isEnabled) {
        return impl::kLimit_NothingPasses;
    }
    TraceSetting setting;
    if (inCategory == nullptr || !S_databaseP->Read(*inCategory, setting)) {
        return impl::LimitToAskAt(master.volume);
    }
    return setting.isEnabled ? impl::LimitAt(std::min(setting.volume, master.volume))
                             : impl::kLimit_NothingPasses;
}

void Show(TraceAnswers& ioAnswers, std::int64_t inLimit) BRN_REQUIRES(S_mutex) {
    ioAnswers.limit.store(S_nothingPasses ? impl::kLimit_NothingPasses : inLimit,
                          std::memory_order_relaxed);
}

void Publish(TraceCell& ioCell) BRN_REQUIRES(S_mutex) {
    ioCell.knownLimit = LimitOf(&ioCell.name);
    Show(ioCell, ioCell.knownLimit);
}

// The analysis does not know that the functions of `ForEach` are called here, with the lock held.

void PublishAll() BRN_REQUIRES(S_mutex) {
    Show(S_otherAnswers, LimitOf(nullptr));
    TraceCells::ForEach([](TraceCell& ioCell) BRN_NO_THREAD_SAFETY_ANALYSIS { Publish(ioCell); });
}

/// As long as it exists, every question is answered no. Its owner holds the mutex.
class Silence {
public:
    Silence() BRN_REQUIRES(S_mutex) { Set(true); }
    Silence(Silence const&) = delete;
    Silence& operator=(Silence const&) = delete;
    ~Silence() BRN_NO_THREAD_SAFETY_ANALYSIS { Set(false); }

private:
    static void Set(bool inNothingPasses) BRN_REQUIRES(S_mutex) {
        S_nothingPasses = inNothingPasses;
        Show(S_otherAnswers, LimitOf(nullptr));
        TraceCells::ForEach([](TraceCell& ioCell)
                                BRN_NO_THREAD_SAFETY_ANALYSIS { Show(ioCell, ioCell.knownLimit); });
    }
};

/// Sets a flag as long as it exists.
class Mark {
public:
    explicit Mark(bool& ioFlag) noexcept : mFlag(ioFlag) { mFlag = true; }
    Mark(Mark const&) = delete;
    Mark& operator=(Mark const&) = delete;
    ~Mark() { mFlag = false; }

private:
    bool& mFlag;
};

/// Loads it at the first use. A database that cannot be loaded throws once, and is empty then.
TraceDatabase& Database() BRN_REQUIRES(S_mutex) {
    if (S_databaseP == nullptr) {
        S_databaseP = new TraceDatabase;
        S_databaseP->Load();
        PublishAll();
    }
    return *S_databaseP;
}

void Store(UTF8String const& inCategory, TraceSetting const& inSetting) BRN_REQUIRES(S_mutex) {
    auto& database = Database();
    database.Store(inCategory, inSetting);
    if (auto* const cell = TraceCells::Find(inCategory)) {
        Publish(*cell);
    }
    if (!GetDisableFileWrites()) {
        database.Save();
    }
}

/// A question does not fail because its default cannot be saved.
TraceSetting ReadOrStore(UTF8String const& inCategory, TraceSetting inDefault)
    BRN_REQUIRES(S_mutex) {
    if (!Database().Read(inCategory, inDefault)) {
        try {
            Store(inCategory, inDefault);
        } catch (filesupport::dir_exception const&) {
        }
    }
    return inDefault;
}

/// The master's setting is read once; later it is what was set. Code that runs inside the reading
/// and asks meets a disabled master.
TraceSetting& MasterSetting() BRN_REQUIRES(S_mutex) {
    if (S_master.isBeingRead) {
        S_master.setting.isEnabled = false;
    } else if (!S_master.isKnown) {
        Mark const mark(S_master.isBeingRead);
        S_master.setting = ReadOrStore(MasterName(), {true, 10});
        S_master.isKnown = true;
        PublishAll();
    }
    return S_master.setting;
}

/// Whether the answers of the category can be found without the file.
bool IsKnown(UTF8String const& inCategory) BRN_REQUIRES(S_mutex) {
    TraceSetting ignored;
    return S_databaseP != nullptr && S_master.isKnown && S_databaseP->Read(inCategory, ignored);
}

/// Answers a question whose answer is not published.
bool Ask(UTF8String const& inCategory, std::int32_t inVolume) {
    ReentrantLock const lock(S_mutex);
    // Nested questions stay away from a database that is being changed.
    std::optional<Silence> silence;
    if (!IsKnown(inCategory)) {
        silence.emplace();
    }
    auto const& master = MasterSetting();
    if (!master.isEnabled || inVolume > master.volume) {
        return false;
    }
    auto const setting = ReadOrStore(inCategory, {});
    Publish(TraceCells::FindOrMake(inCategory));
    return setting.isEnabled && inVolume <= setting.volume;
}

} // namespace

bool TraceEnabled(UTF8String const& inCategory, std::int32_t inVolume, bool) {
    TraceAnswers const* const cell = TraceCells::Find(inCategory);
    auto const& answers = cell != nullptr ? *cell : S_otherAnswers;
    auto const limit = answers.limit.load(std::memory_order_relaxed);
    return impl::MayPass(limit, inVolume) && (!impl::HasToAsk(limit) || Ask(inCategory, inVolume));
}

TraceCategory::TraceCategory(UTF8String const& inName) {
    ReentrantLock const lock(S_mutex);
    auto& cell = TraceCells::FindOrMake(inName);
    Publish(cell);
    mAnswers = &cell;
}

UTF8String const& TraceCategory::Name() const noexcept {
    return static_cast<TraceCell const*>(mAnswers)->name;
}

bool TraceCategory::Ask(std::int32_t inVolume) const {
    return debug::Ask(Name(), inVolume);
}

std::int32_t GetMasterTraceVolume() {
    ReentrantLock const lock(S_mutex);
    return MasterSetting().volume;
}

void SetMasterTraceVolume(std::int32_t inVolume) {
    ReentrantLock const lock(S_mutex);
    auto& master = MasterSetting();
    master.volume = inVolume;
    PublishAll();
    Store(MasterName(), master);
}

std::int32_t GetTraceVolume(UTF8String const& inCategory) {
    ReentrantLock const lock(S_mutex);
    return ReadOrStore(inCategory, {}).volume;
}

void SetTraceVolume(UTF8String const& inCategory, std::int32_t inVolume) {
    ReentrantLock const lock(S_mutex);
    TraceSetting setting;
    Database().Read(inCategory, setting);
    setting.volume = inVolume;
    Store(inCategory, setting);
}

void GetTraceCategories(std::list<UTF8String>& ioNames) {
    ReentrantLock const lock(S_mutex);
    Database().AppendNames(ioNames);
}

void SetDisableFileWrites(bool inDisable) noexcept {
    S_fileWritesAreDisabled.store(inDisable, std::memory_order_relaxed);
}

bool GetDisableFileWrites() noexcept {
    return S_fileWritesAreDisabled.load(std::memory_order_relaxed);
}

void ShutdownTraceManager() {
    ReentrantLock const lock(S_mutex);
    std::unique_ptr<TraceDatabase> const database(std::exchange(S_databaseP, nullptr));
    PublishAll();
    if (database != nullptr && !GetDisableFileWrites()) {
        database->Save();
    }
}

} // namespace brindle::debug
