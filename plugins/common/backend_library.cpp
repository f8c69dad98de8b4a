// SPDX-License-Identifier: MIT
#include "plugins/common/backend_library.h"

#include "plugins/common/backend_file.h"

#include <dlfcn.h>

void BackendLibrary::Open() {
    std::string const file = FindBackendFile(name, errorText);
    if (file.empty()) {
        return;
    }
    handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        char const* const words = dlerror();
        errorText = words ? words : file;
    }
}

void* BackendLibrary::FindAddress(char const* functionName) {
    std::call_once(once, [this] { Open(); });
    return handle ? dlsym(handle, functionName) : nullptr;
}
