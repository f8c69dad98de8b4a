// SPDX-License-Identifier: MIT
// OpenImageIO notes libpng's errors and returns from its handler; libpng then prints them before it gives up, so that a
// folder with broken files would fill the host's standard error. The system's loader looks for the functions of the
// libraries behind a backend in the backend first: this one stands before libpng's own, and gives it a handler that
// calls the other and gives up at once.
#include <array>
#include <atomic>
#include <cstddef>
#include <dlfcn.h>
#include <utility>

namespace {

using Handler = void(void* png, char const* words);

template <class Function>
Function* FindNext(char const* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The handlers that were given so far: one for reading and one for writing. libpng hands a handler nothing by which
/// the one before it could be found, so each has a function of its own that calls it.
constexpr std::size_t MostHandlers = 4;
std::array<std::atomic<Handler*>, MostHandlers> handlers;

template <std::size_t Index>
void CallAndGiveUp(void* png, char const* words) {
    static auto* const jump = FindNext<void(void* png, int value)>("png_longjmp");
    handlers[Index].load()(png, words);
    jump(png, 1); // to where the caller of libpng wants to go on
}

template <std::size_t... Indices>
Handler* FindQuiet(Handler* handler, std::index_sequence<Indices...>) {
    static constexpr std::array<Handler*, MostHandlers> quiet{CallAndGiveUp<Indices>...};
    for (std::size_t i = 0; i < MostHandlers; ++i) {
        Handler* free = nullptr;
        if (handlers[i].compare_exchange_strong(free, handler) || free == handler) {
            return quiet[i];
        }
    }
    return handler; // one that is new to us may print
}

} // namespace

extern "C" __attribute__((visibility("default"))) void png_set_error_fn(void* png, void* argument, Handler* error,
                                                                        Handler* warning) {
    static auto* const set = FindNext<void(void*, void*, Handler*, Handler*)>("png_set_error_fn");
    set(png, argument, error ? FindQuiet(error, std::make_index_sequence<MostHandlers>()) : nullptr, warning);
}
