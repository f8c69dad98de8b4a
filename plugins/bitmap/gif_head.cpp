// SPDX-License-Identifier: MIT
// The blocks are those of "Graphics Interchange Format, Version 89a".
#include "plugins/bitmap/gif_head.h"

#include "plugins/bitmap/file_bytes.h"

#include <array>
#include <string>

namespace {

enum Block : std::uint32_t {
    Extension = 0x21,
    Frame = 0x2C
};

enum Label : std::uint32_t {
    GraphicControl = 0xF9,
    Comment = 0xFE,
    Application = 0xFF
};

class GifWalk {
public:
    explicit GifWalk(PolledFile& file) : bytes(file) {}

    ImageHead Read(std::size_t mostSubImages);

private:
    OIIO::ImageSpec DescribeFrame() const;
    std::uint64_t ColorTableSize(std::uint32_t flags) const;
    /// Passes a run of blocks, each behind its length, which ends with one of no length.
    template <class Visitor>
    void PassBlocks(Visitor const& visit);
    void ReadExtension(OIIO::ImageSpec& frame);
    void ReadControl(OIIO::ImageSpec& frame, std::uint64_t block) const;
    void ReadLoop(OIIO::ImageSpec& frame, std::uint64_t block) const;
    std::string ReadText(std::uint64_t from, std::uint32_t size) const;

    FileBytes bytes;
    std::uint64_t at = 0;
};

std::uint64_t GifWalk::ColorTableSize(std::uint32_t flags) const {
    return (flags & 0x80) != 0 ? 3ULL << ((flags & 7) + 1) : 0;
}

template <class Visitor>
void GifWalk::PassBlocks(Visitor const& visit) {
    while (at < bytes.GetSize()) {
        std::uint32_t const size = bytes.Big(at, 1);
        if (size > 0) {
            visit(at + 1, size);
        }
        at += 1 + size;
        if (size == 0) {
            return;
        }
    }
    at = bytes.GetSize(); // the end is missing
}

std::string GifWalk::ReadText(std::uint64_t from, std::uint32_t size) const {
    std::array<char, 255> text{};
    std::string const read(text.data(), bytes.Get(from, text.data(), size));
    return read.substr(0, read.find('\0'));
}

void GifWalk::ReadControl(OIIO::ImageSpec& frame, std::uint64_t block) const {
    int const hundredths = static_cast<int>(bytes.Little(block + 1, 2));
    if (hundredths > 0) {
        int const rate[2] = {100, hundredths};
        frame.attribute("FramesPerSecond", OIIO::TypeRational, rate);
        frame.attribute("oiio:Movie", 1);
    }
}

void GifWalk::ReadLoop(OIIO::ImageSpec& frame, std::uint64_t block) const {
    int const count = static_cast<int>(bytes.Little(block + 1, 2));
    frame.attribute("gif:LoopCount", count);
    frame.attribute("oiio:LoopCount", count);
}

void GifWalk::ReadExtension(OIIO::ImageSpec& frame) {
    std::uint32_t const label = bytes.Big(at + 1, 1);
    at += 2;
    PassBlocks([&](std::uint64_t block, std::uint32_t size) {
        if (label == GraphicControl && size >= 4) {
            ReadControl(frame, block);
        } else if (label == Comment) {
            frame.attribute("ImageDescription", ReadText(block, size));
        } else if (label == Application && size == 3) {
            ReadLoop(frame, block);
        }
    });
}

OIIO::ImageSpec GifWalk::DescribeFrame() const {
    // Each frame is the whole screen as it then looks.
    OIIO::ImageSpec frame(static_cast<int>(bytes.Little(6, 2)), static_cast<int>(bytes.Little(8, 2)), 4,
                          OIIO::TypeDesc::UINT8);
    frame.attribute("oiio:ColorSpace", "sRGB");
    return frame;
}

ImageHead GifWalk::Read(std::size_t mostSubImages) {
    ImageHead head;
    if (!bytes.IsAt(0, "GIF8")) {
        return head;
    }
    at = 13 + ColorTableSize(bytes.Big(10, 1));
    OIIO::ImageSpec frame = DescribeFrame();
    while (head.subImages.size() < mostSubImages && at < bytes.GetSize()) {
        std::uint32_t const block = bytes.Big(at, 1);
        if (block == Extension) {
            ReadExtension(frame);
        } else if (block == Frame && bytes.GetSize() - at <= 10) {
            at = bytes.GetSize();
        } else if (block == Frame) {
            std::uint32_t const flags = bytes.Big(at + 9, 1);
            frame.attribute("gif:Interlacing", (flags & 0x40) != 0 ? 1 : 0);
            head.subImages.push_back(frame);
            frame = DescribeFrame();
            at += 11 + ColorTableSize(flags); // the last byte is the code size
            PassBlocks([](std::uint64_t, std::uint32_t) {});
        } else {
            break; // the trailer, or whatever stands behind the last frame
        }
    }
    head.isCutShort = at >= bytes.GetSize(); // without a trailer
    return head;
}

} // namespace

ImageHead ReadGifHead(PolledFile& file, std::size_t mostSubImages) {
    return GifWalk(file).Read(mostSubImages);
}
