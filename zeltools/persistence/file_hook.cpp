// SPDX-License-Identifier: MIT
#include "zeltools/persistence/file_hook.h"

#include "zeltools/persistence/file_hook_private.h"

#include <atomic>

namespace {

constinit std::atomic<XFileHook> hookOfProcess{nullptr}; // read without a lock on every opening and closing

} // namespace

XFileHook xSetFileHook(XFileHook hook) {
    return hookOfProcess.exchange(hook);
}

void detail::CallFileHook(void* handleOrStream) {
    if (XFileHook const hook = hookOfProcess.load()) {
        hook(handleOrStream, 1);
    }
}
