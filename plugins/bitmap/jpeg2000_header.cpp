// SPDX-License-Identifier: MIT
// Boxes and codestream are those of ISO/IEC 15444-1, annexes I and A.
#include "plugins/bitmap/jpeg2000_header.h"

#include "plugins/bitmap/file_bytes.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint32_t CodestreamBegin = 0xFF4FFF51; ///< SOC, and SIZ behind it.
constexpr std::uint64_t NotFound = ~0ULL;

/// Where the codestream begins; NotFound where there is none, or a box before it changes what its channels mean.
std::uint64_t FindCodestream(FileBytes const& bytes) {
    if (bytes.Big(0, 4) == CodestreamBegin) {
        return 0;
    }
    for (std::uint64_t at = 0; at + 8 <= bytes.GetSize();) {
        std::uint64_t const size = bytes.Big(at, 4);
        bool const isLong = size == 1;
        std::uint64_t const head = isLong ? 16 : 8;
        if (bytes.IsAt(at + 4, "jp2c")) {
            return bytes.Big(at + head, 4) == CodestreamBegin ? at + head : NotFound;
        }
        if (bytes.IsAt(at + 4, "pclr") || bytes.IsAt(at + 4, "cdef")) {
            return NotFound;
        }
        if (bytes.IsAt(at + 4, "jp2h")) {
            at += head; // a group: its boxes follow
            continue;
        }
        std::uint64_t const whole =
            isLong ? static_cast<std::uint64_t>(bytes.Big(at + 8, 4)) << 32 | bytes.Big(at + 12, 4) : size;
        if (whole < head || whole > bytes.GetSize() - at) {
            break;
        }
        at += whole;
    }
    return NotFound;
}

} // namespace

bool ReadJpeg2000Header(PolledFile& file, OIIO::ImageSpec& spec) {
    FileBytes const bytes(file);
    std::uint64_t const begin = FindCodestream(bytes);
    if (begin == NotFound) {
        return false;
    }
    // The picture is what the reference grid has beside the offset.
    std::uint32_t const right = bytes.Big(begin + 8, 4);
    std::uint32_t const bottom = bytes.Big(begin + 12, 4);
    std::uint32_t const left = bytes.Big(begin + 16, 4);
    std::uint32_t const top = bytes.Big(begin + 20, 4);
    std::uint32_t const channels = bytes.Big(begin + 40, 2);
    constexpr auto most = static_cast<std::uint32_t>(std::numeric_limits<int>::max());
    if (right <= left || bottom <= top || right > most || bottom > most || channels == 0 || channels > 4) {
        return false;
    }
    std::uint32_t bits = 0;
    for (std::uint32_t i = 0; i < channels; ++i) {
        std::uint64_t const channel = begin + 42 + 3 * static_cast<std::uint64_t>(i);
        if (bytes.Big(channel + 1, 2) != 0x0101) { // fewer pixels than the grid has
            return false;
        }
        bits = std::max(bits, (bytes.Big(channel, 1) & 0x7F) + 1);
    }
    spec = OIIO::ImageSpec(static_cast<int>(right - left), static_cast<int>(bottom - top), static_cast<int>(channels),
                           bits <= 8 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::UINT16);
    spec.attribute("oiio:BitsPerSample", static_cast<int>(bits));
    spec.attribute("oiio:ColorSpace", "sRGB");
    return true;
}
