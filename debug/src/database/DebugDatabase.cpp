#include <brindle/debug/DebugDatabase.h>

#include "debug/src/database/DatabaseFile.h"
#include "debug/src/database/ReentrantMutex.h"

namespace brindle::debug {

namespace {

// Reentrant, because what runs while the file is written may fail an assertion, which asks here.
ReentrantMutex S_mutex;
DatabaseFile S_file BRN_GUARDED_BY(S_mutex){u"Debug Database.txt"};
DebugDatabase* S_instanceP BRN_GUARDED_BY(S_mutex) = nullptr;

} // namespace

std::atomic<bool> DebugDatabase::mDisableFileWritesB{false};

DebugDatabase& DebugDatabase::Instance() {
    ReentrantLock const lock(S_mutex);
    if (S_instanceP == nullptr) {
        S_instanceP = new DebugDatabase;
        S_instanceP->Load();
    }
    return *S_instanceP;
}

bool DebugDatabase::HasEntry(UTF8String const& inKey) const {
    ReentrantLock const lock(S_mutex);
    return GetPropertyType(inKey) == proplist::kPropertyType_UTF8String;
}

UTF8String DebugDatabase::GetEntry(UTF8String const& inKey, UTF8String const& inDefault) {
    ReentrantLock const lock(S_mutex);
    UTF8String value;
    if (!GetValue(inKey, value)) {
        SetValue(inKey, inDefault);
        value = inDefault;
    }
    return value;
}

void DebugDatabase::SetEntry(UTF8String const& inKey, UTF8String const& inValue) {
    ReentrantLock const lock(S_mutex);
    SetValue(inKey, inValue);
    Save();
}

void DebugDatabase::GetDebugKeys(std::list<UTF8String>& ioKeys) {
    ReentrantLock const lock(S_mutex);
    GetPropertyNames(ioKeys);
}

void DebugDatabase::Clear() {
    ReentrantLock const lock(S_mutex);
    PropList::Clear();
}

void DebugDatabase::SetDisableFileWrites(bool inDisable) noexcept {
    mDisableFileWritesB.store(inDisable, std::memory_order_relaxed);
}

bool DebugDatabase::GetDisableFileWrites() noexcept {
    return mDisableFileWritesB.load(std::memory_order_relaxed);
}

void DebugDatabase::Load() {
    ReentrantLock const lock(S_mutex);
    ReadEntries(S_file.Read(), *this);
}

void DebugDatabase::Save() {
    if (GetDisableFileWrites()) {
        return;
    }
    ReentrantLock const lock(S_mutex);
    std::list<UTF8String> keys;
    GetDebugKeys(keys);
    UTF8String text;
    for (auto const& key : keys) {
        ((text += key) += '\t') += GetEntry(key, UTF8String());
        text += '\n';
    }
    S_file.Write(text);
}

} // namespace brindle::debug
