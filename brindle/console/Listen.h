#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>
#include <brindle/utility/TextTypes.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle::console {

class Listening;

/// Makes this program listen to consoles that developers attach to it. Move-only; what it owns
/// stops listening when it is destroyed or assigned to.
///
///     auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
///     auto const listener = console::Listen(u"Cutter"_utf16, loop);
///
/// While this object lives, `brindle console --attach=Cutter` runs commands on that loop.
///
/// Only the user of this process can attach, on this machine, through a socket in the user's
/// runtime directory (`XDG_RUNTIME_DIR`). One thread of the library serves all listeners of a
/// process; it exists while any listens. Commands run on the executor of their listener, one at a
/// time. A console that is slow or sends nonsense holds up nobody. Any thread may call, but one
/// object is used by one thread at a time.
class BRN_API Listener {
public:
    /// Does not listen.
    Listener() noexcept;
    /// Takes the place; the source no longer listens.
    Listener(Listener&& inOther) noexcept;
    Listener& operator=(Listener&& inOther) noexcept;

    /// Closes the socket, disconnects the consoles, and releases the executor. A command that has
    /// begun is not waited for, and its output is dropped; one that waits for its turn on the
    /// executor does nothing when that comes. Waits while the library is in the executor's `Post`,
    /// so the caller must not hold a lock that this takes. In a forked child it has no effect.
    ~Listener();

    /// False if `Listen` has failed, and after `console::Terminate`.
    [[nodiscard]] bool IsListening() const noexcept;
    /// Why `Listen` has failed, in a phrase for a diagnostic; otherwise empty.
    [[nodiscard]] std::string const& Failure() const noexcept { return mFailure; }

private:
    friend BRN_API Listener Listen(UTF16String const& inName,
                                   boost::shared_ptr<threads::AsyncExecutor> const& inExecutor);

    void Close() noexcept;

    std::shared_ptr<Listening> mListening;
    std::string mFailure;
    std::uint32_t mForkCount = 0;
};

/// Listens under this name, or that of the client if it is empty, beside other programs of the same
/// name. The listener shares the ownership of the executor. A function that the executor drops
/// without calling it, as when it is shut down, is answered: the console shows that the program
/// does not run commands.
///
/// Never reports nor throws, except `std::bad_alloc`: a program goes on where nobody can listen, as
/// in a session without a runtime directory, with one that others can enter, or with a second
/// listener of the same name in one process. Contract: the executor is not null.
[[nodiscard]] BRN_API Listener Listen(UTF16String const& inName,
                                      boost::shared_ptr<threads::AsyncExecutor> const& inExecutor);

} // namespace brindle::console
