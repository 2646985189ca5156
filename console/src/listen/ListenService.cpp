#include "console/src/listen/ListenService.h"

#include "platform/Threads.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace brindle::console {

using utility::MutexLock;
using Listenings = std::vector<std::shared_ptr<Listening>>;

namespace {

platform::AwaitedDescriptor ForInput(int inDescriptor) noexcept {
    platform::AwaitedDescriptor awaited;
    awaited.descriptor = inDescriptor;
    awaited.awaitsInput = true;
    return awaited;
}

} // namespace

struct ListenService::Shared {
    std::shared_ptr<ReplyInbox> const inbox = std::make_shared<ReplyInbox>();
    std::atomic<bool> isStopping{false};
    utility::Mutex mutex;
    Listenings listenings BRN_GUARDED_BY(mutex);

    Listenings All() {
        MutexLock const lock(mutex);
        return listenings;
    }
};

/// What the thread does. Its members belong to the thread.
class ListenService::Loop {
public:
    explicit Loop(std::shared_ptr<Shared> inShared) : mShared(std::move(inShared)) {}

    void Run() {
        while (!mShared->isStopping.load(std::memory_order_acquire)) {
            try {
                Turn();
            } catch (std::bad_alloc const&) {
                mClients.clear(); // they take up the memory
                mActivities.clear();
            }
        }
    }

private:
    struct Client {
        std::shared_ptr<Listening> listening;
        ClientSession session;
    };
    using Clients = std::map<ClientId, Client>;

    /// What a name that listens is doing.
    struct Activity {
        ClientId running = 0; // whose request the executor has; 0 for none
        ClientId last = 0;    // whose turn was last
    };

    void Turn() {
        ForgetTheClosed();
        DeliverReplies();
        for (auto const& listening : mListenings) {
            StartRequest(listening);
        }
        AwaitAndServe();
    }

    void ForgetTheClosed() {
        mListenings = mShared->All();
        auto const isOpen = [this](std::shared_ptr<Listening> const& inListening) {
            return std::find(mListenings.begin(), mListenings.end(), inListening) !=
                   mListenings.end();
        };
        for (auto i = mClients.begin(); i != mClients.end();) {
            i = isOpen(i->second.listening) ? std::next(i) : mClients.erase(i);
        }
        for (auto i = mActivities.begin(); i != mActivities.end();) {
            i = isOpen(i->first) ? std::next(i) : mActivities.erase(i);
        }
    }

    void DeliverReplies() {
        for (auto const& [id, reply] : mShared->inbox->Take()) {
            for (auto& [listening, activity] : mActivities) {
                activity.running = activity.running == id ? 0 : activity.running;
            }
            auto const found = mClients.find(id); // it may have gone meanwhile
            if (found != mClients.end()) {
                found->second.session.Answer(reply);
            }
        }
    }

    /// Posts the next request of a listener's clients, which take turns.
    void StartRequest(std::shared_ptr<Listening> const& inListening) {
        Activity& activity = mActivities[inListening];
        auto next = mClients.upper_bound(activity.last);
        for (std::size_t i = 0; i < mClients.size() && activity.running == 0; ++i) {
            next = next == mClients.end() ? mClients.begin() : next;
            auto& [id, client] = *next++;
            if (client.listening != inListening) {
                continue;
            }
            if (auto request = client.session.TakeRequest()) {
                activity = {id, id};
                Listening::Post(inListening, *std::move(request), mShared->inbox, id);
            }
        }
    }

    void AwaitAndServe() {
        constexpr int kRetryMilliseconds = 1000;
        std::vector<platform::AwaitedDescriptor> awaited;
        awaited.push_back(ForInput(mShared->inbox->Event().Descriptor()));
        for (auto const& listening : mListenings) {
            awaited.push_back(ForInput(mLacksResources ? -1 : listening->Socket().Descriptor()));
        }
        for (auto const& [id, client] : mClients) {
            awaited.push_back(client.session.Awaited());
        }
        platform::Await(awaited, std::exchange(mLacksResources, false) ? kRetryMilliseconds : -1);

        mShared->inbox->Event().Reset();
        auto ready = awaited.cbegin() + 1;
        auto const firstListening = ready;
        ready += static_cast<std::ptrdiff_t>(mListenings.size());
        for (auto i = mClients.begin(); i != mClients.end(); ++ready) {
            i = i->second.session.Serve(*ready) ? std::next(i) : mClients.erase(i);
        }
        for (std::size_t i = 0; i < mListenings.size(); ++i) {
            if (firstListening[static_cast<std::ptrdiff_t>(i)].hasInput) {
                AcceptClients(mListenings[i]);
            }
        }
    }

    void AcceptClients(std::shared_ptr<Listening> const& inListening) {
        constexpr int kMostAtOnce = 16; // those who are attached have to be served too
        auto connection = inListening->Socket().Accept();
        for (int i = 0; connection && i < kMostAtOnce; ++i) {
            auto const count =
                std::count_if(mClients.begin(), mClients.end(), [&](auto const& inClient) {
                    return inClient.second.listening == inListening;
                });
            if (static_cast<std::size_t>(count) < kMostClients) {
                ClientSession session(std::move(connection.value), inListening->Name());
                mClients.emplace(++mLastClient, Client{inListening, std::move(session)});
            } else {
                auto const refusal =
                    EncodeReply({ReplyKind::kRefused, "too many consoles are attached", {}});
                static_cast<void>(connection.value.Write(refusal.data(), refusal.size()));
            }
            connection = inListening->Socket().Accept();
        }
        mLacksResources |= connection.error == platform::kError_TooManyOpenFiles ||
                           connection.error == platform::kError_NotEnoughMemory;
    }

    std::shared_ptr<Shared> const mShared;
    Listenings mListenings;
    Clients mClients;
    std::map<std::shared_ptr<Listening>, Activity> mActivities;
    ClientId mLastClient = 0;
    bool mLacksResources = false; // to accept a client
};

ListenService::ListenService() : mShared(std::make_shared<Shared>()) {
    if (mShared->inbox->Event().Descriptor() < 0) {
        throw std::system_error(std::make_error_code(std::errc::too_many_files_open));
    }
    // Signals of the process are for the threads that the host knows.
    platform::SignalsBlocked const blocked;
    mThread = std::thread([shared = mShared] { Loop(shared).Run(); });
}

ListenService::~ListenService() {
    mShared->isStopping.store(true, std::memory_order_release);
    mShared->inbox->Wake();
    if (mThread.get_id() == std::this_thread::get_id()) {
        mThread.detach();
    } else {
        mThread.join();
    }
}

void ListenService::Add(std::shared_ptr<Listening> const& inListening) {
    {
        MutexLock const lock(mShared->mutex);
        mShared->listenings.push_back(inListening);
    }
    mShared->inbox->Wake();
}

bool ListenService::Remove(std::shared_ptr<Listening> const& inListening) {
    bool isEmpty = false;
    {
        MutexLock const lock(mShared->mutex);
        auto& all = mShared->listenings;
        all.erase(std::remove(all.begin(), all.end(), inListening), all.end());
        isEmpty = all.empty();
    }
    mShared->inbox->Wake();
    return isEmpty;
}

std::vector<std::shared_ptr<Listening>> ListenService::All() const {
    return mShared->All();
}

} // namespace brindle::console
