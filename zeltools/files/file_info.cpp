// SPDX-License-Identifier: MIT
#include "zeltools/files/file_info.h"

#include "zeltools/files/paths/file_access.h"

#include <string_view>

namespace {

CXTString<char16_t> Text(std::u16string_view view) {
    return {view.data(), static_cast<int>(view.size())};
}

} // namespace

CFileInfo::CFileInfo(CFileNameSpec const& spec) {
    Init(spec, FileNameTypeAuto, nullptr);
}

void CFileInfo::Init(CFileNameSpec const& spec, unsigned int mode, unsigned int* timeOut) {
    parts.Init(spec.GetFileName(), mode, timeOut);
    shortcutTarget.Empty();
    loader = saver = FileIdUnknown;
    classId = spec.GetClass();
    properties = 0;
    callback = nullptr;
    parserNumber = 0;
    flags = 0;
    if (spec.GetFileName().IsEmpty()) {
        return;
    }
    if (IsDirectory()) {
        classId = FileIdDirectory;
        properties = FileKindDirectory;
        return;
    }
    FindParser(spec.IsDefaultParserChoice());
}

void CFileInfo::FindParser(bool defaultChoice) {
    CRegisteredFile& registry = CRegisteredFile::Instance();
    CRegisteredFile::Parser parser;
    if (CFileExt const* const type = classId ? registry.Find(classId) : nullptr) {
        parser = {classId,          type->GetProperties(),     type->GetLoader(),
                  type->GetSaver(), type->GetInitIoCallback(), registry.GetParserCount(parts.GetExtension())};
    } else if (!registry.GetParserFacts(parts.GetExtension(), 0, parser)) {
        return;
    }
    Take(parser);
    // An explicit class never falls through to another parser.
    if (parser.siblings > 1) {
        flags |= SeveralParsers;
        if (defaultChoice) {
            flags |= AnotherParserAllowed;
        }
    }
}

void CFileInfo::Take(CRegisteredFile::Parser const& parser) {
    properties = parser.properties;
    loader = parser.loader;
    saver = parser.saver;
    callback = parser.callback;
}

CXTString<char16_t> CFileInfo::GetName() const {
    return GetNameWithoutExt() + GetExtension();
}

CXTString<char16_t> CFileInfo::GetNameWithoutExt() const {
    return Text(parts.GetName());
}

CXTString<char16_t> CFileInfo::GetExtension() const {
    return Text(parts.GetExtension());
}

CXTString<char16_t> CFileInfo::GetPath() const {
    return Text(parts.GetPath());
}

CXTString<char16_t> CFileInfo::GetRoot() const {
    return Text(parts.GetRoot());
}

CXTString<char16_t> CFileInfo::GetPathWithoutRoot() const {
    return Text(parts.GetPathWithoutRoot());
}

CXTString<char16_t> CFileInfo::GetQuery(bool withMark) const {
    if (!IsURL() || parts.GetQueryPosition() < 0) {
        return {};
    }
    return withMark ? u'?' + parts.GetQuery() : parts.GetQuery();
}

CXTString<char16_t> CFileInfo::GetTopDirectory() const {
    return Text(parts.GetTopDirectory());
}

CXTString<char16_t> CFileInfo::GetParentDirectory() const {
    return Text(parts.GetParentDirectory());
}

unsigned int CFileInfo::GetClass(CHashTable<unsigned int>& classes) const {
    return CRegisteredFile::Instance().GetClasses(parts.GetExtension(), classes);
}

unsigned int CFileInfo::GetParserNbr() const {
    return CRegisteredFile::Instance().GetParserCount(parts.GetExtension());
}

void CFileInfo::TryNextParser() {
    if (!CanTryAnotherParser()) {
        return;
    }
    ++parserNumber;
    CRegisteredFile::Parser parser;
    bool const found = CRegisteredFile::Instance().GetParserFacts(parts.GetExtension(), parserNumber, parser);
    if (found) {
        classId = parser.classId;
        Take(parser);
    }
    if (!found || parserNumber + 1 >= parser.siblings) {
        flags &= ~static_cast<unsigned int>(AnotherParserAllowed);
    }
}

bool CFileInfo::IsShortcut() {
    if (!(parts.GetFlags() & detail::PathParts::ShortcutTested)) {
        parts.AddFlags(detail::PathParts::ShortcutTested);
        CXTString<char16_t> target;
        if (GetExtension().CompareNoCase(u".lnk") == 0 && fileIsShortcut(GetCompleteName(), &target)) {
            parts.AddFlags(detail::PathParts::Shortcut);
            shortcutTarget = target;
        }
    }
    return parts.GetFlags() & detail::PathParts::Shortcut;
}

CXTString<char16_t> CFileInfo::ResolveShortcut() {
    return IsShortcut() ? shortcutTarget : GetCompleteName();
}

bool CFileInfo::Exists(unsigned int*) {
    return parts.Exists();
}

bool CFileInfo::IsSameFile(CXTString<char16_t> const& other) const {
    return GetCompleteName().CompareNoCase(CFileInfo(CFileNameSpec(other)).GetCompleteName()) == 0;
}

bool CFileInfo::IsSameDir(CXTString<char16_t> const& other) const {
    return GetPath().CompareNoCase(CFileInfo(CFileNameSpec(other)).GetPath()) == 0;
}

int CFileInfo::GetDigit(CXTString<char16_t> const& path) {
    CXTString<char16_t> pattern;
    CXTString<char16_t> digits;
    return CFileInfo(CFileNameSpec(path)).GetDigitInfo(pattern, digits, false, false);
}

int CFileInfo::GetDigitInfo(CXTString<char16_t>& pattern, CXTString<char16_t>& digits, bool star,
                            bool trailingOnly) const {
    return detail::GetDigitInfo(parts.GetName(), pattern, digits, star, trailingOnly);
}
