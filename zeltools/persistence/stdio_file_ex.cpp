// SPDX-License-Identifier: MIT
#include "zeltools/persistence/stdio_file_ex.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/text_scan_private.h"
#include "zeltools/persistence/plain_text_private.h"
#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

ZEL_IMPLEMENT_RUNTIME_CLASS(CStdioFileEx, CXStdioFile, RuntimeClassNotSerializable)

namespace {

constexpr unsigned int TextKinds = XFILE_TYPE_TEXT | XFILE_TYPE_WIDE | XFILE_TYPE_UTF8;

bool Appends(unsigned int flags) {
    return (flags & XFILE_OPEN_CREATE) != 0 ? (flags & XFILE_OPEN_NO_TRUNCATE) != 0 : (flags & XFILE_OPEN_WRITE) != 0;
}

} // namespace

CStdioFileEx::CStdioFileEx(bool throwing) : CXStdioFile(throwing) {}

CStdioFileEx::CStdioFileEx(char16_t const* filePath, unsigned int flags) : CXStdioFile(filePath, flags) {}

void CStdioFileEx::Init() {
    skipBomPending = true;
    hasBom = false;
    encoding = xEncodingDefault;
    savedFlags = 0;
    carriageReturnLines = 0;
    ClearPendingLine();
}

void CStdioFileEx::ClearPendingLine() {
    lineCursor = -1;
    pendingLine.Empty();
}

// ---- Opening ----

bool CStdioFileEx::Open(char16_t const* filePath, unsigned int flags, CXFileException* error) {
    CXTString<char16_t> const wanted(filePath);
    Abort(); // before the detection, which an exclusive file of our own would refuse
    Init();
    try {
        ProcessFlags(wanted, flags);
    } catch (CXFileException* failure) { // opening does not throw
        if (error) {
            error->cause = failure->cause;
            error->fileName = failure->fileName;
        }
        failure->Delete();
        return false;
    }
    if (!CXStdioFile::Open(filePath ? static_cast<char16_t const*>(wanted) : nullptr, flags, error)) {
        return false;
    }
    bool const isThrowing = std::exchange(throwOnError, false); // a line that cannot be read is told to its reader
    carriageReturnLines = CheckCarriageReturn() ? 1 : 0;
    throwOnError = isThrowing;
    std::clearerr(stream);
    return true;
}

xStringEncoding CStdioFileEx::GetFileEncoding(CXTString<char16_t> const& path, bool& hasBom) {
    hasBom = false;
    CXFile file(false);
    if (!file.Open(path, XFILE_OPEN_READ | XFILE_TYPE_BINARY | XFILE_SHARE_DENY_NONE, nullptr) ||
        file.GetLength() == 0) { // what has no length, such as a pipe, would lose what is read here
        return xEncodingDefault;
    }
    constexpr std::string_view Utf16Mark = "\xFF\xFE";
    constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
    CXFile reader(file.GetHandle(), true); // from here on failures throw
    reader.SetFilePath(path);
    char first[3];
    std::string_view const bytes(first, reader.Read(first, sizeof first));
    bool const isUtf16 = bytes.starts_with(Utf16Mark);
    hasBom = isUtf16 || bytes == Utf8Mark;
    return isUtf16 ? xEncodingUtf16 : hasBom ? xEncodingUtf8 : xEncodingDefault;
}

// Whether a file that was opened with the saved flags had its encoding detected: text, not created, not written only.
bool CStdioFileEx::HasDetection() const {
    return (savedFlags & (XFILE_TYPE_TEXT | XFILE_OPEN_CREATE | XFILE_OPEN_WRITE)) == XFILE_TYPE_TEXT;
}

void CStdioFileEx::ProcessFlags(CXTString<char16_t> const& filePath, unsigned int& flags) {
    constexpr unsigned int Output = XFILE_OPEN_CREATE | XFILE_OPEN_WRITE | XFILE_OPEN_READWRITE;
    encoding = xEncodingDefault;
    carriageReturnLines = 0;
    lineCursor = -1;
    savedFlags = flags & ~XFILE_WIDE_OUTPUT;
    if (HasDetection()) {
        encoding = GetFileEncoding(filePath, hasBom);
        if (IsFileUnicodeText()) { // read as it lies in the file
            flags = (flags & ~TextKinds) | XFILE_TYPE_BINARY;
        }
    } else if ((flags & XFILE_TYPE_WIDE) != 0 && (flags & Output) != 0) {
        flags = (flags & ~TextKinds) | XFILE_TYPE_BINARY;
        savedFlags |= XFILE_WIDE_OUTPUT;
    }
    constexpr unsigned int Utf8Text = XFILE_TYPE_TEXT | XFILE_TYPE_UTF8;
    if ((flags & Utf8Text) == Utf8Text && encoding == xEncodingDefault) {
        encoding = xEncodingUtf8;
    }
}

bool CStdioFileEx::CheckCarriageReturn() {
    ClearPendingLine();
    // What has no places, such as a pipe, could not be read again.
    if (!HasDetection() || CXFile::Seek(0, current) == BadPosition) {
        return false;
    }
    Line line;
    ReadLine(line, IsFileUnicodeText());
    std::size_t size = 0; // up to a zero, which ends the line's text
    bool found = false;
    if (IsFileUnicodeText()) {
        while (size + 2 <= line.size && (line.bytes[size] != 0 || line.bytes[size + 1] != 0)) {
            size += 2;
        }
        for (std::size_t at = 0; !found && at + 4 <= size; at += 2) {
            found = line.bytes[at] == '\r' && line.bytes[at + 1] == 0;
        }
    } else {
        size = line.bytes ? strnlen(line.bytes, line.size) : 0;
        found = size > 1 && std::memchr(line.bytes, '\r', size - 1);
    }
    Seek(0, begin);
    return found;
}

// ---- Reading and writing ----

void CStdioFileEx::SkipBoom() {
    if (!skipBomPending) {
        return;
    }
    skipBomPending = false;
    if (hasBom) {
        char mark[3];
        Read(mark, IsFileUnicodeText() ? 2 : IsFileUTF8() ? 3 : 0);
    }
}

// A line as the file has it, as UTF-16.
inline bool CStdioFileEx::ReadTextLine(CXTString<char16_t>& line) {
    if (IsFileUnicodeText()) {
        return ReadStringW(line);
    }
    bool const isDefault = encoding == xEncodingDefault || encoding == xEncodingAnsi;
    if (encoding != xEncodingUtf8 && !(isDefault && platform::GetACP() == platform::CodePageUtf8)) {
        bool const isRead = ReadStringA(narrowLine);
        XFASTCA2W(line, narrowLine, encoding);
        return isRead;
    }
    if (detail::ReadPlainLine(stream, line, false)) {
        return true;
    }
    Line bytes; // UTF-8 is converted right out of the stream
    bool const isRead = ReadLine(bytes, false);
    std::size_t const size = bytes.bytes ? strnlen(bytes.bytes, bytes.size) : 0;
    if (size > INT_MAX) {
        line.Empty();
    } else {
        line.SetLength(platform::Utf16Room(size));
        line.SetLength(size > 0 ? platform::Utf8ToUtf16(bytes.bytes, size, line.GetText()) : 0);
    }
    TrimLineBuffer();
    return isRead;
}

void CStdioFileEx::TakePendingLine(CXTString<char16_t>& line, int carriageReturn) {
    line.Copy(pendingLine.GetConstBuffer() + lineCursor, carriageReturn - lineCursor);
    lineCursor = carriageReturn + 1;
    if (lineCursor >= pendingLine.GetLength()) {
        ClearPendingLine();
    }
}

bool CStdioFileEx::ReadString(CXTString<char16_t>& line) {
    if (skipBomPending) {
        SkipBoom();
    }
    if (carriageReturnLines && lineCursor != -1) {
        int const carriageReturn = pendingLine.Find(u'\r', lineCursor);
        if (carriageReturn >= 0) {
            TakePendingLine(line, carriageReturn);
        } else {
            ClearPendingLine();
        }
        return true;
    }
    bool const isRead = ReadTextLine(line);
    int const length = line.GetLength();
    if (length == 0) {
        return isRead;
    }
    if (!carriageReturnLines) {
        char16_t const last = line[length - 1];
        if (last == u'\r' && length > 1 && line[length - 2] == u'\n') {
            line.SetLength(static_cast<std::size_t>(length) - 2);
        } else if (last == u'\r' || last == u'\n') {
            line.SetLength(static_cast<std::size_t>(length) - 1);
        }
        return isRead;
    }
    int const carriageReturn = line.Find(u'\r');
    if (carriageReturn >= 0) {
        pendingLine = line;
        lineCursor = 0;
        TakePendingLine(line, carriageReturn);
    }
    return isRead;
}

void CStdioFileEx::WriteString(char16_t const* text) {
    if ((savedFlags & XFILE_WIDE_OUTPUT) == 0) {
        XFASTCW2A(narrowLine, text, encoding);
        if (!narrowLine.IsEmpty()) {
            Write(narrowLine, static_cast<unsigned long long>(narrowLine.GetLength()));
        }
        return;
    }
    if (Appends(savedFlags) && stream) { // where it will be written
        CXStdioFile::Seek(0, end);
    }
    if (!stream || GetPosition() == 0) {
        constexpr char Mark[] = "\xFF\xFE";
        skipBomPending = true;
        hasBom = true;
        Write(Mark, 2);
    }
    if (text) {
        Write(text, xStrLen(text) * sizeof *text);
    }
}

unsigned long long CStdioFileEx::Seek(long long offset, SeekPosition from) {
    ClearPendingLine();
    unsigned long long const position = CXStdioFile::Seek(offset, from);
    skipBomPending = position == 0 && hasBom;
    return position;
}

void CStdioFileEx::SetCodePage(xStringEncoding newEncoding) {
    if (!IsFileUnicodeText()) {
        encoding =
            static_cast<int>(newEncoding) == static_cast<int>(platform::CodePageUtf8) ? xEncodingUtf8 : newEncoding;
    }
}

void CStdioFileEx::SkipLines(unsigned int count, unsigned int fromCurrent) {
    if (fromCurrent == 0) {
        Seek(0, begin);
    }
    CXTString<char16_t> line;
    while (count > 0 && ReadString(line)) {
        --count;
    }
}

unsigned long long CStdioFileEx::GetCharCount() {
    constexpr unsigned long long MarkSize = 2;
    if (!stream) {
        return 0;
    }
    unsigned long long const length = GetLength();
    if (!IsFileUnicodeText()) {
        return length;
    }
    return length > MarkSize ? (length - MarkSize) / sizeof(char16_t) : 0;
}

// ---- Scanning ----

int CStdioFileEx::FScanfS(char16_t const* format, ...) {
    SkipBoom();
    std::va_list arguments;
    va_start(arguments, format);
    int count = -1;
    if (format && lineCursor != -1) {
        detail::ScanEnd stop;
        count = detail::ScanText(pendingLine.GetConstBuffer() + lineCursor, format, arguments, stop);
        if (stop.hasDoneAll) {
            lineCursor += static_cast<int>(stop.consumed);
            if (lineCursor >= pendingLine.GetLength()) {
                ClearPendingLine();
            }
        }
    } else if (format && stream) {
        count = ScanStream(format, arguments);
    }
    va_end(arguments);
    return count;
}

// The text is taken from the stream by lines, and long lines by pieces of twice the size each, lest a scan of a number
// read the whole of one. It is scanned from its begin again when its end could change the result. What the scan left
// goes back to the stream.
int CStdioFileEx::ScanStream(char16_t const* format, std::va_list arguments) {
    constexpr std::size_t FirstPiece = 128;
    constexpr std::size_t LongestLookahead = 16; // a number looks for "infinity", or an exponent, behind what it takes
    std::u16string text;
    std::string bytes;
    std::vector<std::size_t> places; // of each unit's character in the bytes
    bool hasMore = true;
    auto const takePiece = [&] {
        std::size_t const most = text.size() + std::max(text.size(), FirstPiece);
        bool isBlank = true;
        char16_t last = 0;
        while (hasMore && last != u'\n' && text.size() < most) {
            Character const character = ReadCharacter(IsFileUnicodeText(), encoding);
            hasMore = character.unitCount > 0;
            for (unsigned int i = 0; i < character.unitCount; ++i) {
                last = character.units[i] != 0 ? character.units[i] : u'\xFFFD'; // a zero would end the text
                text += last;
                places.push_back(bytes.size());
                isBlank = isBlank && xIsSpace(last);
            }
            bytes.append(character.bytes, character.byteCount);
        }
        return isBlank;
    };
    for (bool isFirst = true;; isFirst = false) {
        // A scan that goes on over a line's end skips blank lines, which are taken together: there may be many.
        while (takePiece() && !isFirst && hasMore) {
        }
        std::va_list again;
        va_copy(again, arguments);
        detail::ScanEnd stop;
        int const count = detail::ScanText(text.c_str(), format, again, stop);
        va_end(again);
        bool const isWhole = xIsSpace(text.empty() ? u' ' : text.back()); // no number goes on behind it
        bool const isSure = !stop.metEnd && (isWhole || stop.consumed + LongestLookahead <= text.size());
        if (isSure || !hasMore) {
            std::size_t const taken = stop.consumed < places.size() ? places[stop.consumed] : bytes.size();
            Unread(bytes.data() + taken, bytes.size() - taken);
            return count;
        }
    }
}
