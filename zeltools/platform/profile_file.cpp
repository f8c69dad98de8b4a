// SPDX-License-Identifier: MIT
#include "zeltools/platform/profile_file.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/folder_lock.h"
#include "zeltools/platform/known_folders.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/utf8.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace platform {

namespace {

std::u16string Decode(std::string_view bytes) {
    std::u16string text(Utf16Room(bytes.size()), u'\0');
    text.resize(Utf8ToUtf16(bytes.data(), bytes.size(), text.data()));
    return text;
}

std::string Encode(std::u16string_view text) {
    std::string bytes(Utf8Room(text.size()), '\0');
    bytes.resize(Utf16ToUtf8(text.data(), text.size(), bytes.data()));
    return bytes;
}

template <class View>
View Trimmed(View text) {
    constexpr auto isBlank = [](auto character) { return character == ' ' || character == '\t' || character == '\r'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsSameName(std::string_view bytes, std::u16string_view name) {
    std::u16string const text = Decode(bytes);
    std::u16string_view const wanted = Trimmed(name);
    return std::equal(text.begin(), text.end(), wanted.begin(), wanted.end(),
                      [](char16_t a, char16_t b) { return CharUpperW(a) == CharUpperW(b); });
}

/// The name in a section's line; false for any other line.
bool IsSection(std::string_view line, std::string_view& name) {
    line = Trimmed(line);
    if (line.empty() || line.front() != '[') {
        return false;
    }
    name = Trimmed(line.substr(1, std::min(line.find(']'), line.size()) - 1));
    return true;
}

bool IsEntry(std::string_view line, std::string_view& name, std::string_view& value) {
    line = Trimmed(line);
    std::size_t const equals = line.find('=');
    if (line.empty() || line.front() == ';' || equals == line.npos) {
        return false;
    }
    name = Trimmed(line.substr(0, equals));
    value = Trimmed(line.substr(equals + 1));
    return true;
}

bool IsQuoted(std::string_view value) {
    return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
}

/// A profile in memory: its lines as UTF-8, without their ends.
struct Profile {
    std::vector<std::string> lines;
    bool isUtf16 = false;
    std::string lineEnd = "\n";

    void Parse(std::string bytes);
    std::string Text() const;

    /// The lines of a section's content, [first, last). False when there is no such section.
    bool FindSection(std::u16string_view section, std::size_t& first, std::size_t& last) const;
    /// The line of an entry between two lines; `last` when there is none.
    std::size_t FindEntry(std::u16string_view entry, std::size_t first, std::size_t last) const;
};

void Profile::Parse(std::string bytes) {
    if (bytes.size() >= 2 && bytes[0] == '\xFF' && bytes[1] == '\xFE') {
        isUtf16 = true;
        std::u16string text((bytes.size() - 2) / 2, u'\0');
        if (!text.empty()) {
            std::memcpy(text.data(), bytes.data() + 2, text.size() * 2);
        }
        bytes = Encode(text);
    } else if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        bytes.erase(0, 3);
    }
    std::string_view rest = bytes;
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
            lineEnd = "\r\n";
        }
        lines.emplace_back(line);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

std::string Profile::Text() const {
    std::string bytes;
    for (std::string const& line : lines) {
        bytes += line;
        bytes += lineEnd;
    }
    if (!isUtf16) {
        return bytes;
    }
    std::u16string text = u'\uFEFF' + Decode(bytes);
    return {reinterpret_cast<char const*>(text.data()), text.size() * 2};
}

bool Profile::FindSection(std::u16string_view section, std::size_t& first, std::size_t& last) const {
    std::string_view name;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (IsSection(lines[i], name) && IsSameName(name, section)) {
            first = last = i + 1;
            while (last < lines.size() && !IsSection(lines[last], name)) {
                ++last;
            }
            return true;
        }
    }
    return false;
}

std::size_t Profile::FindEntry(std::u16string_view entry, std::size_t first, std::size_t last) const {
    std::string_view name;
    std::string_view value;
    while (first < last && !(IsEntry(lines[first], name, value) && IsSameName(name, entry))) {
        ++first;
    }
    return first;
}

struct FileCloser {
    HANDLE file;
    ~FileCloser() {
        if (file != InvalidHandle) {
            CloseFile(file);
        }
    }
};

bool ReadProfile(char16_t const* path, Profile& profile) {
    FileCloser const opened{
        CreateFileW(path, GenericRead, ShareRead | ShareWrite | ShareDelete, OpenExisting, FileFlagSequentialScan)};
    unsigned long long size = 0;
    if (opened.file == InvalidHandle || !GetFileSize(opened.file, size)) {
        return false;
    }
    if (size > MaxProfileBytes) {
        SetLastError(ErrorFileTooLarge);
        return false;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t read = 0;
    if (!ReadFile(opened.file, bytes.data(), bytes.size(), read)) {
        return false;
    }
    bytes.resize(read);
    profile.Parse(std::move(bytes));
    return true;
}

/// Writes beside the file, waits for the disk, and renames over it.
bool ReplaceFile(std::u16string const& path, std::string const& bytes) {
    std::u16string const beside = path + u".tmp";
    bool isWritten = false;
    {
        FileCloser const opened{CreateFileW(beside.c_str(), GenericWrite, 0, CreateAlways, FileAttributeNormal)};
        std::size_t written = 0;
        isWritten = opened.file != InvalidHandle && WriteFile(opened.file, bytes.data(), bytes.size(), written) &&
                    FlushFileBuffers(opened.file);
        if (opened.file == InvalidHandle) {
            return false;
        }
    }
    if (isWritten && MoveFileExW(beside.c_str(), path.c_str(), MoveReplaceExisting)) {
        return true;
    }
    unsigned int const cause = GetLastError();
    DeleteFileW(beside.c_str());
    SetLastError(cause);
    return false;
}

bool CanBeRead(char16_t const* text, std::u16string_view refused) {
    std::u16string_view const view{text};
    return view.find_first_of(refused) == view.npos && !Trimmed(view).empty();
}

/// Carries out a change. False when there is nothing to write.
bool Change(Profile& profile, char16_t const* section, char16_t const* entry, char16_t const* value) {
    std::size_t first = 0;
    std::size_t last = 0;
    bool const isThere = profile.FindSection(section, first, last);
    auto const line = [&](std::size_t index) {
        return profile.lines.begin() + static_cast<std::vector<std::string>::difference_type>(index);
    };
    if (entry == nullptr) {
        if (isThere) {
            profile.lines.erase(line(first - 1), line(last));
        }
        return isThere;
    }
    std::size_t const found = isThere ? profile.FindEntry(entry, first, last) : last;
    if (value == nullptr) {
        if (found != last) {
            profile.lines.erase(line(found));
            return true;
        }
        return false;
    }
    std::string text = Encode(value);
    if (Trimmed(std::string_view(text)) != text || IsQuoted(text)) {
        text = '"' + text + '"';
    }
    std::string const written = Encode(Trimmed(std::u16string_view(entry))) + '=' + text;
    if (found != last) {
        profile.lines[found] = written;
        return true;
    }
    if (!isThere) {
        profile.lines.push_back('[' + Encode(Trimmed(std::u16string_view(section))) + ']');
        last = first = profile.lines.size();
    }
    while (last > first && Trimmed(std::string_view(profile.lines[last - 1])).empty()) {
        --last; // empty lines stay between this section and the next
    }
    profile.lines.insert(line(last), written);
    return true;
}

std::u16string UserProfile(bool makeFolder) {
    std::u16string path = SHGetKnownFolderPath(KnownFolder::Configuration);
    for (char16_t const* const name : {u"", u"\\zeltools"}) {
        path += name;
        if (makeFolder && !path.empty()) {
            CreateDirectoryW(path.c_str());
        }
    }
    return path + u"\\profile.ini";
}

} // namespace

bool GetPrivateProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value,
                              char16_t const* path) {
    Profile profile;
    std::size_t first = 0;
    std::size_t last = 0;
    if (!ReadProfile(path, profile)) {
        return false;
    }
    std::size_t const found = profile.FindSection(section, first, last) ? profile.FindEntry(entry, first, last) : last;
    if (found == last) {
        SetLastError(ErrorFileNotFound);
        return false;
    }
    std::string_view name;
    std::string_view text;
    IsEntry(profile.lines[found], name, text);
    value = Decode(IsQuoted(text) ? text.substr(1, text.size() - 2) : text);
    return true;
}

bool WritePrivateProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value,
                                char16_t const* path) {
    if (section == nullptr || !CanBeRead(section, u"]\r\n") ||
        (entry != nullptr && (!CanBeRead(entry, u"=\r\n") || Trimmed(std::u16string_view(entry)).front() == u';' ||
                              Trimmed(std::u16string_view(entry)).front() == u'[')) ||
        (value != nullptr && std::u16string_view(value).find_first_of(u"\r\n") != std::u16string_view::npos)) {
        SetLastError(ErrorInvalidParameter);
        return false;
    }
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    std::size_t const slash = native.rfind('/');
    FolderLock const hold(slash == native.npos ? std::string{} : native.substr(0, slash + 1));
    Profile profile;
    if (!ReadProfile(path, profile) && GetLastError() != ErrorFileNotFound) {
        return false; // what cannot be read must not be replaced by less
    }
    if (!Change(profile, section, entry, value)) {
        return true;
    }
    return ReplaceFile(path, profile.Text());
}

bool GetProfileStringW(std::u16string_view section, std::u16string_view entry, std::u16string& value) {
    return GetPrivateProfileStringW(section, entry, value, UserProfile(false).c_str());
}

bool WriteProfileStringW(char16_t const* section, char16_t const* entry, char16_t const* value) {
    return WritePrivateProfileStringW(section, entry, value, UserProfile(true).c_str());
}

} // namespace platform
