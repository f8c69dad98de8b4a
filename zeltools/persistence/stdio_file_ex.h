// SPDX-License-Identifier: MIT
// CStdioFileEx: a text file that knows its encoding.
//
//     CStdioFileEx file;
//     CXTString<char16_t> line;
//     if (file.Open(u"\\home\\ana\\notes.txt", XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE | XFILE_TYPE_TEXT, nullptr)) {
//         while (file.ReadString(line)) ...          // UTF-8, UTF-16 with a mark, or the system's narrow code page
//     }
//
// Reading detects FF FE (UTF-16, little-endian) and EF BB BF (UTF-8) at the file's begin and leaves them out of the
// text. A file whose lines end in CR alone is read by lines too. Writing with XFILE_TYPE_WIDE begins a new file with FF
// FE and stores the text as it comes: its lines end in CR LF if the caller writes CR LF.

#pragma once

#include "zeltools/persistence/xstdio_file.h"

#include <cstdarg>

/// Only in CStdioFileEx::savedFlags: text is written as UTF-16.
inline constexpr unsigned int XFILE_WIDE_OUTPUT = 0x10000000;

/// A text file in UTF-8, UTF-16 or a code page. Encodings are xStringEncoding values and numbers of code pages.
///
/// Detection belongs to Open. After the opening constructor the encoding is unknown (-1), and text is in the system's
/// narrow code page.
///
/// Threads: one object belongs to one thread at a time.
class ZEL_API CStdioFileEx : public CXStdioFile {
    ZEL_DECLARE_RUNTIME_CLASS(CStdioFileEx)

public:
    explicit CStdioFileEx(bool throwOnError = true);

    /// Opens as the constructor of CXStdioFile does.
    CStdioFileEx(char16_t const* filePath, unsigned int flags);

    /// Opens, and detects the encoding of text that is opened for reading and neither created nor cut.
    /// @return as CXStdioFile::Open; false also when the file's first bytes cannot be read.
    bool Open(char16_t const* filePath, unsigned int flags, CXFileException* error) override;

    /// As CXStdioFile::Seek. At 0 a mark of the encoding is skipped again.
    unsigned long long Seek(long long offset, SeekPosition from) override;

    /// Writes a text in the file's encoding; null writes nothing. A wide file begins with its mark.
    /// Errors:  genericException as CXStdioFile::Write has it.
    void WriteString(char16_t const* text) override;

    using CXStdioFile::ReadString;

    /// Reads a line without its end, which is LF, CR LF or, in a file of such lines, CR.
    ///
    /// In a file of CR lines what follows the last CR is not given out: the call that meets it answers true and leaves
    /// `line` as it was.
    ///
    /// @return false at the end of the file. Errors: genericException, or false.
    bool ReadString(CXTString<char16_t>& line) override;

    /// Scans the file's text from the present place on, as foundation/text_scan.h says, over line ends too. What it did
    /// not take is read next.
    /// @return count of targets filled; -1 at the end of the file.
    virtual int FScanfS(char16_t const* format, ...);

    /// Says how narrow text is encoded; nothing for a file that is UTF-16. 65001 stands for xEncodingUtf8.
    void SetCodePage(xStringEncoding newEncoding);

    /// Whether the file was found to be UTF-16.
    bool IsFileUnicodeText() const { return encoding == xEncodingUtf16 || encoding == FourthEncoding; }

    /// Whether the file is UTF-8, by its mark, its flags or SetCodePage.
    bool IsFileUTF8() const { return encoding == xEncodingUtf8; }

    /// Reads up to `count` lines and drops them.
    /// @param fromCurrent  0: from the begin of the file.
    void SkipLines(unsigned int count, unsigned int fromCurrent);

    /// The file's size in characters: of UTF-16 its units without a mark, whether it has one or not; else its bytes.
    unsigned long long GetCharCount();

    /// Finds a file's encoding by its first bytes.
    ///
    /// @param hasBom  Receives whether the file begins with a mark.
    /// @return xEncodingUtf16, xEncodingUtf8, or -1 for anything else and for a file that cannot be opened.
    /// Errors:  CXFileException when reading or closing fails.
    static xStringEncoding GetFileEncoding(CXTString<char16_t> const& path, bool& hasBom);

protected:
    /// Sets the state of a file that nothing is known of.
    void Init();

    /// Reads the mark of the encoding away, if it is due.
    void SkipBoom();

    /// Detects the encoding, and changes flags to those that the stream is to be opened with.
    void ProcessFlags(CXTString<char16_t> const& filePath, unsigned int& flags);

    /// Whether the first line holds a CR that does not end it. The place is the begin of the file afterwards.
    bool CheckCarriageReturn();

    static constexpr int FourthEncoding = 4; ///< Treated as UTF-16, and never detected.

    bool skipBomPending = true;
    bool hasBom = false;
    int encoding = xEncodingDefault;
    unsigned int savedFlags = 0; ///< As Open was given them, and XFILE_WIDE_OUTPUT.
    int carriageReturnLines = 0; ///< 1: lines end in CR alone.
    int lineCursor = -1;         ///< Next character of pendingLine; -1: no line is pending.
    CXTString<char> narrowLine;  ///< Narrow text on its way.
    CXTString<char16_t> pendingLine;

private:
    bool HasDetection() const;
    void ClearPendingLine();
    bool ReadTextLine(CXTString<char16_t>& line);
    void TakePendingLine(CXTString<char16_t>& line, int carriageReturn);
    int ScanStream(char16_t const* format, std::va_list arguments);
};
