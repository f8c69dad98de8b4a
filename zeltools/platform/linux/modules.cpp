// SPDX-License-Identifier: MIT
#include "zeltools/platform/modules.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <memory>
#include <unistd.h>

namespace platform {

namespace {

thread_local std::string moduleErrorText;

std::u16string GetProgramFileName() {
    std::array<char, 4096> name{}; // PATH_MAX: the kernel gives no more
    ssize_t const length = readlink("/proc/self/exe", name.data(), name.size() - 1);
    if (length <= 0) {
        FailWithErrno();
        return {};
    }
    return FromNativePath({name.data(), static_cast<std::size_t>(length)});
}

/// The loader's name of a library, made absolute: it is as relative as it was given to it.
std::u16string GetLibraryFileName(char const* loaderName) {
    std::unique_ptr<char, void (*)(void*)> const name{realpath(loaderName, nullptr), std::free};
    if (name == nullptr) {
        FailWithErrno();
        return {};
    }
    return FromNativePath(name.get());
}

/// Tells why the loader refused a file, since it only says so in words.
unsigned int FindLoadError(std::string const& native, std::string const& words) {
    int const file = open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return errno == ENOENT || errno == ENOTDIR ? ErrorModuleNotFound : ErrorFromErrno(errno);
    }
    close(file);
    if (words.find("undefined symbol") != std::string::npos) {
        return ErrorProcedureNotFound;
    }
    return words.find("cannot open shared object file") != std::string::npos ? ErrorModuleNotFound : ErrorBadExeFormat;
}

void TakeLoaderWords() {
    char const* const words = dlerror();
    moduleErrorText = words == nullptr ? "" : words;
}

} // namespace

std::u16string GetModuleFileNameW(HMODULE module) {
    if (module == nullptr) {
        return GetProgramFileName();
    }
    link_map* map = nullptr;
    if (dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr) {
        TakeLoaderWords();
        SetLastError(ErrorModuleNotFound);
        return {};
    }
    return map->l_name[0] == '\0' ? GetProgramFileName() : GetLibraryFileName(map->l_name);
}

std::u16string GetOwnModuleFileNameW() {
    Dl_info own{};
    static int const inThisModule = 0;
    link_map* map = nullptr;
    if (dladdr1(&inThisModule, &own, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 || map == nullptr ||
        map->l_name[0] == '\0') { // linked into the program
        return GetProgramFileName();
    }
    return GetLibraryFileName(map->l_name);
}

HMODULE GetOwnModule() {
    Dl_info own{};
    static int const inThisModule = 0;
    link_map* map = nullptr;
    if (dladdr1(&inThisModule, &own, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 || map == nullptr ||
        map->l_name[0] == '\0') { // linked into the program
        return nullptr;
    }
    void* const module = dlopen(map->l_name, RTLD_NOLOAD | RTLD_LAZY);
    if (module != nullptr) {
        dlclose(module); // the use that the look-up counted
    }
    return module;
}

HMODULE LoadLibraryExW(char16_t const* path) {
    std::string native;
    if (!ToNativePath(path, native)) {
        return nullptr;
    }
    if (native.find('/') == std::string::npos) { // a bare name would be looked for on the loader's own path
        native.insert(0, "./");
    }
    moduleErrorText.clear();
    HMODULE const module = dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        TakeLoaderWords();
        SetLastError(FindLoadError(native, moduleErrorText));
    }
    return module;
}

void* GetProcAddress(HMODULE module, char const* name) {
    moduleErrorText.clear();
    void* const address = dlsym(module == nullptr ? RTLD_DEFAULT : module, name);
    if (address == nullptr) {
        TakeLoaderWords();
        SetLastError(ErrorProcedureNotFound);
    }
    return address;
}

bool FreeLibrary(HMODULE module) {
    return module != nullptr && dlclose(module) == 0 ? true : FailWith(ErrorInvalidHandle);
}

std::string GetModuleErrorText() {
    return moduleErrorText;
}

} // namespace platform
