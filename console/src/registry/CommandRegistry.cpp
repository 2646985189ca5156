#include <brindle/console/CommandRegistry.h>

#include "console/src/registry/AsciiCase.h"
#include "console/src/registry/RegisteredCommands.h"
#include "utility/src/base/Mutex.h"
#include "utility/src/base/NeverDestroyed.h"

#include <brindle/debug/Contract.h>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

namespace brindle::console::CommandRegistry {

namespace {

using utility::MutexLock;

struct IsBefore {
    bool operator()(UTF16String const& inLHS, UTF16String const& inRHS) const noexcept {
        return std::lexicographical_compare(
            inLHS.begin(), inLHS.end(), inRHS.begin(), inRHS.end(),
            [](auto lhs, auto rhs) { return LowerCased(lhs) < LowerCased(rhs); });
    }
};

utility::Mutex S_mutex;

/// Shared by the map and the executions in progress; the last of them destroys the command.
struct Entry {
    Entry(UTF16String const& inName, UTF16String const& inHelp, Factory inFactory)
        : name(inName), help(inHelp), factory(inFactory) {}

    UTF16String const name;
    UTF16String const help;
    Factory const factory;
    std::unique_ptr<Command> command BRN_GUARDED_BY(S_mutex); // null until it is executed
    std::uint32_t executions BRN_GUARDED_BY(S_mutex) = 0;     // in progress
};

using Entries = std::map<UTF16String, std::shared_ptr<Entry>, IsBefore>;

Entries& AllEntries() BRN_REQUIRES(S_mutex) {
    static utility::NeverDestroyed<Entries> entries;
    return entries.Get();
}

/// One execution of a command. While it lasts, the command is not destroyed.
class Execution {
public:
    explicit Execution(UTF16String const& inName) {
        MutexLock const lock(S_mutex);
        auto const found = AllEntries().find(inName);
        if (found != AllEntries().end()) {
            mEntry = found->second;
            mCommand = mEntry->command.get();
            ++mEntry->executions;
        }
    }
    Execution(Execution const&) = delete;
    Execution& operator=(Execution const&) = delete;
    ~Execution() {
        if (mEntry != nullptr) {
            MutexLock const lock(S_mutex);
            --mEntry->executions;
        }
    }

    /// Null if there is no such command, or its factory creates none.
    Command* GetCommand() {
        if (mEntry != nullptr && mCommand == nullptr) {
            std::unique_ptr<Command> created(mEntry->factory(mEntry->name, mEntry->help));
            MutexLock const lock(S_mutex);
            if (mEntry->command == nullptr) {
                mEntry->command = std::move(created);
            }
            mCommand = mEntry->command.get();
        }
        return mCommand;
    }

private:
    std::shared_ptr<Entry> mEntry;
    Command* mCommand = nullptr;
};

} // namespace

void RegisterCommand(UTF16String const& inName, UTF16String const& inHelp, Factory inFactory) {
    debug::CheckContract(inFactory != nullptr, "inFactory != nullptr", __FILE__, __LINE__);
    if (inFactory != nullptr) {
        auto entry = std::make_shared<Entry>(inName, inHelp, inFactory);
        MutexLock const lock(S_mutex);
        AllEntries().emplace(inName, std::move(entry));
    }
}

Command* UnregisterCommand(UTF16String const& inName) {
    std::shared_ptr<Entry> removed; // destroyed without the lock
    MutexLock const lock(S_mutex);
    auto const found = AllEntries().find(inName);
    if (found == AllEntries().end() || found->second->command == nullptr) {
        return nullptr;
    }
    removed = std::move(found->second);
    AllEntries().erase(found);
    return removed->executions == 0 ? removed->command.release() : nullptr;
}

bool Execute(UTF16String const& inName, UTF16String const& inArguments, UTF16OutputStream& ioOut) {
    Execution execution(inName);
    auto* const command = execution.GetCommand();
    if (command != nullptr) {
        command->Execute(inArguments, ioOut);
    }
    return command != nullptr;
}

void Remove(UTF16String const& inName, Factory inFactory) {
    std::shared_ptr<Entry> removed; // destroyed without the lock
    MutexLock const lock(S_mutex);
    auto const found = AllEntries().find(inName);
    if (found != AllEntries().end() && found->second->factory == inFactory) {
        removed = std::move(found->second);
        AllEntries().erase(found);
    }
}

std::vector<Description> Descriptions() {
    std::vector<Description> descriptions;
    MutexLock const lock(S_mutex);
    for (auto const& [name, entry] : AllEntries()) {
        descriptions.push_back({name, entry->help});
    }
    return descriptions;
}

} // namespace brindle::console::CommandRegistry
