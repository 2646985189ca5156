// A window of SDL: a pool computes pi, the loop draws how far it is, and preferences keep the
// result.
#include <atomic>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/glue/SDL.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>
#include <iostream>

int main(int, char**) try {
    using namespace brindle;
    config::SetClientName(u"Pi"_utf16);
    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    SDL_Init(SDL_INIT_VIDEO);
    SDL_Window* const window = SDL_CreateWindow("pi", 0, 0, 1000, 100, 0);
    glue::SDLLoop const attached;
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pi", -1, threads::kThreadPriorityNormal);
    std::atomic<int> inside{0}, rows{0}; // the points of a quarter of a circle
    bool isDone = false;

    threads::Progress<int> progress(loop, [&](int inRows) {
        SDL_Rect const bar{0, 0, inRows, 100};
        SDL_FillRect(SDL_GetWindowSurface(window), &bar, 0xFF00C000);
        SDL_UpdateWindowSurface(window);
    });
    threads::TaskGroup work(pool);
    for (int y = 0; y < 1000; ++y) {
        work.Run([&, y] {
            for (int x = 0; x < 1000; ++x) {
                inside += x * x + y * y < 1000 * 1000 ? 1 : 0;
            }
            progress.Set(++rows);
        });
    }
    work.WhenDone(loop, [&](std::exception_ptr) {
        std::cout << "was " << preferences.Get("pi", 0.0) << ", is " << inside / 250000.0 << '\n';
        preferences.Set("pi", inside / 250000.0);
        loop->Post([&] { isDone = true; }, 500); // milliseconds
    });
    for (SDL_Event event{}; !isDone && SDL_WaitEvent(&event) == 1;) {
        isDone = event.type == SDL_QUIT;
        attached.Handle(event);
    }
    SDL_DestroyWindow(window);
    SDL_Quit();
    proplist::utils::SavePropList(file, preferences);
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
