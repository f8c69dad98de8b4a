// SPDX-License-Identifier: MIT
#include "zeltools/platform/shell_path.h"

#include "zeltools/platform/character_case.h"
#include "zeltools/platform/drives.h"

#include <algorithm>
#include <string>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t npos = std::u16string_view::npos;
constexpr std::u16string_view VolumePrefix = u"\\\\?\\Volume{";
constexpr std::size_t VolumeNameEnd = 10 + 1 + 36; // \\?\Volume, the brace, an identifier of 36 characters

bool IsSeparator(char16_t c) {
    return c == u'\\' || c == u'/';
}

bool IsLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool HasDrive(std::u16string_view path, std::size_t start = 0) {
    return path.size() >= start + 2 && IsLetter(path[start]) && path[start + 1] == u':';
}

bool HasBackslash(std::u16string_view path, std::size_t index) {
    return index < path.size() && path[index] == u'\\';
}

bool HasVerbatimUnc(std::u16string_view path) {
    return path.size() >= 8 && path.starts_with(u"\\\\?\\") && (path[4] | 0x20) == u'u' && (path[5] | 0x20) == u'n' &&
           (path[6] | 0x20) == u'c' && path[7] == u'\\';
}

// Gives the length of `X:` or `X:\` at `start`, counted from the text's beginning.
std::size_t DriveEnd(std::u16string_view path, std::size_t start) {
    return start + (HasBackslash(path, start + 2) ? 3 : 2);
}

// Gives the length of `\\?\X:\` or `\\?\Volume{...}\`, 0 for anything else.
std::size_t VerbatimRootLength(std::u16string_view path) {
    if (!path.starts_with(u"\\\\?\\")) {
        return 0;
    }
    if (HasDrive(path, 4)) {
        return DriveEnd(path, 4);
    }
    if (path.starts_with(VolumePrefix) && path.size() > VolumeNameEnd && path[VolumeNameEnd] == u'}') {
        return VolumeNameEnd + 1 + (HasBackslash(path, VolumeNameEnd + 1) ? 1 : 0);
    }
    return 0;
}

// Gives the length of what no `..` and no cutting of components takes away. Unlike the root it holds neither server
// nor share.
std::size_t FixedPrefixLength(std::u16string_view path) {
    if (std::size_t const verbatim = VerbatimRootLength(path)) {
        return verbatim;
    }
    if (path.starts_with(u"\\\\")) {
        return 2;
    }
    if (path.starts_with(u'\\')) {
        return 1;
    }
    return HasDrive(path) ? DriveEnd(path, 0) : 0;
}

// Gives the end of `server\share` from `start` on, without a separator behind a lone server.
std::size_t ShareEnd(std::u16string_view path, std::size_t start) {
    std::size_t const server = std::min(path.find(u'\\', start), path.size());
    std::size_t const share = server == path.size() ? server : std::min(path.find(u'\\', server + 1), path.size());
    return share > server + 1 ? share : server;
}

} // namespace

std::size_t PathRootLength(std::u16string_view path) {
    if (std::size_t const verbatim = VerbatimRootLength(path)) {
        return verbatim;
    }
    if (path.starts_with(u"\\\\?\\")) {
        return HasVerbatimUnc(path) ? ShareEnd(path, 8) : 0;
    }
    return path.starts_with(u"\\\\") ? ShareEnd(path, 2) : FixedPrefixLength(path);
}

std::size_t PathExtensionPosition(std::u16string_view path) {
    for (std::size_t index = path.size(); index-- > 0;) {
        char16_t const c = path[index];
        if (c == u'.') {
            return index;
        }
        if (c == u'\\' || c == u' ') {
            break;
        }
    }
    return path.size();
}

std::size_t PathFileNamePosition(std::u16string_view path) {
    for (std::size_t index = path.size(); index-- > 1;) {
        char16_t const before = path[index - 1];
        if ((IsSeparator(before) || before == u':') && !IsSeparator(path[index])) {
            return index;
        }
    }
    return 0;
}

std::size_t PathDirectoryLength(std::u16string_view path) {
    std::size_t const prefix = FixedPrefixLength(path);
    std::size_t const last = path.rfind(u'\\');
    if (last == npos || last < prefix) {
        // A stream name behind the root goes with the file: only the root is left.
        return std::min(prefix, path.size());
    }
    if (last == prefix) {
        // A share whose server is empty keeps its third backslash.
        bool const emptyServer = prefix == 2 && path[0] == u'\\' && last + 1 < path.size();
        return emptyServer ? prefix + 1 : prefix;
    }
    return path[last - 1] == u'\\' ? last - 1 : last;
}

bool PathIsUNCW(std::u16string_view path) {
    return path.starts_with(u"\\\\") && (!path.starts_with(u"\\\\?\\") || HasVerbatimUnc(path));
}

bool PathIsUNCServerW(std::u16string_view path) {
    return PathIsUNCW(path) && path.find(u'\\', 2) == npos;
}

bool PathIsUNCServerShareW(std::u16string_view path) {
    return PathIsUNCW(path) && std::count(path.begin() + 2, path.end(), u'\\') == 1;
}

bool PathIsRelativeW(std::u16string_view path) {
    return !path.starts_with(u'\\') && !HasDrive(path);
}

bool PathIsRootW(std::u16string_view path) {
    if (path.starts_with(u"\\\\")) {
        if (std::size_t const verbatim = VerbatimRootLength(path)) {
            return verbatim == path.size() && path.back() == u'\\';
        }
        if (!PathIsUNCW(path)) {
            return false;
        }
        std::u16string_view const share = path.substr(HasVerbatimUnc(path) ? 8 : 2);
        std::size_t const separator = share.find(u'\\');
        return separator == npos || (separator + 1 < share.size() && share.find(u'\\', separator + 1) == npos);
    }
    return path == u"\\" || (path.size() == 3 && HasDrive(path) && path[2] == u'\\');
}

bool PathIsURLW(std::u16string_view path) {
    for (std::size_t index = 0; index < path.size(); ++index) {
        char16_t const c = path[index];
        if (c == u':') {
            return index >= 2;
        }
        if (!IsLetter(c) && !(c >= u'0' && c <= u'9') && c != u'+' && c != u'-' && c != u'.') {
            return false;
        }
    }
    return false;
}

bool PathIsNetworkPathW(std::u16string_view path) {
    return PathIsUNCW(path) || (HasDrive(path) && IsNetworkDrive(path[0]));
}

char16_t const* PathFindExtensionW(char16_t const* path) {
    return path + PathExtensionPosition(path);
}

char16_t const* PathFindFileNameW(char16_t const* path) {
    return path + PathFileNamePosition(path);
}

// Canonical form ----------------------------------------------------------------------------------------------------

bool PathNeedsCanonicalization(std::u16string_view path) {
    if (path.empty() || path.back() == u'.' || (path.size() == 2 && HasDrive(path))) {
        return true;
    }
    for (std::size_t dot = path.find(u'.'); dot != npos; dot = path.find(u'.', dot + 1)) {
        if (dot > 0 && path[dot - 1] != u'\\') {
            continue;
        }
        std::size_t const end = dot + (path[dot + 1] == u'.' ? 2 : 1);
        if (HasBackslash(path, end)) {
            return true;
        }
    }
    return false;
}

std::size_t PathCanonicalize(std::u16string_view path, char16_t* out) {
    // `X:name` is relative to a drive's own folder, so the drive is part of a segment that `..` can take away.
    std::size_t prefix = HasVerbatimUnc(path) ? 8 : FixedPrefixLength(path);
    if (prefix == 2 && path[0] != u'\\') {
        prefix = 0;
    }
    std::char_traits<char16_t>::move(out, path.data(), prefix);
    std::size_t length = prefix;

    // Invariant: out[0, length) is the prefix or ends in a separator, and is no longer than what was read, save that a
    // `..` too many may leave one backslash for the two units or more that it read.
    for (std::size_t begin = prefix; begin < path.size();) {
        std::size_t const end = std::min(path.find(u'\\', begin), path.size());
        std::u16string_view const segment = path.substr(begin, end - begin);
        bool const isLast = end == path.size();
        begin = end + 1;
        if (segment == u"." || segment == u"..") {
            if (segment.size() == 2) {
                if (length > prefix) {
                    --length;
                    while (length > prefix && out[length - 1] != u'\\') {
                        --length;
                    }
                }
                if (length == 0) {
                    out[length++] = u'\\';
                    prefix = 1;
                }
            }
            if (isLast && length > prefix) {
                --length;
            }
            continue;
        }
        std::char_traits<char16_t>::move(out + length, segment.data(), segment.size());
        length += segment.size();
        if (!isLast) {
            out[length++] = u'\\';
        }
    }

    while (length > prefix && out[length - 1] == u'.' && !(length > prefix + 1 && out[length - 2] == u'*')) {
        --length;
    }
    if (length == 0 || (length == 2 && HasDrive({out, length}))) {
        out[length++] = u'\\';
    }
    return length;
}

bool PathCanonicalizeW(char16_t* out, char16_t const* path) {
    out[PathCanonicalize(path, out)] = 0;
    return true;
}

// Cutting -----------------------------------------------------------------------------------------------------------

bool PathStripToRootW(char16_t* path) {
    std::size_t const length = PathRootLength(path);
    path[length] = 0;
    return length > 0;
}

void PathRemoveExtensionW(char16_t* path) {
    path[PathExtensionPosition(path)] = 0;
}

void PathStripPathW(char16_t* path) {
    std::u16string_view const text = path;
    std::size_t const position = PathFileNamePosition(text);
    std::copy(path + position, path + text.size() + 1, path);
}

bool PathRemoveFileSpecW(char16_t* path) {
    std::u16string_view const text = path;
    std::size_t const length = PathDirectoryLength(text);
    bool const isCut = length < text.size();
    path[length] = 0;
    return isCut;
}

// Relative paths ----------------------------------------------------------------------------------------------------

namespace {

std::u16string_view WithoutTrailingBackslash(std::u16string_view path) {
    if (path.ends_with(u'\\')) {
        path.remove_suffix(1);
    }
    return path;
}

// Gives the length of what both begin with, in whole components and without a trailing separator, case ignored.
std::size_t SharedLength(std::u16string_view first, std::u16string_view second) {
    std::size_t shared = 0;
    for (std::size_t index = 0;; ++index) {
        bool const firstEnds = index >= first.size() || first[index] == u'\\';
        bool const secondEnds = index >= second.size() || second[index] == u'\\';
        if (firstEnds && secondEnds) {
            shared = index;
        }
        if (index >= first.size() || index >= second.size() ||
            (first[index] != second[index] && CharUpperW(first[index]) != CharUpperW(second[index]))) {
            return shared;
        }
    }
}

} // namespace

bool PathRelativePathToW(char16_t* out, char16_t const* from, bool fromIsDirectory, char16_t const* to,
                         bool toIsDirectory) {
    out[0] = 0;
    std::u16string_view const target = to;
    std::u16string_view source = from;
    std::u16string_view targetDirectory = target;
    if (!fromIsDirectory) {
        source = source.substr(0, PathDirectoryLength(source));
    }
    if (!toIsDirectory) {
        targetDirectory = target.substr(0, PathDirectoryLength(target));
    }

    source = WithoutTrailingBackslash(source);
    std::size_t const shared = SharedLength(source, WithoutTrailingBackslash(targetDirectory));
    if (source.substr(0, shared).find_first_not_of(u'\\') == npos) {
        return false;
    }

    std::u16string result;
    for (auto up = std::count(source.begin() + shared, source.end(), u'\\'); up > 0; --up) {
        result += result.empty() ? u".." : u"\\..";
    }
    if (result.empty()) {
        result = u".";
    }
    if (target.size() != 3 || !HasDrive(target)) {
        result += target.substr(shared);
    }
    if (result.size() >= MaxPath) {
        return false;
    }
    out[result.copy(out, result.size())] = 0;
    return true;
}

// Compact paths -----------------------------------------------------------------------------------------------------

namespace {

constexpr std::u16string_view Ellipsis = u"...";

// Gives the longest `kept + ... + tail` that fits, `kept` being the beginning of `head`. False when none does.
bool FitWithEllipsis(std::u16string_view head, std::u16string_view tail, std::u16string& result,
                     std::function<bool(std::u16string_view)> const& fits) {
    auto const build = [&](std::size_t kept) {
        bool const cutsPair = kept > 0 && kept < head.size() && (head[kept - 1] & 0xFC00) == 0xD800;
        return std::u16string(head.substr(0, cutsPair ? kept - 1 : kept)).append(Ellipsis).append(tail);
    };
    result = build(0);
    if (!fits(result)) {
        return false;
    }
    std::size_t fitting = 0;
    for (std::size_t tooLong = head.size() + 1; fitting + 1 < tooLong;) {
        std::size_t const middle = fitting + (tooLong - fitting) / 2;
        std::u16string candidate = build(middle);
        if (fits(candidate)) {
            fitting = middle;
            result = std::move(candidate);
        } else {
            tooLong = middle;
        }
    }
    return true;
}

} // namespace

bool PathCompactPathW(char16_t* path, int width, std::function<int(std::u16string_view)> const& measure) {
    std::u16string_view const text = path;
    auto const fits = [&](std::u16string_view candidate) {
        return candidate.size() < MaxPath && measure(candidate) <= width;
    };
    if (text.size() >= MaxPath || fits(text)) {
        return text.size() < MaxPath;
    }
    std::size_t const name = PathFileNamePosition(text);
    std::size_t const tail = name > 0 && IsSeparator(text[name - 1]) ? name - 1 : name;
    std::u16string result;
    if ((tail > 0 && FitWithEllipsis(text.substr(0, tail), text.substr(tail), result, fits)) ||
        FitWithEllipsis(text.substr(name), u"", result, fits)) {
        path[result.copy(path, MaxPath - 1)] = 0;
        return true;
    }
    return false;
}

} // namespace platform
