// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/path_parts.h"

#include "zeltools/files/paths/absolute_paths.h"
#include "zeltools/files/paths/current_directory.h"
#include "zeltools/files/paths/guarded_call_private.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/platform/url.h"

#include <algorithm>

namespace detail {

namespace {

// How long a server may take to say whether a name exists.
constexpr unsigned int UncExistenceTimeOutMs = 10;

// Where the marks of a text stand, found in one pass.
struct Marks {
    int dot = -1; // the last one in front of the last question mark, or at all
    int slash = -1;
    int query = -1;
    bool hasColon = false;
    bool hasColonBackslash = false;
    bool hasDotSegment = false; // a segment begins with a dot, or the text ends in one

    explicit Marks(std::u16string_view text) {
        int lastDot = -1;
        char16_t before = u'\\';
        for (int index = 0; char16_t const c : text) {
            switch (c) {
            case u'.':
                lastDot = index;
                hasDotSegment = hasDotSegment || before == u'\\';
                break;
            case u'\\':
                slash = index;
                hasColonBackslash = hasColonBackslash || before == u':';
                break;
            case u'?':
                query = index;
                dot = lastDot;
                break;
            case u':': hasColon = true; break;
            default: break;
            }
            before = c;
            ++index;
        }
        if (query == -1) {
            dot = lastDot;
        }
        hasDotSegment = hasDotSegment || before == u'.';
    }
};

} // namespace

void PathParts::Init(CXTString<char16_t> const& text, unsigned int mode, unsigned int* timeOut) {
    *this = PathParts();
    if (text.IsEmpty()) {
        m_flags = PathExtracted | UncTested | ShortcutTested | ExistenceTested;
        return;
    }
    Normalize(text);

    bool const asksDisk = (mode & AskDisk) != 0;
    switch (mode & 0xFFFF) {
    case FileNameTypeFile:
        if (m_slashPosition == -1) {
            m_flags |= PathExtracted;
        }
        break;
    case FileNameTypeDirectory:
        if (asksDisk) {
            TakeAttributes(timeOut);
        }
        TakeWholeAsPath();
        break;
    case FileNameTypeUrl: m_flags |= Url; break;
    case FileNameTypeRelative:
        m_flags |= StaysRelative;
        ClassifyByText();
        break;
    case FileNameTypeAuto:
        if (asksDisk) {
            TakeAttributes(timeOut);
        }
        ClassifyByText();
        break;
    default: ClassifyByText(); break;
    }

    ExtractRoot();
    ExtractPath();
    ExtractQuery();
    if (IsDirectory()) {
        ReplaceTextByPath();
        return;
    }
    ExtractName();
    ExtractExtension();
}

// Slashes, colons and dots get their canonical form; the positions are of the result.
void PathParts::Normalize(CXTString<char16_t> const& text) {
    m_text = text;
    fileConvertSlash(m_text);
    Marks marks(detail::View(m_text));
    if (marks.hasColon && !marks.hasColonBackslash) {
        m_text.Replace(u":", u":\\");
        marks = Marks(detail::View(m_text));
    }
    if (marks.hasDotSegment && platform::PathNeedsCanonicalization(detail::View(m_text))) {
        fileMakePathShortest(m_text);
        marks = Marks(detail::View(m_text));
    }
    m_dotPosition = marks.dot;
    m_slashPosition = marks.slash;
    m_queryPosition = marks.query;
    m_length = m_text.GetLength();
}

// An address that is a directory is no folder of the disk, so it gets no path.
void PathParts::ClassifyByText() {
    std::u16string_view const text = detail::View(m_text);
    if (platform::PathIsURLW(text)) {
        bool const isDirectory = platform::UrlIsW(text, platform::UrlIsDirectory);
        m_flags |= Url | (isDirectory ? Directory | PathExtracted : 0U);
    } else if (m_slashPosition == m_length - 1) {
        TakeWholeAsPath();
    }
}

// The length stays what it was when the text was parsed, so that a directory found without its trailing backslash is
// not taken for one that was written with it.
void PathParts::TakeAttributes(unsigned int* timeOut) {
    platform::FileAttributeData data;
    GuardedCall guard(m_text, timeOut);
    bool const isLimited = timeOut != nullptr && *timeOut != IoTimedOut;
    bool const isFound = guard.Run([&] { return platform::GetFileAttributesExW(m_text, data); });
    if (isLimited && *timeOut == IoTimedOut) {
        return;
    }
    m_flags |= ExistenceTested | (isFound ? Found : 0U);
    if (isFound && (data.attributes & platform::FileAttributeDirectory) != 0) {
        m_flags |= Directory | PathExtracted;
        fileSlashTerminate(m_text);
        m_slashPosition = m_text.GetLength() - 1;
    }
}

void PathParts::TakeWholeAsPath() {
    m_flags |= Directory | PathExtracted;
    fileSlashTerminate(m_text);
    m_pathPart = {0, m_text.GetLength()};
}

void PathParts::ExtractRoot() {
    m_rootPart = {};
    m_ownRoot.Empty();
    std::u16string_view const text = detail::View(m_text);
    std::size_t const length = platform::PathRootLength(text);
    if (length == 0 || text[length - 1] == u'\\') {
        m_rootPart.length = static_cast<int>(length);
    } else if (length < text.size() && text[length] == u'\\') {
        m_rootPart.length = static_cast<int>(length) + 1;
    } else {
        m_ownRoot = Join(text.substr(0, length), u"\\");
    }
}

void PathParts::ExtractPath() {
    if ((m_flags & PathExtracted) != 0) {
        return;
    }
    m_flags |= PathExtracted;
    m_pathPart = {0, m_slashPosition + 1};
    // An address is relative to the shell, but to no folder of the disk.
    if ((m_flags & (StaysRelative | Url)) == 0 && m_pathPart.length > 0 && platform::PathIsRelativeW(GetPath())) {
        m_ownPath = fileMakeAbsolutePath(fileGetCurrentDirectory(), Text(GetPath()), false);
        fileSlashTerminate(m_ownPath);
    }
}

void PathParts::ExtractQuery() {
    m_query.Empty();
    if (IsUrl() && m_queryPosition != -1) {
        m_query = Text(platform::UrlQuery(detail::View(m_text)));
    }
}

// A directory's path is its whole text, or nothing: that of an address, and of one that a disk check found without its
// trailing backslash.
void PathParts::ReplaceTextByPath() {
    if (m_pathPart.length == 0) {
        m_ownRoot = Text(GetRoot());
        m_text.Empty();
    }
}

void PathParts::ExtractName() {
    if (IsDirectory()) {
        return;
    }
    int const first = m_slashPosition + 1;
    int const end = m_dotPosition >= first ? m_dotPosition : m_text.GetLength();
    m_namePart = {first, end - first};
    m_ownName.Empty();
    if (IsUrl() && m_queryPosition != -1) {
        m_ownName = Text(View(m_namePart));
        m_ownName.Remove(Join(u"?", detail::View(m_query)));
        m_namePart.length = m_ownName.IsEmpty() ? 0 : m_namePart.length;
    }
}

void PathParts::ExtractExtension() {
    if (m_text.IsEmpty() || m_dotPosition == -1 || m_slashPosition > m_dotPosition) {
        return;
    }
    int const end = IsUrl() && m_queryPosition != -1 ? m_queryPosition : m_text.GetLength();
    m_extensionPart = {m_dotPosition, end - m_dotPosition};
}

std::u16string_view PathParts::View(Part part) const {
    return detail::View(m_text).substr(static_cast<std::size_t>(part.first), static_cast<std::size_t>(part.length));
}

std::u16string_view PathParts::GetRoot() const {
    return m_ownRoot.IsEmpty() ? View(m_rootPart) : detail::View(m_ownRoot);
}

std::u16string_view PathParts::GetPath() const {
    return m_ownPath.IsEmpty() ? View(m_pathPart) : detail::View(m_ownPath);
}

std::u16string_view PathParts::GetName() const {
    return m_ownName.IsEmpty() ? View(m_namePart) : detail::View(m_ownName);
}

std::u16string_view PathParts::GetExtension() const {
    return View(m_extensionPart);
}

bool PathParts::IsUncPath() {
    if ((m_flags & UncTested) == 0) {
        m_flags |= UncTested | (platform::PathIsUNCW(detail::View(m_text)) ? UncPath : 0U);
    }
    return (m_flags & UncPath) != 0;
}

bool PathParts::Exists() {
    if ((m_flags & ExistenceTested) == 0) {
        unsigned int timeOutMs = UncExistenceTimeOutMs;
        TakeAttributes(IsUncPath() ? &timeOutMs : nullptr);
    }
    return (m_flags & Found) != 0;
}

std::u16string_view PathParts::GetPathWithoutRoot() const {
    std::u16string_view const path = GetPath();
    std::u16string_view const root = GetRoot();
    std::size_t const position = root.empty() ? path.npos : path.find(root);
    return position == path.npos ? std::u16string_view() : path.substr(position + root.size());
}

std::u16string_view PathParts::GetTopDirectory() const {
    std::u16string_view path = GetPath();
    path.remove_suffix(path.empty() ? 0 : 1);
    std::size_t const slash = path.rfind(u'\\');
    if (slash == path.npos) {
        return path;
    }
    return path.substr(slash + 1 < path.size() ? slash + 1 : slash);
}

std::u16string_view PathParts::GetParentDirectory() const {
    std::u16string_view path = GetPath();
    path.remove_suffix(path.empty() ? 0 : 1);
    path = path.substr(0, path.rfind(u'\\') + 1); // npos + 1 is 0
    return path == u"\\\\" ? std::u16string_view() : path;
}

CXTString<char16_t> PathParts::WithName(std::u16string_view name) const {
    return Join(GetPath(), name, GetExtension());
}

int GetDigitInfo(std::u16string_view name, CXTString<char16_t>& pattern, CXTString<char16_t>& digits, bool star,
                 bool trailingOnly) {
    digits.Empty();
    // The last run, [first, end); a name ends in it when nothing but blanks is behind.
    std::size_t end = name.size();
    bool endsInRun = true;
    while (end > 0 && !xIsDigit(name[end - 1])) {
        endsInRun = endsInRun && name[end - 1] == u' ';
        --end;
    }
    std::size_t first = end;
    while (first > 0 && xIsDigit(name[first - 1])) {
        --first;
    }
    if (!endsInRun && !trailingOnly) {
        std::size_t const leading = std::min(name.find_first_not_of(u' '), name.size());
        auto const leadingEnd = std::find_if_not(name.begin() + static_cast<std::ptrdiff_t>(leading), name.end(),
                                                 [](char16_t c) { return xIsDigit(c); });
        if (std::size_t const runEnd = static_cast<std::size_t>(leadingEnd - name.begin()); runEnd > leading) {
            first = leading;
            end = runEnd;
        }
    }
    if (first == end) {
        pattern = Text(name);
        return -1;
    }
    digits = Text(name.substr(first, end - first));
    pattern = Join(name.substr(0, first), star ? std::u16string_view(u"*") : std::u16string_view(), name.substr(end));
    unsigned int number = 0;
    return digits.ScanS(u"%u", &number) == 1 ? static_cast<int>(number) : -1;
}

} // namespace detail
