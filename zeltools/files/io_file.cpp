// SPDX-License-Identifier: MIT
#include "zeltools/files/io_file.h"

#include "zeltools/files/busy_indicator_private.h"
#include "zeltools/files/io_memory_file_private.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/reverse_buffer.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/foundation/xfile_exception.h"
#include "zeltools/persistence/file_failure_private.h"
#include "zeltools/persistence/stdio_file_ex.h"
#include "zeltools/persistence/xfile_find.h"
#include "zeltools/platform/file_names.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace {

constexpr unsigned int ReadingGrowStep = 2048; ///< Bytes.
constexpr unsigned int WritingGrowStep = 1024; ///< Bytes.

constexpr unsigned long long LargestTransfer = 1ULL << 30; ///< Bytes; a file takes the low 32 bits of a size.

/// What the file on disk is opened as.
unsigned int TypeOf(unsigned int flags) {
    if ((flags & IoFileText) != 0) {
        return XFILE_TYPE_TEXT | ((flags & IoFileUtf8Text) != 0 ? XFILE_TYPE_UTF8 : 0U);
    }
    return (flags & IoFileWideText) != 0 ? XFILE_TYPE_TEXT | XFILE_TYPE_WIDE : XFILE_TYPE_BINARY;
}

void WriteTo(CXFile& file, void const* data, unsigned long long size) {
    auto const* bytes = static_cast<unsigned char const*>(data);
    while (size > 0) {
        unsigned long long const portion = std::min(size, LargestTransfer);
        file.Write(bytes, portion);
        bytes += portion;
        size -= portion;
    }
}

} // namespace

IoFile::IoFile() : IoFile(IoFileSilent) {}

IoFile::IoFile(unsigned int fileFlags) : flags(fileFlags) {}

IoFile::IoFile(bool silent, unsigned int fileFlags) : flags(fileFlags | (silent ? +IoFileSilent : 0U)) {}

IoFile::~IoFile() {
    DeleteFiles();
}

void IoFile::Init(unsigned int fileFlags) {
    flags = fileFlags;
    static_cast<void>(finder.release());
    static_cast<void>(busyIndicator.release());
}

// ---- Opening and closing ------------------------------------------------------------------------------------------

bool IoFile::OpenFile(CXTString<char16_t> const& filePath, bool forRead, CXFileException* error) {
    CXFileException ownError;
    CXFileException& failure = error != nullptr ? *error : ownError;
    ReleaseFiles();
    path = filePath;
    flags = forRead ? flags | IoFileReading : flags & ~static_cast<unsigned int>(IoFileReading);
    textFile = std::make_unique<CStdioFileEx>(Throws());
    currentFile = textFile.get();
    if (!(forRead ? OpenForReading(failure) : OpenForWriting(failure))) {
        DeleteFiles();
        ReportError(&failure);
        return false;
    }
    if ((flags & IoFileSilent) == 0) {
        busyIndicator = std::make_unique<detail::BusyIndicator>();
    }
    return true;
}

bool IoFile::OpenForReading(CXFileException& error) {
    unsigned int const quiet = Throws() ? 0 : XFILE_OPEN_OPTIONAL_PATH;
    if (!textFile->Open(path, TypeOf(flags) | XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE | quiet, &error)) {
        return false;
    }
    if ((flags & IoFileMemory) == 0) {
        return true;
    }
    try {
        return ReadIntoMemory(error);
    } catch (CXException* exception) { // a stream that failed throws no file exception
        auto const* const failure = dynamic_cast<CXFileException*>(exception);
        error.cause = failure != nullptr ? failure->cause : CXFileException::hardIO;
        error.fileName = path;
        exception->Delete();
        return false;
    }
}

bool IoFile::OpenForWriting(CXFileException& error) {
    unsigned int const quiet = Throws() ? 0 : XFILE_OPEN_OPTIONAL_PATH;
    unsigned int const access = XFILE_OPEN_CREATE | XFILE_OPEN_READWRITE | XFILE_SHARE_EXCLUSIVE;
    if (!textFile->Open(path, TypeOf(flags) | access | quiet, &error)) {
        return false;
    }
    if ((flags & IoFileMemory) != 0 && IsBinaryMode()) {
        memoryFile = std::make_unique<detail::IoMemoryFile>(CCustomMemFile::GrowByFactor, WritingGrowStep);
        memoryFile->SetFilePath(path);
        currentFile = memoryFile.get();
    }
    return true;
}

/// Reads the whole file into memory. One that is too large for that stays on disk.
bool IoFile::ReadIntoMemory(CXFileException& error) {
    unsigned long long const length = textFile->GetLength();
    unsigned char* const block = length <= IoFileMemoryLimit ? CXMemFile::Alloc(length) : nullptr;
    if (block == nullptr && length > 0) {
        flags &= ~static_cast<unsigned int>(IoFileMemory);
        return true;
    }
    memoryFile = block == nullptr
                     ? std::make_unique<detail::IoMemoryFile>(CCustomMemFile::GrowByFactor, ReadingGrowStep)
                     : std::make_unique<detail::IoMemoryFile>(block, length, true, CCustomMemFile::GrowByFactor);
    memoryFile->SetFilePath(path);
    unsigned long long const got = ReadBytes(block, length); // text that is translated comes shorter than the file
    if (std::ferror(textFile->GetStream()) != 0) {
        error.cause = CXFileException::hardIO;
        error.fileName = path;
        return false;
    }
    memoryFile->SetLength(got);
    textFile->SeekToBegin(); // for ReadString
    currentFile = memoryFile.get();
    return true;
}

void IoFile::CloseFile(bool abort) {
    struct Release {
        IoFile& file;
        ~Release() { file.DeleteFiles(); }
    } const release{*this};
    if (textFile == nullptr) {
        return;
    }
    if (memoryFile != nullptr && IsWriting()) {
        WriteTo(*textFile, memoryFile->GetBuffer(), memoryFile->GetLength());
    }
    if (!abort) {
        textFile->Close();
    }
}

void IoFile::CloseAndDeleteFile(bool abort) {
    try {
        CloseFile(abort);
    } catch (...) {
        platform::DeleteFileW(path);
        throw;
    }
    platform::DeleteFileW(path);
}

void IoFile::DeleteFiles() {
    ReleaseFiles();
    FindFileClose();
    busyIndicator.reset();
}

void IoFile::ReleaseFiles() {
    currentFile = nullptr;
    memoryFile.reset();
    if (textFile != nullptr) {
        textFile->Abort(); // hands what is buffered to the system, and throws nothing
        textFile.reset();
    }
}

// ---- Reading ------------------------------------------------------------------------------------------------------

bool IoFile::FileRead(void* data, unsigned int size) {
    if (memoryFile != nullptr && memoryFile->TakeAll(data, size)) [[likely]]
        return true;
    return ReadWhole(data, size);
}

unsigned int IoFile::FileBufferRead(void* data, unsigned int size) {
    auto const got = static_cast<unsigned int>(ReadBytes(data, size));
    if (got == 0) {
        FailShort();
    }
    return got;
}

bool IoFile::FileReverseRead(void* data, unsigned int size) {
    if (!FileRead(data, size)) {
        return false;
    }
    detail::ReverseItems(data, 1, size);
    return true;
}

bool IoFile::FileReverseRead(void* data, unsigned int count, unsigned int itemSize) {
    if (!ReadWhole(data, static_cast<unsigned long long>(count) * itemSize)) {
        return false;
    }
    detail::ReverseItems(data, count, itemSize);
    return true;
}

bool IoFile::ReadString(CXTString<char16_t>& line) {
    return textFile != nullptr && textFile->ReadString(line);
}

bool IoFile::ReadWhole(void* data, unsigned long long size) {
    return ReadBytes(data, size) == size || FailShort();
}

/// False, or the exception of a short read.
bool IoFile::FailShort() const {
    if (Throws()) {
        detail::ThrowFile(CXFileException::endOfFile, path);
    }
    return false;
}

unsigned long long IoFile::ReadBytes(void* data, unsigned long long size) {
    unsigned long long read = 0;
    while (currentFile != nullptr && data != nullptr && read < size) {
        unsigned long long const asked = std::min(size - read, LargestTransfer);
        unsigned long long const got = currentFile->Read(static_cast<unsigned char*>(data) + read, asked);
        read += got;
        if (got < asked) {
            break;
        }
    }
    return read;
}

// ---- Writing ------------------------------------------------------------------------------------------------------

void IoFile::FileWrite(void const* data, unsigned int size) {
    if (memoryFile != nullptr && memoryFile->PutAll(data, size)) [[likely]]
        return;
    WriteBytes(data, size);
}

void IoFile::FileReverseWrite(void* data, unsigned int size) {
    FileReverseWrite(data, 1, size);
}

void IoFile::FileReverseWrite(void* data, unsigned int count, unsigned int itemSize) {
    if (data == nullptr || itemSize == 0) {
        return;
    }
    // A piece at a time is turned round beside the caller's block, which stays as it is: whole items as long as they
    // are small, else a large one from its end.
    std::array<unsigned char, 4096> piece;
    auto const* item = static_cast<unsigned char const*>(data);
    auto const capacity = static_cast<unsigned int>(piece.size());
    if (itemSize <= capacity) {
        for (unsigned int const itemsInPiece = capacity / itemSize; count > 0;) {
            unsigned int const items = std::min(count, itemsInPiece);
            std::size_t const bytes = std::size_t{items} * itemSize;
            std::memcpy(piece.data(), item, bytes);
            detail::ReverseItems(piece.data(), items, itemSize);
            WriteBytes(piece.data(), bytes);
            item += bytes;
            count -= items;
        }
        return;
    }
    for (; count > 0; --count, item += itemSize) {
        for (unsigned int left = itemSize; left > 0;) {
            unsigned int const bytes = std::min(left, capacity);
            left -= bytes;
            std::reverse_copy(item + left, item + left + bytes, piece.data());
            WriteBytes(piece.data(), bytes);
        }
    }
}

void IoFile::WriteString(char16_t const* text) {
    if (textFile == nullptr || text == nullptr) {
        return;
    }
    if (memoryFile != nullptr && IsWriting()) {
        WriteStringToMemory(text);
    } else {
        textFile->WriteString(text);
    }
}

/// Writes what the file on disk would get, which is behind by all that lies in memory.
void IoFile::WriteStringToMemory(char16_t const* text) {
    if ((flags & IoFileWideText) != 0) {
        if (memoryFile->GetPosition() == 0) {
            WriteBytes(u"\uFEFF", sizeof(char16_t));
        }
        WriteBytes(text, std::char_traits<char16_t>::length(text) * sizeof(char16_t));
    } else {
        CXTString<char> bytes;
        XFASTCW2A(bytes, text);
        WriteBytes(static_cast<char const*>(bytes), std::strlen(bytes));
    }
}

void IoFile::WriteBytes(void const* data, unsigned long long size) {
    if (currentFile != nullptr && data != nullptr) {
        WriteTo(*currentFile, data, size);
    }
}

void IoFile::Flush() {
    if (currentFile != nullptr && IsWriting()) {
        currentFile->Flush();
    }
}

// ---- The position and the names -----------------------------------------------------------------------------------

bool IoFile::FileSeek(long long offset, CXFile::SeekPosition origin) {
    if (currentFile == nullptr || (!Throws() && IsBeforeBegin(offset, origin))) {
        return false;
    }
    unsigned long long const place = currentFile->Seek(offset, origin);
    // A stream that could not go there answers the place where it is.
    return place != CXFile::BadPosition &&
           (origin != CXFile::begin || place == static_cast<unsigned long long>(offset));
}

/// Asked first where nothing may throw: memory throws, and a stream does not say that it did not go.
bool IoFile::IsBeforeBegin(long long offset, CXFile::SeekPosition origin) {
    if (offset >= 0) {
        return false;
    }
    unsigned long long const base = origin == CXFile::current ? currentFile->GetPosition()
                                    : origin == CXFile::end   ? currentFile->GetLength()
                                                              : 0;
    return 0ULL - static_cast<unsigned long long>(offset) > base;
}

unsigned long long IoFile::FileGetPosition() {
    Flush();
    return currentFile != nullptr ? currentFile->GetPosition() : CXFile::BadPosition;
}

unsigned long long IoFile::FileGetLength() {
    Flush();
    return currentFile != nullptr ? currentFile->GetLength() : 0;
}

std::FILE* IoFile::GetFileStream() const {
    return textFile != nullptr ? textFile->GetStream() : nullptr;
}

CXTString<char16_t> IoFile::GetFilePath() const {
    return fileStripName(path);
}

CXTString<char16_t> IoFile::GetName() const {
    return fileStripPath(path, false);
}
