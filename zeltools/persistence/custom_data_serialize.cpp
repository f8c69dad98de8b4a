// SPDX-License-Identifier: MIT
// Stores in archives and in blocks of memory. Nothing is converted: the chunks go out and come in as they lie.

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_mem_file.h"
#include "zeltools/persistence/custom_data_private.h"
#include "zeltools/persistence/file_failure_private.h"
#include "zeltools/persistence/xarchive.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

using detail::ChunkHeaderSize;
using detail::StoreLock;

namespace {

/// What stands before the chunks.
struct StreamHeader {
    unsigned short version;
    unsigned short unused;     ///< whatever an older writer had in memory
    unsigned int chunkCount;   ///< a hint
    unsigned int dataSize;     ///< of all chunks, without their headers
    unsigned int stringFormat; ///< see CCustomData
    unsigned int reserved;
};
static_assert(sizeof(StreamHeader) == 20);

constexpr unsigned short StreamVersion = 1;

/// More would not leave the total its 32 bits.
constexpr unsigned int LargestRun = 0xFFFFFFFF - sizeof(StreamHeader);

constexpr unsigned int MemFileGrowth = 2048;
constexpr unsigned int ArchiveBuffer = 4096;

[[noreturn]] void ThrowBadStream() {
    detail::ThrowFile(CXFileException::genericException, CXTString<char16_t>());
}

using Block = std::unique_ptr<unsigned char, decltype(&CCustomData::Free)>;

void Resize(Block& block, unsigned int size) {
    auto* const moved = static_cast<unsigned char*>(std::realloc(block.get(), size));
    if (!moved)
        detail::ThrowMemory();
    static_cast<void>(block.release());
    block.reset(moved);
}

/// Reads so many bytes into one block; null for 0.
/// Errors: a bad stream where they are not there, and then nothing was allocated for them.
Block ReadBlock(CXArchive& archive, unsigned int size) {
    Block block(nullptr, CCustomData::Free);
    unsigned long long const left = archive.BytesLeft();
    if (size > left)
        ThrowBadStream();
    // A file that cannot tell what is left gets memory as its bytes come.
    constexpr unsigned long long unknown = ~0ull;
    constexpr unsigned int firstStep = 0x10000;
    unsigned int step = left == unknown ? firstStep : size;
    for (unsigned int done = 0; done != size; step = done) {
        step = std::min(step, size - done);
        Resize(block, done + step);
        if (archive.Read(block.get() + done, step) != step)
            ThrowBadStream();
        done += step;
    }
    return block;
}

/// Empties a store whose loading fails.
class LoadGuard {
public:
    explicit LoadGuard(CCustomData& loaded) : store(&loaded) {}
    ~LoadGuard() {
        if (store)
            store->RemoveAll();
    }
    LoadGuard(LoadGuard const&) = delete;
    LoadGuard& operator=(LoadGuard const&) = delete;
    void Done() { store = nullptr; }

private:
    CCustomData* store;
};

} // namespace

void CCustomData::Serialize(CXArchive& archive) {
    StoreLock const hold(&threadLock);
    if (archive.IsStoring()) {
        StoreTo(archive);
        return;
    }
    LoadGuard guard(*this);
    LoadFrom(archive);
    guard.Done();
}

void CCustomData::StoreTo(CXArchive& archive) {
    FreeExtra();
    if (size > LargestRun)
        ThrowBadStream();
    archive << static_cast<int>(CustomDataMagicCurrent);
    if (size == 0) {
        archive << 0u;
        return;
    }
    StreamHeader header{StreamVersion, 0, 0, 0, stringFormat, 0};
    for (CustomPrivateData const* chunk = GetFirstChunk(); chunk; chunk = GetNextChunk(chunk)) {
        ++header.chunkCount;
        header.dataSize += chunk->size;
    }
    archive << static_cast<unsigned int>(size + sizeof(header));
    archive.Write(&header, sizeof(header));
    archive.Write(buffer, size);
}

void CCustomData::LoadFrom(CXArchive& archive) {
    if (buffer)
        RemoveAll();
    Touch();
    stringFormat = 0;
    int magic = 0;
    archive >> magic;
    switch (static_cast<unsigned int>(magic)) {
    case CustomDataMagicCurrent:
    case CustomDataMagicPrevious: break;
    case CustomDataMagicLegacyWide:
    case CustomDataMagicLegacyNarrow:
        stringFormat = static_cast<unsigned int>(magic) == CustomDataMagicLegacyWide ? 1 : 2;
        ReadPreviousVersion(archive);
        return;
    default: ThrowBadStream();
    }
    unsigned int total = 0;
    archive >> total;
    if (total == 0)
        return;
    StreamHeader header{};
    if (archive.Read(&header, sizeof(header)) != sizeof(header) || header.version != StreamVersion ||
        total < sizeof(header))
        ThrowBadStream();
    unsigned int const byteCount = total - static_cast<unsigned int>(sizeof(header));
    Block block = ReadBlock(archive, byteCount);
    if (block)
        TakeBuffer(block.release(), byteCount, header.chunkCount);
    stringFormat = header.stringFormat;
}

void CCustomData::ReadPreviousVersion(CXArchive& archive) {
    unsigned int areaSize = 0;
    archive >> areaSize; // an archive that stores refuses this
    if (areaSize == 0)
        return;
    Block const area = ReadBlock(archive, areaSize);
    ConvertPreviousData(*this, reinterpret_cast<CustomPrivateDataOld const*>(area.get()), areaSize);
}

void* CCustomData::SerializeToData(unsigned long long& byteCount) const {
    byteCount = 0;
    if (!HasData())
        return nullptr;
    StoreLock const hold(&threadLock);
    try {
        CCustomDataMemFile file(MemFileGrowth, true);
        CXArchive archive(&file, CXArchive::Storing, ArchiveBuffer);
        // Storing changes no value; only memory that is not in use goes back.
        const_cast<CCustomData*>(this)->Serialize(archive);
        archive.Close();
        byteCount = file.GetLength();
        return file.Detach();
    } catch (CXException* e) {
        e->Delete();
    } catch (...) {
    }
    byteCount = 0;
    return nullptr;
}

bool CCustomData::SerializeFromData(void const* data, unsigned long long byteCount) {
    return SerializeFromData(*this, data, byteCount);
}

bool CCustomData::SerializeFromData(CCustomData& target, void const* data, unsigned long long byteCount) {
    StoreLock const hold(&target.threadLock);
    // A stream that is a value of this very store stays until it is read.
    Block const kept(target.IsOwnMemory(data) ? std::exchange(target.buffer, nullptr) : nullptr, Free);
    target.RemoveAll();
    if (byteCount == 0)
        return false;
    if (!data)
        detail::ThrowInvalidArg();
    try {
        CCustomDataMemFile file(static_cast<unsigned char const*>(data), byteCount, false, true);
        CXArchive archive(&file, CXArchive::Loading | CXArchive::NoFlushOnDelete, ArchiveBuffer);
        target.Serialize(archive);
        return target.HasData();
    } catch (CXException* e) {
        e->Delete();
    } catch (...) {
    }
    target.RemoveAll();
    return false;
}
