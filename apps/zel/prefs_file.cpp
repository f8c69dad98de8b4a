// SPDX-License-Identifier: MIT
#include "prefs_file.h"

#include "terminal.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/persistence/custom_data.h>
#include <zeltools/persistence/xarchive.h>
#include <zeltools/persistence/xmem_file.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zel {

namespace {

constexpr std::size_t RecordHeadBytes = 16; ///< Two keys, the store's magic, and the bytes that follow.

/// The reason of a failure in the reader's language, with the name in it.
std::string Reason(CXFileException const& failure, std::string const& nativeName) {
    std::string const shown = ShownName(nativeName, isatty(STDERR_FILENO) != 0);
    CXFileException const named(failure.cause, static_cast<char16_t const*>(XCA2W(shown.c_str(), xEncodingUtf8)));
    return static_cast<char const*>(XCW2A(named.GetErrorMessage(), xEncodingUtf8));
}

/// The little-endian word at a place that is there.
unsigned int WordAt(std::string_view bytes, std::size_t offset) {
    unsigned int word = 0;
    std::memcpy(&word, bytes.data() + offset, sizeof(word));
    return word;
}

bool ReadStore(std::string_view stream, CCustomData& store) {
    CXMemFile file(reinterpret_cast<unsigned char const*>(stream.data()), stream.size(), false, true);
    CXArchive archive(&file, CXArchive::Loading | CXArchive::NoFlushOnDelete);
    try {
        store.Serialize(archive);
        return true;
    } catch (CXException* exception) {
        exception->Delete();
        return false;
    }
}

/// Reads the bytes as they come, up to the file's end.
std::string ReadBytes(std::string const& nativeName, std::string& bytes) {
    CXFileException failure;
    CXFile file(false);
    if (!file.Open(fileFromNativeName(nativeName.c_str()), XFILE_OPEN_READ | XFILE_SHARE_DENY_NONE, &failure)) {
        return Reason(failure, nativeName);
    }
    char block[16384];
    while (auto const got = file.Read(block, sizeof(block))) {
        bytes.append(block, got);
    }
    return {};
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Writes beside the file, flushes and renames. A link is followed, so that it stays one.
bool ReplaceFile(std::string nativeName, std::string_view bytes) {
    std::error_code noLink;
    std::filesystem::path const real = std::filesystem::canonical(nativeName, noLink);
    nativeName = noLink ? nativeName : real.string();
    std::string temporary = nativeName + ".XXXXXX";
    int const descriptor = mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    struct stat status {};
    bool const isWritten = stat(nativeName.c_str(), &status) == 0 && fchmod(descriptor, status.st_mode & 0777) == 0 &&
                           WriteAll(descriptor, bytes) && fsync(descriptor) == 0;
    int const writeError = errno;
    bool const isReplaced = (close(descriptor) == 0) & isWritten && rename(temporary.c_str(), nativeName.c_str()) == 0;
    if (!isReplaced) {
        int const error = isWritten ? errno : writeError;
        unlink(temporary.c_str());
        errno = error;
        return false;
    }
    std::string const folder = std::filesystem::path(nativeName).parent_path().string();
    int const folderDescriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderDescriptor >= 0) {
        fsync(folderDescriptor); // the new name too is to outlive a loss of power
        close(folderDescriptor);
    }
    return true;
}

} // namespace

char const* PrefsRecord::Generation() const {
    switch (magic) {
    case 0x43555335: return "current";
    case 0x43555334: return "4";
    case 0x43555355: return "legacy wide";
    default: return "legacy narrow";
    }
}

PrefsRecord* PrefsFile::Find(unsigned int key1, unsigned int key2) {
    for (PrefsRecord& record : records) {
        if (record.key1 == key1 && record.key2 == key2) {
            return &record;
        }
    }
    return nullptr;
}

std::string ReadPrefsFile(std::string const& nativeName, PrefsFile& file) {
    std::string const failure = ReadBytes(nativeName, file.bytes);
    if (!failure.empty()) {
        return failure;
    }
    std::string const name = ShownName(nativeName, isatty(STDERR_FILENO) != 0);
    std::string_view rest = file.bytes;
    if (rest.size() < 4) {
        return fmt::format("{}: {} bytes are no preferences file", name, rest.size());
    }
    unsigned int const count = WordAt(rest, 0);
    rest.remove_prefix(4);
    for (unsigned int i = 0; i < count; ++i) {
        std::size_t const size = rest.size() < RecordHeadBytes ? RecordHeadBytes : RecordHeadBytes + WordAt(rest, 12);
        if (size > rest.size()) {
            return fmt::format("{}: record {} of {} is cut off", name, i + 1, count);
        }
        PrefsRecord record{WordAt(rest, 0), WordAt(rest, 4), WordAt(rest, 8), rest.substr(0, size),
                           std::make_unique<CCustomData>()};
        if (!ReadStore(record.bytes.substr(8), *record.store)) {
            return fmt::format("{}: record {} of {} is damaged", name, i + 1, count);
        }
        file.records.push_back(std::move(record));
        rest.remove_prefix(size);
    }
    return {};
}

std::string WritePrefsFileWithout(std::string const& nativeName, PrefsFile const& file, PrefsRecord const& record) {
    auto const count = static_cast<unsigned int>(file.records.size() - 1);
    std::string bytes(reinterpret_cast<char const*>(&count), sizeof(count));
    for (PrefsRecord const& kept : file.records) {
        bytes += &kept == &record ? std::string_view() : kept.bytes;
    }
    if (ReplaceFile(nativeName, bytes)) {
        return {};
    }
    return fmt::format("{}: {}", ShownName(nativeName, isatty(STDERR_FILENO) != 0), std::strerror(errno));
}

} // namespace zel
