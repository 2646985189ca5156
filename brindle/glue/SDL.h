#pragma once

#include <brindle/threads/EventLoop.h>
#include <brindle/threads/EventLoopWakeUp.h>

#include <SDL.h>

#include <stdexcept>

/// For programs whose loop is that of SDL 2. The library itself does not use SDL.
namespace brindle::glue {

/// Serves the calling thread's executors from its loop of SDL events, as long as it exists.
///
///     glue::SDLLoop const attached; // after `SDL_Init`, on the thread that waits for events
///     auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
///     for (SDL_Event event; SDL_WaitEvent(&event) == 1;) {
///         if (!attached.Handle(event)) { /* the program's own events */ }
///     }
///
/// A loop that a function runs, for a modal dialog, calls `Handle` too. Make one for a thread.
class SDLLoop {
public:
    /// Throws `std::runtime_error` if SDL has no type of event left, and as
    /// `threads::EventLoopWakeUp`.
    SDLLoop() : mType(NewType()), mWakeUp([type = mType] { Push(type); }) {}

    /// Runs the functions that wait, if the event was pushed by this object; otherwise false, and
    /// the event is the program's.
    bool Handle(SDL_Event const& inEvent) const {
        if (inEvent.type != mType) {
            return false;
        }
        threads::DispatchMessages();
        return true;
    }

private:
    static Uint32 NewType() {
        Uint32 const type = SDL_RegisterEvents(1);
        if (type == static_cast<Uint32>(-1)) {
            throw std::runtime_error("SDL has no type of event left");
        }
        return type;
    }

    static void Push(Uint32 inType) {
        SDL_Event event{};
        event.type = inType;
        if (SDL_PushEvent(&event) != 1) {
            throw std::runtime_error(SDL_GetError()); // the next post tries again
        }
    }

    Uint32 const mType;
    threads::EventLoopWakeUp const mWakeUp;
};

} // namespace brindle::glue
