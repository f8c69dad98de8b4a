// SPDX-License-Identifier: MIT
#include "zeltools/platform/system_information.h"

#include "zeltools/platform/linux/mount_table.h"
#include "zeltools/platform/utf8.h"

#include <string_view>
#include <sys/utsname.h>

namespace platform {

namespace {

/// The value of PRETTY_NAME in an os-release file: the shell's quotes and escapes taken off.
std::string ReadPrettyName(std::string_view text) {
    constexpr std::string_view Key = "PRETTY_NAME=";
    std::size_t at = text.substr(0, Key.size()) == Key ? 0 : text.find("\nPRETTY_NAME=");
    if (at == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(text.find('=', at) + 1);
    text = text.substr(0, text.find('\n'));
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            name += text[++i];
        } else if (text[i] != '"' && text[i] != '\'') {
            name += text[i];
        }
    }
    return name;
}

std::string GetSystemName() {
    for (char const* const file : {"/etc/os-release", "/usr/lib/os-release"}) {
        std::string name = ReadPrettyName(ReadSystemFile(file));
        if (!name.empty()) {
            return name;
        }
    }
    utsname system{};
    return uname(&system) == 0 ? std::string{system.sysname} + ' ' + system.release : "Linux";
}

} // namespace

SystemVersion const& GetWinVer() {
    static SystemVersion const version = [] {
        SystemVersion found;
        std::string const name = GetSystemName();
        found.name.resize(Utf16Room(name.size()));
        found.name.resize(Utf8ToUtf16(name.data(), name.size(), found.name.data()));
        return found;
    }();
    return version;
}

} // namespace platform
