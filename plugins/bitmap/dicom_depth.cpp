// SPDX-License-Identifier: MIT
// Elements are those of PS3.5, section 7.
#include "plugins/bitmap/dicom_depth.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t DeepestLevel = 128; ///< Items and sequences; honest files have a dozen.
constexpr std::uint32_t Unknown = 0xFFFFFFFF;
constexpr std::uint32_t Item = 0xFFFEE000;
constexpr std::uint32_t PixelData = 0x7FE00010;

class DicomWalk {
public:
    explicit DicomWalk(FileBytes const& file) : bytes(file), at(file.IsAt(128, "DICM") ? 132 : 0) {}

    bool IsTooDeep();

private:
    std::uint32_t Get(std::uint64_t from, int size) const {
        return isBig ? bytes.Big(from, size) : bytes.Little(from, size);
    }
    std::uint32_t GetTag(std::uint64_t from) const { return Get(from, 2) << 16 | Get(from + 2, 2); }
    void Enter(std::uint32_t length) { ends.push_back(length == Unknown ? ~0ULL : at + length); }
    void PassMark(std::uint32_t tag);
    void PassElement(std::uint32_t tag);
    void PassFragments();
    void ReadSyntax(std::uint64_t from);

    FileBytes const& bytes;
    std::uint64_t at;
    std::vector<std::uint64_t> ends; ///< Of the sequences and items around.
    bool isBig = false;              ///< The highest byte first.
    bool willBeBig = false;          ///< Behind the group that tells so.
    bool isDeflated = false;
};

void DicomWalk::ReadSyntax(std::uint64_t from) {
    constexpr std::uint64_t distinctAt = 17; // behind 1.2.840.10008.1.2
    willBeBig = bytes.IsAt(from + distinctAt, ".2");
    isDeflated = bytes.IsAt(from + distinctAt, ".1.99");
}

void DicomWalk::PassMark(std::uint32_t tag) {
    std::uint32_t const length = Get(at + 4, 4);
    at += 8;
    if (tag == Item) {
        Enter(length);
    } else if (!ends.empty()) {
        ends.pop_back();
    }
}

void DicomWalk::PassFragments() {
    while (GetTag(at) == Item && at < bytes.GetSize()) {
        at += 8ULL + Get(at + 4, 4);
    }
    at += 8; // the end of them
}

void DicomWalk::PassElement(std::uint32_t tag) {
    constexpr std::string_view longKinds = "OB OD OF OL OV OW SQ SV UC UN UR UT UV ";
    char kind[3] = {};
    bytes.Get(at + 4, kind, 2);
    auto const isLetter = [](char letter) { return letter >= 'A' && letter <= 'Z'; };
    bool const isExplicit = isLetter(kind[0]) && isLetter(kind[1]);
    bool const isLong = isExplicit && longKinds.find(kind) != std::string_view::npos;
    std::uint32_t const length = isLong ? Get(at + 8, 4) : isExplicit ? Get(at + 6, 2) : Get(at + 4, 4);
    at += isLong ? 12 : 8;
    if (tag == 0x00020010) {
        ReadSyntax(at);
    }
    if (tag == PixelData && length == Unknown) {
        PassFragments();
    } else if (length == Unknown || (length >= 8 && GetTag(at) == Item)) {
        Enter(length);
    } else {
        at += length;
    }
}

bool DicomWalk::IsTooDeep() {
    while (at + 8 <= bytes.GetSize() && ends.size() <= DeepestLevel && !isDeflated) {
        while (!ends.empty() && at >= ends.back()) {
            ends.pop_back();
        }
        isBig = isBig || (willBeBig && Get(at, 2) != 2);
        std::uint32_t const tag = GetTag(at);
        if (tag >> 16 == 0xFFFE) {
            PassMark(tag);
        } else {
            PassElement(tag);
        }
    }
    return ends.size() > DeepestLevel || isDeflated;
}

} // namespace

bool IsTooDeepDicom(FileBytes const& bytes) {
    return DicomWalk(bytes).IsTooDeep();
}
