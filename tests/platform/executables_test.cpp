// SPDX-License-Identifier: MIT
#include "zeltools/platform/executables.h"

#include "tests/support/temporary_folder.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/modules.h"

#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>

using namespace platform;

namespace {

std::string PortableExecutable(unsigned short characteristics) {
    std::string file(0x80 + 24, '\0');
    file.replace(0, 2, "MZ");
    file[0x3C] = static_cast<char>(0x80);
    file.replace(0x80, 2, "PE");
    file[0x80 + 22] = static_cast<char>(characteristics & 0xFF);
    file[0x80 + 23] = static_cast<char>(characteristics >> 8);
    return file;
}

TEST(Executables, ToldByContentAndPermission) {
    TemporaryFolder const folder;
    std::string const self = std::filesystem::read_symlink("/proc/self/exe");
    // The C++ library: shared, and without an interpreter of its own as the C library has.
    Dl_info library{};
    ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "_ZSt9terminatev"), &library), 0);
    std::filesystem::copy_file(library.dli_fname, folder.Native() + "library");
    std::filesystem::copy_file(self, folder.Native() + "elf");
    std::filesystem::copy_file(self, folder.Native() + "elf not allowed");
    std::filesystem::permissions(folder.Native() + "elf not allowed", std::filesystem::perms(0644));
    folder.Write("script", "#!/bin/sh\n");
    folder.Write("pe", PortableExecutable(0x0022));
    folder.Write("dll", PortableExecutable(0x2022));
    folder.Write("mz", "MZ");
    folder.Write("far", std::string("MZ") + std::string(0x3A, '\0') + "\xFF\xFF\xFF\xFF");
    folder.Write("cut elf", "\177ELF\2\1\1");
    for (char const* const name : {"library", "script", "cut elf"}) {
        std::filesystem::permissions(folder.Native() + name, std::filesystem::perms(0755));
    }
    std::pair<char const*, ExecutableType> const rows[] = {
        {"elf", ExecutableElf},       {"elf not allowed", ExecutableNone},
        {"script", ExecutableScript}, {"pe", ExecutablePE},
        {"dll", ExecutableNone},      {"mz", ExecutableMZ},
        {"far", ExecutableMZ},        {"cut elf", ExecutableNone},
        {"library", ExecutableNone},  {"none", ExecutableNone}};
    for (auto const& [name, type] : rows) {
        EXPECT_EQ(SHGetExecutableType(folder.Path(name).c_str()), type) << name;
    }
}

TEST(Modules, FailuresSayWhy) {
    TemporaryFolder const folder;
    folder.Write("empty.so");
    EXPECT_EQ(LoadLibraryExW(folder.Path("none.so").c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ErrorModuleNotFound);
    EXPECT_EQ(LoadLibraryExW(folder.Path("empty.so").c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ErrorBadExeFormat);
    EXPECT_EQ(GetProcAddress(nullptr, "no_such_function"), nullptr);
    EXPECT_EQ(GetLastError(), ErrorProcedureNotFound);
    std::string const self = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(GetOwnModuleFileNameW().size(), self.size()); // the tests link the toolkit into themselves
}

} // namespace
