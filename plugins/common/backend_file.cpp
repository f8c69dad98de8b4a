// SPDX-License-Identifier: MIT
#include "plugins/common/backend_file.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The file of the shell, which this code is part of.
std::string ShellFile() {
    Dl_info facts{};
    static char const anchor = 0;
    return dladdr(&anchor, &facts) != 0 && facts.dli_fname != nullptr ? facts.dli_fname : "";
}

std::string FolderOf(std::string const& file) {
    std::size_t const slash = file.rfind('/');
    return slash == std::string::npos ? "." : file.substr(0, slash);
}

/// Whether a file can be changed by nobody who cannot change the other one, which the host found safe to load.
bool IsAsSafeAs(std::string const& trusted, std::string const& file) {
    struct stat known {};
    struct stat facts {};
    if (stat(trusted.c_str(), &known) != 0 || stat(file.c_str(), &facts) != 0) {
        return true; // what is not there is told by the loader
    }
    bool const foreign = facts.st_uid != 0 && facts.st_uid != geteuid();
    bool const forGroup =
        (facts.st_mode & S_IWGRP) != 0 && ((known.st_mode & S_IWGRP) == 0 || known.st_gid != facts.st_gid);
    return !foreign && !forGroup && (facts.st_mode & S_IWOTH) == 0;
}

} // namespace

std::string FindBackendFile(std::string const& name, std::string& error) {
    std::string const shell = ShellFile();
    std::string const folder = FolderOf(shell) + "/backends";
    std::string file = folder + '/' + name;
    // The host looked at the shell's own folder before it loaded the shell, and at no other.
    if (!IsAsSafeAs(FolderOf(shell), folder) || !IsAsSafeAs(shell, file)) {
        error = file + ": other users can change it";
        return {};
    }
    return file;
}
