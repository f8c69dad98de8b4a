// SPDX-License-Identifier: MIT
#include "plugins/bitmap/format_checks.h"

#include "plugins/bitmap/dicom_depth.h"
#include "plugins/bitmap/file_bytes.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

/// The reader makes room for the user's data as large as the header claims, and copies it.
FileFault CheckDpx(FileBytes const& bytes) {
    constexpr std::uint64_t userSizeAt = 32;
    std::uint32_t const userSize = bytes.IsAt(0, "SDPX") ? bytes.Big(userSizeAt, 4) : bytes.Little(userSizeAt, 4);
    return userSize != 0xFFFFFFFF && userSize > bytes.GetSize() ? FileFault::CutShort : FileFault::None;
}

/// The reader of icons that are not PNG writes behind its pixels where the width is no multiple of 8.
FileFault CheckIcon(FileBytes const& bytes) {
    std::uint32_t const count = bytes.Little(4, 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint64_t const entry = 6 + 16 * static_cast<std::uint64_t>(i);
        std::uint64_t const picture = bytes.Little(entry + 12, 4);
        if (picture >= bytes.GetSize()) {
            return FileFault::CutShort;
        }
        bool const isPng = bytes.IsAt(picture, "\x89PNG");
        if (!isPng && bytes.Little(entry, 1) % 8 != 0) {
            return FileFault::UnreadableIcon;
        }
    }
    return FileFault::None;
}

/// What the head of an IFF image says of its tiles.
struct IffHead {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t planes = 0; ///< Bytes of a pixel, each stored apart.
    std::uint32_t tiles = 0;
};

IffHead ReadIffHead(FileBytes const& bytes, std::uint64_t at) {
    std::uint32_t const flags = bytes.Big(at + 12, 4);
    std::uint32_t const channels = (flags & 1) == 0 ? 0 : (flags & 2) != 0 ? 4 : 3; // never alpha alone
    std::uint32_t const channelBytes = bytes.Big(at + 16, 2) == 0 ? 1 : 2;
    return {.width = bytes.Big(at, 4),
            .height = bytes.Big(at + 4, 4),
            .planes = channels * channelBytes,
            .tiles = bytes.Big(at + 18, 2)};
}

/// Whether runs give exactly `planes` times `area` bytes and none goes on from one plane into the next.
bool AreRunsWhole(std::vector<unsigned char> const& packed, std::uint64_t area, std::uint32_t planes) {
    std::uint64_t left = area;
    for (std::size_t at = 0; at < packed.size() && planes > 0;) {
        std::uint64_t const count = (packed[at] & 0x7FU) + 1;
        at += (packed[at] & 0x80U) != 0 ? 2 : 1 + count;
        if (count > left || at > packed.size()) {
            return false;
        }
        left -= count;
        if (left == 0) {
            --planes;
            left = area;
        }
    }
    return planes == 0;
}

bool IsIffTileSound(FileBytes const& bytes, std::uint64_t at, std::uint32_t size, IffHead const& head) {
    std::uint32_t const left = bytes.Big(at, 2);
    std::uint32_t const top = bytes.Big(at + 2, 2);
    std::uint32_t const right = bytes.Big(at + 4, 2);
    std::uint32_t const bottom = bytes.Big(at + 6, 2);
    if (head.planes == 0 || size < 8 || left > right || top > bottom || right >= head.width || bottom >= head.height) {
        return false;
    }
    std::uint64_t const area = static_cast<std::uint64_t>(right - left + 1) * (bottom - top + 1);
    if (size - 8 == area * head.planes) {
        return true; // not packed
    }
    std::vector<unsigned char> packed(size - 8); // the file holds them
    bytes.Get(at + 8, packed.data(), packed.size());
    return AreRunsWhole(packed, area, head.planes);
}

/// The reader looks for pixels before its memory where the picture has an origin, copies tiles to wherever they say
/// they lie, unpacks runs beyond the tile's end, does not miss a tile that is not there, and takes a file that ends
/// early for a whole one.
FileFault CheckIff(FileBytes const& bytes) {
    std::uint64_t const end = 8 + static_cast<std::uint64_t>(bytes.Big(4, 4));
    if (bytes.GetSize() < end) {
        return FileFault::CutShort;
    }
    IffHead head;
    std::uint32_t tiles = 0;
    for (std::uint64_t at = 12; at + 8 <= end;) {
        if (bytes.IsAt(at, "FOR4")) {
            at += 12; // a group: its chunks follow
            continue;
        }
        std::uint32_t const size = bytes.Big(at + 4, 4);
        if (size > end - at - 8) {
            return FileFault::CutShort;
        }
        if (bytes.IsAt(at, "TBHD")) {
            head = ReadIffHead(bytes, at + 8);
            if (size >= 32 && (bytes.Big(at + 32, 4) != 0 || bytes.Big(at + 36, 4) != 0)) {
                return FileFault::Damaged;
            }
        } else if (bytes.IsAt(at, "RGBA")) {
            ++tiles;
            if (!IsIffTileSound(bytes, at + 8, size, head)) {
                return FileFault::Damaged;
            }
        }
        at += 8 + ((static_cast<std::uint64_t>(size) + 3) & ~3ULL);
    }
    return tiles == head.tiles ? FileFault::None : FileFault::Damaged;
}

/// The decoder fills what is missing with grey and reports nothing. Compressed pixels never hold the mark that ends
/// them, so a whole file has it somewhere behind their beginning, whatever a camera appends.
FileFault CheckJpeg(FileBytes const& bytes) {
    if (bytes.GetSize() > 2 && bytes.Big(bytes.GetSize() - 2, 2) == 0xFFD9) {
        return FileFault::None;
    }
    std::uint64_t at = 2;
    while (bytes.Big(at, 1) == 0xFF && bytes.Big(at + 1, 1) != 0xDA) {
        at += bytes.Big(at + 1, 1) == 0xFF ? 1 : 2 + bytes.Big(at + 2, 2);
    }
    std::vector<char> block(1 << 16);
    std::size_t got = 0;
    for (; (got = bytes.Get(at, block.data(), block.size())) > 1; at += got - 1) { // one byte twice, for a mark across
        if (std::string_view(block.data(), got).find("\xFF\xD9") != std::string_view::npos) {
            return FileFault::None;
        }
    }
    return FileFault::CutShort;
}

std::uint64_t WebpPixels(FileBytes const& bytes) {
    std::uint64_t const at = 20; // behind RIFF, size, WEBP, and the first chunk's name and size
    if (bytes.IsAt(12, "VP8X")) {
        return static_cast<std::uint64_t>(bytes.Little(at + 4, 3) + 1) * (bytes.Little(at + 7, 3) + 1);
    }
    if (bytes.IsAt(12, "VP8L")) {
        std::uint32_t const packed = bytes.Little(at + 1, 4);
        return static_cast<std::uint64_t>((packed & 0x3FFF) + 1) * ((packed >> 14 & 0x3FFF) + 1);
    }
    return static_cast<std::uint64_t>(bytes.Little(at + 6, 2) & 0x3FFF) * (bytes.Little(at + 8, 2) & 0x3FFF);
}

} // namespace

FileFault CheckFile(std::string const& format, PolledFile& file, bool allPixels) {
    FileBytes const bytes(file);
    if (format == "dicom" && IsTooDeepDicom(bytes)) {
        return FileFault::Damaged;
    }
    if (format == "dpx") {
        return CheckDpx(bytes);
    }
    if (format == "ico") {
        return CheckIcon(bytes);
    }
    if (format == "iff") {
        return CheckIff(bytes);
    }
    return format == "jpeg" && allPixels ? CheckJpeg(bytes) : FileFault::None;
}

unsigned long long ClaimedPixels(std::string const& format, PolledFile& file) {
    return format == "webp" ? WebpPixels(FileBytes(file)) : 0;
}
