// SPDX-License-Identifier: MIT
// What the user is told of a failure.

#include "zeltools/files/io_file.h"
#include "zeltools/files/paths/compact_path.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/xarchive_exception.h"
#include "zeltools/foundation/xfile_exception.h"
#include "zeltools/foundation/xload_string.h"

namespace {

constexpr unsigned int CannotWriteMessage = 61696;
constexpr unsigned int CannotReadMessage = 61697;
constexpr unsigned int BadFormatMessage = 61728;
constexpr unsigned int NotFoundMessage = 61729;
constexpr unsigned int DiskFullMessage = 61730;
constexpr unsigned int ReadRefusedMessage = 61731;
constexpr unsigned int WriteRefusedMessage = 61732;

constexpr int ShownPathLength = 25; ///< Characters of a path in a message box.

unsigned int MessageOf(CXArchiveException const& exception, unsigned int fallback) {
    switch (exception.cause) {
    case CXArchiveException::endOfFile:
    case CXArchiveException::badIndex:
    case CXArchiveException::badClass:
    case CXArchiveException::badSchema: return BadFormatMessage;
    default: return fallback;
    }
}

unsigned int MessageOf(CXFileException const& exception, bool isWriting, unsigned int fallback) {
    switch (exception.cause) {
    case CXFileException::fileNotFound:
    case CXFileException::badPath: return NotFoundMessage;
    case CXFileException::accessDenied: return isWriting ? WriteRefusedMessage : ReadRefusedMessage;
    case CXFileException::diskFull: return DiskFullMessage;
    default: return fallback;
    }
}

/// Puts the path into a text where it has a place for one, and in front of it otherwise.
CXTString<char16_t> WithPath(CXTString<char16_t> text, CXTString<char16_t> const& shownPath) {
    text.Replace(u"%1", u"%s");
    // Not by Format: the text that an exception was made with may hold any percent sign.
    return text.Replace(u"%s", shownPath) > 0 ? text : shownPath + u"\n" + text;
}

} // namespace

bool IoFile::GetErrorMessage(CXTString<char16_t>& text, CXException* exception) {
    text.Empty();
    unsigned int message = IsWriting() ? CannotWriteMessage : CannotReadMessage;
    if (dynamic_cast<CXUserException*>(exception) != nullptr) {
        return false;
    }
    if (auto const* const archiveError = dynamic_cast<CXArchiveException*>(exception)) {
        message = MessageOf(*archiveError, message);
    } else if (auto* const fileError = dynamic_cast<CXFileException*>(exception)) {
        if (fileError->fileName.IsEmpty()) {
            fileError->fileName = path;
        }
        text = detail::GetStoredMessage(*fileError);
        message = MessageOf(*fileError, IsWriting(), message);
    }
    if (text.IsEmpty()) {
        text = xLoadString(message);
    }
    text = WithPath(text, fileCompactPath(path, ShownPathLength));
    return !text.IsEmpty();
}

void IoFile::ReportError(CXException* exception) {
    CXTString<char16_t> text;
    if ((flags & IoFileSilent) == 0 && !GetErrorMessage(text, exception)) {
        detail::GetDesktopHooks().ShowMessageBox(
            text, static_cast<detail::MessageBoxButtons>(detail::MessageBoxOk | detail::MessageBoxExclamation));
    }
}
