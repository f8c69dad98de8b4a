// SPDX-License-Identifier: MIT
// Formats: ELF (System V ABI, chapters 4 and 5) and Microsoft's "PE Format".

#include "zeltools/platform/executables.h"

#include "zeltools/platform/errors.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/linux/file_handle.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <array>
#include <cstring>
#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr mode_t ExecuteBits = 0111;

/// Reads a record at a place of the file; false when the file ends before it does.
template <class Record>
bool ReadAt(int descriptor, unsigned long long position, Record& record) {
    return position <= 0x7FFF'FFFF'FFFF'0000 &&
           pread(descriptor, &record, sizeof record, static_cast<off_t>(position)) ==
               static_cast<ssize_t>(sizeof record);
}

/// A shared object is a program when it names its interpreter, or says of itself that it is one.
template <class Header, class Segment, class Dynamic>
bool IsElfProgram(int descriptor) {
    Header header{};
    if (!ReadAt(descriptor, 0, header)) {
        return false;
    }
    if (header.e_type != ET_DYN) {
        return header.e_type == ET_EXEC;
    }
    constexpr unsigned int MaxSegments = 256; // a linker writes about a dozen
    constexpr unsigned int MaxDynamicEntries = 1024;
    for (unsigned int i = 0; i < header.e_phnum && i < MaxSegments; ++i) {
        Segment segment{};
        if (!ReadAt(descriptor, header.e_phoff + static_cast<unsigned long long>(i) * header.e_phentsize, segment)) {
            return false;
        }
        if (segment.p_type == PT_INTERP) {
            return true;
        }
        if (segment.p_type != PT_DYNAMIC) {
            continue;
        }
        unsigned long long const count = segment.p_filesz / sizeof(Dynamic);
        for (unsigned long long k = 0; k < count && k < MaxDynamicEntries; ++k) {
            Dynamic entry{};
            if (!ReadAt(descriptor, segment.p_offset + k * sizeof entry, entry) || entry.d_tag == DT_NULL) {
                break;
            }
            if (entry.d_tag == DT_FLAGS_1 && (entry.d_un.d_val & DF_1_PIE) != 0) {
                return true;
            }
        }
    }
    return false;
}

ExecutableType GetOriginalSystemType(int descriptor) {
    constexpr unsigned int NewHeaderField = 0x3C;
    constexpr unsigned short IsLibrary = 0x2000;
    constexpr std::array<unsigned char, 4> Signature = {'P', 'E', 0, 0};
    struct CoffHeader {
        std::array<unsigned char, 4> signature;
        unsigned short machine;
        unsigned short sectionCount;
        unsigned int timeStamp;
        unsigned int symbolTable;
        unsigned int symbolCount;
        unsigned short optionalHeaderSize;
        unsigned short characteristics;
    };
    unsigned int position = 0;
    CoffHeader header{};
    if (!ReadAt(descriptor, NewHeaderField, position) || !ReadAt(descriptor, position, header) ||
        header.signature != Signature) {
        return ExecutableMZ;
    }
    return (header.characteristics & IsLibrary) != 0 ? ExecutableNone : ExecutablePE;
}

} // namespace

ExecutableType SHGetExecutableType(char16_t const* path) {
    std::string native;
    HANDLE const file =
        ToNativePath(path, native)
            ? OpenNativeFile(native, GenericRead, ShareRead | ShareWrite | ShareDelete, OpenExisting, 0, false)
            : InvalidHandle;
    if (file == InvalidHandle) {
        return ExecutableNone;
    }
    int const descriptor = DescriptorOf(file);
    struct stat status {};
    std::array<unsigned char, EI_NIDENT> start{};
    bool const isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    ssize_t const length = isRegular ? pread(descriptor, start.data(), start.size(), 0) : 0;
    bool const isAllowed = (status.st_mode & ExecuteBits) != 0;
    ExecutableType type = ExecutableNone;
    if (length >= 2 && start[0] == '#' && start[1] == '!') {
        type = isAllowed ? ExecutableScript : ExecutableNone;
    } else if (length >= 2 && start[0] == 'M' && start[1] == 'Z') {
        type = GetOriginalSystemType(descriptor);
    } else if (length == EI_NIDENT && std::memcmp(start.data(), ELFMAG, SELFMAG) == 0 && isAllowed) {
        bool const isProgram = start[EI_CLASS] == ELFCLASS64
                                   ? IsElfProgram<Elf64_Ehdr, Elf64_Phdr, Elf64_Dyn>(descriptor)
                                   : IsElfProgram<Elf32_Ehdr, Elf32_Phdr, Elf32_Dyn>(descriptor);
        type = isProgram ? ExecutableElf : ExecutableNone;
    }
    CloseFile(file);
    return type;
}

} // namespace platform
