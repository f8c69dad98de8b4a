// SPDX-License-Identifier: MIT
// CXMemFile: a file that lies in memory.
//
//     CXMemFile file(4096, true);
//     file.Write("zel", 3);
//     file.SeekToBegin();
//     unsigned char* bytes = file.Detach();     // the caller's now; CXMemFile::Free(bytes)
//
// An archive works in its buffer without a copy (CXFile::BufferCommand).

#pragma once

#include "zeltools/persistence/xfile.h"

/// A growing block of memory behind the interface of a file.
///
/// Whatever ends the use of a buffer (Close, Abort, Detach) also brings the object back to its defaults: grow step
/// 2048, `autoDelete` and `throwOnError` both true.
///
/// Threads: one object belongs to one thread at a time.
class ZEL_API CXMemFile : public CXFile {
    ZEL_DECLARE_RUNTIME_CLASS(CXMemFile)

public:
    /// An empty file.
    /// @param growBytes  Steps in which the buffer grows; 0 becomes 2048 at the first growth.
    explicit CXMemFile(unsigned int growBytes = DefaultGrowBytes, bool throwOnError = true);

    /// A file over a buffer, as Attach makes it.
    CXMemFile(unsigned char const* buffer, unsigned long long size, bool autoDelete, bool throwOnError);

    ~CXMemFile() override;

    /// Takes a buffer as the content; one that the file owned before is freed.
    ///
    /// A buffer that may be written past its size must come from Alloc: growing reallocates it whether the file owns it
    /// or not.
    ///
    /// @param givenBuffer  Null counts as empty.
    /// @param size         Bytes of the buffer, all of them content.
    /// @param ownsBuffer   The file frees it.
    void Attach(unsigned char const* givenBuffer, unsigned long long size, bool ownsBuffer);

    /// Gives the buffer away, which the caller frees with Free, and leaves an empty file. Null for an empty one.
    [[nodiscard]] unsigned char* Detach();

    /// The content; null before the first byte. Valid until the next change.
    unsigned char const* GetBuffer() const { return buffer; }

    /// Allocates memory for Attach. Null when it cannot be had and for 0 bytes.
    [[nodiscard]] static unsigned char* Alloc(unsigned long long size);

    /// Frees what Alloc or Detach gave; null is ignored.
    static void Free(unsigned char* memory);

    unsigned long long GetPosition() const override;

    /// Moves the position. Behind the end the buffer grows at once and the length stays; bytes between the old end and
    /// a later write are zeros.
    ///
    /// @return the position afterwards; unchanged for an unknown origin.
    /// Errors:  badSeek for a place behind an end that is sought from, or before the beginning. When not throwing, the
    ///          first leaves the position and the second goes to 0. Memory that cannot be had: CXMemoryException, or
    ///          the position becomes the length.
    unsigned long long Seek(long long offset, SeekPosition from) override;

    /// Cuts or lengthens the content (with zeros); a position behind the new end moves to it.
    /// Errors:  CXMemoryException, or false, for more than 0xFFFFFFFF bytes and for memory that cannot be had.
    bool SetLength(unsigned long long newLength) override;

    unsigned long long GetLength() const override;

    /// Copies bytes from the position on; fewer at the end.
    /// @param count  Clamped to what is there, and then its low 32 bits count.
    /// Errors:  a null buffer throws CXInvalidArgException, or gives 0.
    unsigned long long Read(void* data, unsigned long long count) override;

    /// Copies bytes to the position, growing the buffer as needed. The bytes may lie in the file's own buffer.
    /// Errors:  CXInvalidArgException for a null buffer and for a position beyond 64 bits; CXMemoryException; nothing
    /// is
    ///          written. When not throwing, nothing is written and nothing said.
    void Write(void const* data, unsigned long long count) override;

    /// As Close.
    void Abort() override;

    /// Does nothing.
    void Flush() override;

    /// Frees the buffer if the file owns it, and sets the defaults.
    void Close() override;

protected:
    unsigned long long BufferCommand(unsigned int command, unsigned long long count, unsigned char** start,
                                     unsigned char** max) override;

    static unsigned char* Realloc(unsigned char* memory, unsigned long long size);
    static unsigned char* Memcpy(unsigned char* target, unsigned char const* source, unsigned long long count);

    /// Frees the buffer if the file owns it, and sets the defaults.
    void Free();

    /// Sets the defaults and forgets the buffer.
    void InitMemFile();

    /// Makes room for `needed` bytes in all.
    /// Errors:  CXMemoryException, or false; buffer and capacity are as before.
    virtual bool GrowBuffer(unsigned long long needed);

    static constexpr unsigned int DefaultGrowBytes = 2048;

    unsigned long long growStep;     ///< Bytes; 0 becomes DefaultGrowBytes at the first growth.
    unsigned long long capacity = 0; ///< Bytes allocated.
    unsigned long long length = 0;   ///< Bytes of content, at most the capacity.
    unsigned long long position = 0; ///< At most the capacity.
    unsigned char* buffer = nullptr;
    bool autoDelete = true; ///< The object frees the buffer.
    bool throwOnError;      ///< Of the memory's operations; independent of the base's.

private:
    void RaiseLength(unsigned long long from, unsigned long long to);
};
