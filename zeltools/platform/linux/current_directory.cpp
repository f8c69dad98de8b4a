// SPDX-License-Identifier: MIT
#include "zeltools/platform/current_directory.h"

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace platform {

bool GetCurrentDirectoryW(std::u16string& directory) {
    std::unique_ptr<char, void (*)(void*)> const native{getcwd(nullptr, 0), std::free};
    if (native == nullptr) {
        return FailWithErrno();
    }
    if (native.get()[0] != '/') { // "(unreachable)...": the folder lies outside this process's root
        return FailWith(ErrorPathNotFound);
    }
    directory = FromNativePath(native.get());
    return true;
}

bool SetCurrentDirectoryW(char16_t const* directory) {
    std::string native;
    if (!ToNativePath(directory, native)) {
        return false;
    }
    if (RetryInterrupted([&] { return chdir(native.c_str()); }) != 0) {
        return errno == ENOTDIR ? FailWith(ErrorDirectory) : FailWithErrno(native);
    }
    return true;
}

} // namespace platform
