// SPDX-License-Identifier: MIT
// The head of a library is that of the ELF format: System V Application Binary Interface, chapter 4 "Object files" and
// chapter 5 "Program loading", and elf(5).
#include "zeltools/platform/library_check.h"

#include "zeltools/platform/native_path.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <grp.h>
#include <link.h>
#include <memory>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

/// No library has more segments; the system's own limit lies far above.
constexpr unsigned int MostSegments = 256;

/// A descriptor that is closed when it goes.
class OpenFile {
public:
    explicit OpenFile(char const* native) : descriptor(open(native, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~OpenFile() {
        if (descriptor >= 0)
            close(descriptor);
    }
    OpenFile(OpenFile const&) = delete;
    OpenFile& operator=(OpenFile const&) = delete;

    bool IsOpen() const { return descriptor >= 0; }
    bool GetFacts(struct stat& facts) const { return fstat(descriptor, &facts) == 0; }
    bool ReadAt(void* data, std::size_t size, std::uint64_t offset) const {
        return pread(descriptor, data, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
    }

private:
    int descriptor;
};

/// Whether the group is the owner's alone, as it is where each user has a group of the same name: such files are often
/// writable for the group.
bool IsPrivateGroup(uid_t owner, gid_t group) {
    std::array<char, 4096> userText{};
    std::array<char, 4096> groupText{};
    passwd userEntry{};
    ::group groupEntry{};
    passwd* user = nullptr;
    ::group* found = nullptr;
    return getpwuid_r(owner, &userEntry, userText.data(), userText.size(), &user) == 0 && user != nullptr &&
           user->pw_gid == group && getgrgid_r(group, &groupEntry, groupText.data(), groupText.size(), &found) == 0 &&
           found != nullptr && std::strcmp(user->pw_name, found->gr_name) == 0 && found->gr_mem[0] == nullptr;
}

bool OthersCanWrite(struct stat const& facts) {
    bool const foreign = facts.st_uid != 0 && facts.st_uid != geteuid();
    bool const forAll = (facts.st_mode & S_IWOTH) != 0;
    bool const forGroup = (facts.st_mode & S_IWGRP) != 0 && !IsPrivateGroup(facts.st_uid, facts.st_gid);
    return foreign || forAll || forGroup;
}

/// Whether others can put another file, or a link to one, in the place of this name.
bool IsInWritableFolder(std::string_view name) {
    std::size_t const slash = name.rfind('/');
    std::string const folder(slash == name.npos ? "." : name.substr(0, slash + 1));
    struct stat facts {};
    return stat(folder.c_str(), &facts) != 0 || OthersCanWrite(facts);
}

/// Whether `size` bytes from `offset` lie in a file of `fileSize`, whatever the numbers are.
bool LiesInside(std::uint64_t offset, std::uint64_t size, std::uint64_t fileSize) {
    return offset <= fileSize && size <= fileSize - offset;
}

LibraryDefect CheckContent(OpenFile const& file, std::uint64_t fileSize) {
    Header header{};
    if (!file.ReadAt(&header, sizeof header, 0))
        return LibraryDefect::NotALibrary;
    constexpr unsigned char wordSize = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != wordSize ||
        header.e_type != ET_DYN || header.e_phentsize != sizeof(Segment) || header.e_phnum > MostSegments)
        return LibraryDefect::NotALibrary;
    for (unsigned int i = 0; i < header.e_phnum; ++i) {
        Segment segment{};
        std::uint64_t const place = header.e_phoff + std::uint64_t{i} * sizeof segment;
        if (!LiesInside(place, sizeof segment, fileSize) || !file.ReadAt(&segment, sizeof segment, place))
            return LibraryDefect::CutShort;
        bool const isLoaded = segment.p_type == PT_LOAD || segment.p_type == PT_DYNAMIC;
        if (isLoaded && !LiesInside(segment.p_offset, segment.p_filesz, fileSize))
            return LibraryDefect::CutShort;
    }
    return LibraryDefect::None;
}

LibraryDefect DefectOfErrno() {
    return errno == EACCES || errno == EPERM ? LibraryDefect::Unreadable : LibraryDefect::Missing;
}

} // namespace

LibraryDefect CheckLibraryFile(char16_t const* path) {
    std::string native;
    if (path == nullptr || *path == 0 || !ToNativePath(path, native))
        return LibraryDefect::Missing;
    std::unique_ptr<char, void (*)(void*)> const real{realpath(native.c_str(), nullptr), std::free};
    if (real == nullptr)
        return DefectOfErrno();
    OpenFile const file(real.get());
    if (!file.IsOpen())
        return DefectOfErrno();

    struct stat facts {};
    if (!file.GetFacts(facts))
        return LibraryDefect::Unreadable;
    if (!S_ISREG(facts.st_mode))
        return LibraryDefect::NotALibrary;
    LibraryDefect const content = CheckContent(file, static_cast<std::uint64_t>(facts.st_size));
    if (content != LibraryDefect::None)
        return content;
    if (IsInWritableFolder(native) || IsInWritableFolder(real.get()))
        return LibraryDefect::InWritableDirectory;
    return OthersCanWrite(facts) ? LibraryDefect::WritableByOthers : LibraryDefect::None;
}

} // namespace platform
