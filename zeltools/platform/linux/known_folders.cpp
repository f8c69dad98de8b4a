// SPDX-License-Identifier: MIT
#include "zeltools/platform/known_folders.h"

#include "zeltools/platform/native_path.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace platform {

namespace {

/// The value of a variable that is an absolute path, without trailing slashes; otherwise empty.
std::string GetFolderVariable(char const* name) {
    char const* const value = std::getenv(name);
    if (value == nullptr || value[0] != '/') {
        return {};
    }
    std::string folder = value;
    while (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    return folder;
}

std::string GetHomeFolder() {
    std::string home = GetFolderVariable("HOME");
    if (home.empty()) {
        std::array<char, 4096> texts{};
        passwd entry{};
        passwd* found = nullptr;
        if (getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) == 0 && found != nullptr &&
            found->pw_dir != nullptr && found->pw_dir[0] == '/') {
            home = found->pw_dir;
        }
    }
    return home;
}

std::string GetUserFolder(char const* variable, char const* belowHome) {
    std::string const folder = GetFolderVariable(variable);
    std::string const home = folder.empty() ? GetHomeFolder() : std::string{};
    return home.empty() ? folder : (home == "/" ? "" : home) + belowHome;
}

} // namespace

std::string GetNativeKnownFolder(KnownFolder folder) {
    if (folder == KnownFolder::LocalAppData) {
        return GetUserFolder("XDG_DATA_HOME", "/.local/share");
    }
    if (folder == KnownFolder::Configuration) {
        return GetUserFolder("XDG_CONFIG_HOME", "/.config");
    }
    std::string const common = GetFolderVariable("ZELTOOLS_COMMON_DATA");
    return common.empty() ? "/var/lib" : common;
}

std::u16string SHGetKnownFolderPath(KnownFolder folder) {
    return FromNativePath(GetNativeKnownFolder(folder));
}

std::u16string GetTempPathW() {
    std::string const folder = GetFolderVariable("TMPDIR");
    std::u16string path = FromNativePath(folder.empty() ? "/tmp" : folder);
    if (path.back() != u'\\') {
        path += u'\\';
    }
    return path;
}

} // namespace platform
