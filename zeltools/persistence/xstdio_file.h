// SPDX-License-Identifier: MIT
// CXStdioFile: a file behind a buffered stream of the C library.
//
//     CXStdioFile file(u"\\home\\ana\\notes.txt", XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE | XFILE_TYPE_TEXT);
//     CXTString<char16_t> line;
//     while (file.ReadString(line)) ...
//
// A stream that is not XFILE_TYPE_BINARY translates line ends: CR LF in the file is LF in the program. Wide text is
// stored as 16-bit units in a binary stream and with XFILE_TYPE_WIDE, else in the system's narrow code page.

#pragma once

#include "zeltools/persistence/xfile.h"

#include <cstdio>

/// A file with a stream over its handle. Reading, writing and seeking all go through the stream, so a host may use the
/// stream of GetStream in between; after reading there, and before writing, the C library asks for a seek.
///
/// A failure throws, when the object was made to: CXMemoryException or CXInvalidArgException where the stream has met
/// an error of the system (memory, or any other), else CXFileException with the cause stated at the operation, unless
/// errno names a better one.
///
/// Threads: one object belongs to one thread at a time.
class ZEL_API CXStdioFile : public CXFile {
    ZEL_DECLARE_RUNTIME_CLASS(CXStdioFile)

public:
    explicit CXStdioFile(bool throwOnError = true);

    /// A file over the caller's stream, which Close closes and the destructor leaves open. Its handle is null where the
    /// stream has no descriptor; narrow text is assumed.
    /// Errors:  a null stream throws CXInvalidArgException, or makes a closed file.
    CXStdioFile(FILE* stream, bool throwOnError);

    /// Opens at once and throws on errors from then on.
    /// @param filePath  Null makes a closed file with XFILE_OPEN_OPTIONAL_PATH.
    /// Errors:  CXFileException with the cause that Open gives.
    CXStdioFile(char16_t const* filePath, unsigned int flags);

    /// Closes a stream of its own; a failure of that stays silent.
    ~CXStdioFile() override;

    /// The stream; null when closed. It has no descriptor of its own for fileno.
    FILE* GetStream() const { return stream; }

    /// The place in the file. Errors: invalidFile, or BadPosition.
    unsigned long long GetPosition() const override;

    /// Opens as CXFile::Open does, with a stream over the handle.
    ///
    /// The stream appends when it is to create without truncating, or to write (XFILE_OPEN_WRITE) without creating. It
    /// also reads unless XFILE_OPEN_WRITE is given, and then starts at the file's begin.
    ///
    /// @return false for a null path, with `error` untouched; else as CXFile::Open.
    bool Open(char16_t const* filePath, unsigned int flags, CXFileException* error) override;

    /// Goes to a place in the file.
    /// @param offset  From -2^31 to 2^31 - 1.
    /// @return the new place; the present one after a failure.
    /// Errors:  badSeek.
    unsigned long long Seek(long long offset, SeekPosition from) override;

    /// As CXFile::SetLength, after what was written has gone to the file.
    bool SetLength(unsigned long long newLength) override;

    /// The file's size, with what was written. Errors: invalidFile or badSeek, or 0.
    unsigned long long GetLength() const override;

    /// Reads up to `count` bytes of the stream. Errors: CXInvalidArgException for a null buffer; genericException; or
    /// 0.
    unsigned long long Read(void* data, unsigned long long count) override;

    /// Writes `count` bytes to the stream. Errors: CXInvalidArgException for a null buffer; genericException.
    void Write(void const* data, unsigned long long count) override;

    /// Closes without ever throwing; the caller's stream stays open and is forgotten.
    void Abort() override;

    /// Hands what was written to the system. Errors: diskFull.
    void Flush() override;

    /// Closes the stream and empties the path. Errors: diskFull; the file is closed all the same.
    void Close() override;

    /// Writes a text as it is stored in this stream; null writes nothing. Errors: diskFull.
    virtual void WriteString(char16_t const* text);

    /// Reads a line without its newline. A zero ends the line's text.
    /// @param line  Empty at the end.
    /// @return false at the end of the file. Errors: genericException, or false.
    virtual bool ReadString(CXTString<char16_t>& line);

    /// Reads up to `count - 1` units, up to and with a newline, and ends them with a zero.
    /// @return `target`; null at the end, on an error, and without room, with the target untouched.
    virtual char16_t* ReadString(char16_t* target, unsigned int count);

protected:
    /// A line without its newline, as bytes of the file's encoding; valid until the next call.
    struct Line {
        char const* bytes = nullptr;
        std::size_t size = 0;
    };

    /// Reads a line of narrow or of 16-bit text. False at the end of the file.
    bool ReadLine(Line& line, bool isWide);

    /// Gives the memory of a very long line back; it would stand beside the same text in two strings.
    void TrimLineBuffer();

    /// One character and the bytes that it was read from.
    struct Character {
        char16_t units[4]{};
        unsigned int unitCount = 0; ///< 0 at the end.
        char bytes[4]{};
        unsigned int byteCount = 0;
    };

    /// Reads a character of narrow text in a code page, or a 16-bit unit.
    Character ReadCharacter(bool isWide, int encoding);

    /// Takes bytes back that were read last.
    void Unread(char const* bytes, std::size_t count);

    /// Reads a line of narrow text as it is.
    bool ReadStringA(CXTString<char>& line);

    /// Reads a line of wide text.
    bool ReadStringW(CXTString<char16_t>& line);

    /// Throws what stands behind a failure, as the class says; nothing when not throwing.
    void ThrowErrno(CXFileException::FileExceptionType cause) const;

    FILE* stream = nullptr;
    char* lineBuffer = nullptr; ///< Lines that lie in two blocks of the stream are put together here.
    unsigned int lineBufferCapacity = 0;

private:
    bool IsOpen() const;
    int CloseStream();
    bool GrowLineBuffer(std::size_t needed);
    void ThrowErrno(CXFileException::FileExceptionType cause, CXTString<char16_t> const& name) const;

    bool holdsUnits = false; ///< Wide text is stored as 16-bit units.
};
