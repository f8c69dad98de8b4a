// SPDX-License-Identifier: MIT
// Directories are those of TIFF 6.0, and of BigTIFF, which has the same with longer numbers.
#include "plugins/bitmap/tiff_pixels.h"

#include "plugins/bitmap/file_bytes.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace {

/// A field of a directory: so many numbers of so many bytes.
struct Field {
    std::uint64_t count = 0;
    std::uint64_t at = 0;
    int size = 0;
};

/// Where a page's pieces begin and how long they are.
struct Page {
    Field offsets;
    Field lengths;
    std::uint64_t next = 0;
};

class TiffWalk {
public:
    explicit TiffWalk(PolledFile& file)
        : bytes(file), isBig(bytes.IsAt(0, "MM")), isLong(Get(2, 2) == 43), wordSize(isLong ? 8 : 4),
          unread(bytes.GetSize()) {}

    std::uint64_t FindEnd();

private:
    /// Whether so many bytes may be read, which no sound file has twice.
    bool Spend(std::uint64_t size);
    std::uint64_t Get(std::uint64_t at, int size) const;
    Page ReadPage(std::uint64_t at);
    Field ReadField(std::uint64_t entry) const;
    std::vector<std::uint64_t> ReadNumbers(Field const& field);
    std::uint64_t FindEnd(Page const& page);

    FileBytes bytes;
    bool isBig;
    bool isLong;
    int wordSize;
    std::uint64_t unread; ///< Bytes, so that directories over each other cost no more than the file is long.
};

std::uint64_t TiffWalk::Get(std::uint64_t at, int size) const {
    if (size > 4) {
        std::uint64_t const first = Get(at, 4);
        std::uint64_t const second = Get(at + 4, 4);
        return isBig ? first << 32 | second : second << 32 | first;
    }
    return isBig ? bytes.Big(at, size) : bytes.Little(at, size);
}

Field TiffWalk::ReadField(std::uint64_t entry) const {
    enum : std::uint64_t {
        Short = 3,
        Long = 4,
        Long8 = 16
    };
    std::uint64_t const type = Get(entry + 2, 2);
    int const size = type == Short ? 2 : type == Long ? 4 : type == Long8 ? 8 : 0;
    std::uint64_t const count = Get(entry + 4, wordSize);
    std::uint64_t const value = entry + 4 + static_cast<std::uint64_t>(wordSize);
    if (size == 0 || count > bytes.GetSize() / static_cast<std::uint64_t>(size)) {
        return {};
    }
    bool const isInPlace = count * static_cast<std::uint64_t>(size) <= static_cast<std::uint64_t>(wordSize);
    return {.count = count, .at = isInPlace ? value : Get(value, wordSize), .size = size};
}

bool TiffWalk::Spend(std::uint64_t size) {
    if (size > unread) {
        return false;
    }
    unread -= size;
    return true;
}

Page TiffWalk::ReadPage(std::uint64_t at) {
    int const countSize = isLong ? 8 : 2;
    std::uint64_t const entrySize = isLong ? 20 : 12;
    std::uint64_t const first = at + static_cast<std::uint64_t>(countSize);
    std::uint64_t const count = Get(at, countSize);
    Page page;
    if (at >= bytes.GetSize() || count > (bytes.GetSize() - at) / entrySize || !Spend(count * entrySize)) {
        return page;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        std::uint64_t const entry = first + i * entrySize;
        switch (Get(entry, 2)) {
        case 273:                                         // StripOffsets
        case 324: page.offsets = ReadField(entry); break; // TileOffsets
        case 279:                                         // StripByteCounts
        case 325: page.lengths = ReadField(entry); break; // TileByteCounts
        default: break;
        }
    }
    page.next = Get(first + count * entrySize, wordSize);
    return page;
}

std::vector<std::uint64_t> TiffWalk::ReadNumbers(Field const& field) {
    std::vector<std::uint64_t> numbers;
    if (!Spend(field.count * static_cast<std::uint64_t>(field.size))) {
        return numbers;
    }
    numbers.resize(field.count);
    for (std::uint64_t i = 0; i < field.count; ++i) {
        numbers[i] = Get(field.at + i * static_cast<std::uint64_t>(field.size), field.size);
    }
    return numbers;
}

std::uint64_t TiffWalk::FindEnd(Page const& page) {
    std::vector<std::uint64_t> const offsets = ReadNumbers(page.offsets);
    std::vector<std::uint64_t> const lengths = ReadNumbers(page.lengths);
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        // A piece of no length is left out on purpose, and one whose length is not told has a byte at least.
        std::uint64_t const length = i < lengths.size() ? lengths[i] : 1;
        std::uint64_t pieceEnd = 0;
        if (__builtin_add_overflow(offsets[i], length, &pieceEnd)) {
            pieceEnd = ~0ULL;
        }
        end = length > 0 ? std::max(end, pieceEnd) : end;
    }
    return end;
}

std::uint64_t TiffWalk::FindEnd() {
    std::uint64_t end = 0;
    std::unordered_set<std::uint64_t> seen; // pages may follow each other in a ring
    for (std::uint64_t at = Get(wordSize, wordSize); at != 0 && seen.insert(at).second;) {
        Page const page = ReadPage(at);
        end = std::max(end, FindEnd(page));
        at = page.next;
    }
    return end;
}

} // namespace

std::uint64_t FindEndOfTiffPixels(PolledFile& file) {
    return TiffWalk(file).FindEnd();
}
