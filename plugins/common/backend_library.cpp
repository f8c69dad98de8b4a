// SPDX-License-Identifier: MIT
#include "plugins/common/backend_library.h"

#include "plugins/common/backend_file.h"

#include <dlfcn.h>

void BackendLibrary::Open() {
    std::string const file = FindBackendFile(name, errorText);
    if (file.empty()) {
        return;
    }
    // The backend's own references are looked up now, since it is linked so (zel_plugin), and a missing one refuses it.
    // Those among the hundred libraries behind it are left until they are used, as in any program that links them:
    // to look up all of them takes longer than to read the headers of a hundred images.
    handle = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!handle) {
        char const* const words = dlerror();
        errorText = words ? words : file;
    }
}

void* BackendLibrary::FindAddress(char const* functionName) {
    std::call_once(once, [this] { Open(); });
    return handle ? dlsym(handle, functionName) : nullptr;
}
