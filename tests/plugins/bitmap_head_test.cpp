// SPDX-License-Identifier: MIT
// What the plug-in for images finds out by itself, before the library decodes: the heads of GIF, HEIF and DICOM, where
// the pixels of a TIFF lie, and what becomes of pixels that a document has no type for.
#include "tests/plugins/bitmap_fixture.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

namespace {

/// All but the pixels, a line for each fact.
std::multiset<std::string> Facts(CImageDocument const& image) {
    std::multiset<std::string> facts;
    for (unsigned int i = 0; i < image.GetSubImageCount(); ++i) {
        CSubImage const& subImage = image.GetSubImage(i);
        std::string const about = std::to_string(i) + ' ';
        facts.insert(about + std::to_string(subImage.width) + 'x' + std::to_string(subImage.height) + ' ' +
                     GetPixelTypeName(subImage.pixelType) + ' ' + Narrow(subImage.colorSpace));
        for (int c = 0; c < subImage.channels.GetSize(); ++c) {
            facts.insert(about + "channel " + std::to_string(c) + ' ' + Narrow(subImage.channels[c]));
        }
        CXTString<char16_t> name;
        CXTString<char16_t> value;
        for (unsigned int m = 0; subImage.metadata.GetAt(m, name, value); ++m) {
            facts.insert(about + Narrow(name) + '=' + Narrow(value));
        }
    }
    return facts;
}

/// `size` bytes of a number.
std::string Bytes(std::uint64_t number, int size, bool isBig = false) {
    std::string bytes;
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(number >> 8 * (isBig ? size - 1 - i : i));
    }
    return bytes;
}

enum class Syntax {
    Explicit,
    Implicit,
    Big
};

struct Dicom {
    int stored = 8;
    int sign = 0;
    std::vector<unsigned int> values = {7}; ///< All pixels, or the colours of one.
    std::string scale = {};                 ///< Slope and intercept, with a space between.
    std::string colours = "MONOCHROME2";
    Syntax syntax = Syntax::Explicit;
    unsigned int frames = 1;

    /// 4 by 2 pixels.
    std::string Make() const {
        bool const isBig = syntax == Syntax::Big;
        auto const number = [isBig](unsigned int value) { return Bytes(value, 2, isBig); };
        constexpr char const* ends[] = {".1", "", ".2"};
        std::string const uid = std::string("1.2.840.10008.1.2") + ends[static_cast<int>(syntax)];
        std::string file = std::string(128, '\0') + "DICM" + Tag(2, 0x10, "UI", uid, Syntax::Explicit);
        auto const add = [&](int group, int element, char const* kind, std::string const& value) {
            file += Tag(group, element, kind, value, syntax);
        };
        int const bits = stored > 8 ? 16 : 8;
        add(0x10, 0x10, "PN", "Doe^Jane");
        add(0x28, 2, "US", number(static_cast<unsigned int>(values.size())));
        add(0x28, 4, "CS", colours);
        add(0x28, 6, "US", number(0));
        add(0x28, 8, "IS", std::to_string(frames));
        add(0x28, 0x10, "US", number(2));
        add(0x28, 0x11, "US", number(4));
        add(0x28, 0x100, "US", number(static_cast<unsigned int>(bits)));
        add(0x28, 0x101, "US", number(static_cast<unsigned int>(stored)));
        add(0x28, 0x102, "US", number(static_cast<unsigned int>(stored - 1)));
        add(0x28, 0x103, "US", number(static_cast<unsigned int>(sign)));
        if (!scale.empty()) {
            add(0x28, 0x1052, "DS", scale.substr(scale.find(' ') + 1));
            add(0x28, 0x1053, "DS", scale.substr(0, scale.find(' ')));
        }
        std::string pixels;
        for (unsigned int i = 0; i < 8 * frames * values.size(); ++i) {
            pixels += Bytes(values[i % values.size()], bits / 8, isBig);
        }
        add(0x7FE0, 0x10, "OW", pixels);
        return file;
    }

private:
    static std::string Tag(int group, int element, std::string const& kind, std::string value, Syntax syntax) {
        bool const isBig = syntax == Syntax::Big;
        if (value.size() % 2 != 0) {
            value += kind == "UI" ? '\0' : ' ';
        }
        std::string const head =
            Bytes(static_cast<unsigned int>(group), 2, isBig) + Bytes(static_cast<unsigned int>(element), 2, isBig);
        if (syntax == Syntax::Implicit) {
            return head + Bytes(value.size(), 4) + value;
        }
        bool const isLong = kind == "OW";
        return head + kind + (isLong ? Bytes(0, 2) : "") + Bytes(value.size(), isLong ? 4 : 2, isBig) + value;
    }
};

/// Grey pixels in one strip.
struct Tiff {
    int bits = 8;
    int kind = 1; ///< Of the numbers: 1 without sign, 2 with one, 3 floating.
    std::vector<std::uint64_t> values = {1, 2};
    bool isBig = false;  ///< The highest byte first.
    bool isLong = false; ///< BigTIFF.
    unsigned int height = 1;
    std::uint64_t behind = 0; ///< How far the strip lies beyond the place where it is.

    std::string Make() const {
        int const word = isLong ? 8 : 4;
        auto const put = [this](std::uint64_t value, int size) { return Bytes(value, size, isBig); };
        std::string pixels;
        for (std::uint64_t const value : values) {
            pixels += put(value, bits / 8);
        }
        std::uint64_t const directory = isLong ? 16 : 8;
        std::uint64_t const tags[][2] = {{256, values.size() / height},
                                         {257, height},
                                         {258, static_cast<unsigned int>(bits)},
                                         {259, 1},
                                         {262, 1},
                                         {273, 0},
                                         {277, 1},
                                         {278, height},
                                         {279, pixels.size()},
                                         {339, static_cast<unsigned int>(kind)}};
        std::uint64_t const pixelsAt = directory + (isLong ? 16 + 20 * std::size(tags) : 6 + 12 * std::size(tags));
        std::string file = (isBig ? "MM" : "II") + put(isLong ? 43 : 42, 2);
        file += (isLong ? put(8, 2) + put(0, 2) : "") + put(directory, word) + put(std::size(tags), isLong ? 8 : 2);
        for (auto const& [tag, value] : tags) {
            bool const isShort = tag == 258 || tag == 259 || tag == 262 || tag == 277 || tag == 339;
            file += put(tag, 2) + put(isShort ? 3 : isLong ? 16 : 4, 2) + put(1, word);
            std::string const number = put(tag == 273 ? pixelsAt + behind : value, isShort ? 2 : word);
            file += number + std::string(static_cast<std::size_t>(word) - number.size(), '\0');
        }
        return file + put(0, word) + pixels;
    }
};

class BitmapHeads : public BitmapPlugin {};

TEST_F(BitmapHeads, AreThoseOfTheWholeFile) {
    CImageDocument image;
    AddNoise(image, 40, 24, u"RGBA", PixelType::UInt8).metadata.SetText(u"ImageDescription", u"50 %s");
    ASSERT_TRUE(Write("alpha.heic", image));
    AddNoise(image, 40, 24, u"RGBA", PixelType::UInt8);
    ASSERT_TRUE(Write("two.gif", image));
    image.Clear();
    AddNoise(image, 48, 20, u"RGB", PixelType::UInt8).metadata.SetText(u"Make", u"Maker");
    ASSERT_TRUE(Write("opaque.heic", image));
    ASSERT_TRUE(Write("opaque.avif", image));
    folder.Write("frames.dcm", Dicom{.frames = 3}.Make());
    struct Row {
        char const* name;
        std::string fact;
        std::string pixels;
    } const rows[] = {
        {"alpha.heic", "0 40x24 uint8 sRGB", "960"}, {"two.gif", "1 40x24 uint8 sRGB", "960"},
        {"opaque.heic", "0 Make=Maker", "960"},      {"opaque.avif", "0 48x20 uint8 sRGB", "960"},
        {"frames.dcm", "2 4x2 uint8 ", "8"},
    };
    for (Row const& row : rows) {
        CImageDocument header;
        CImageDocument read;
        ASSERT_TRUE(ReadHeader(row.name, header)) << row.name;
        ASSERT_TRUE(Read(row.name, read)) << row.name;
        EXPECT_EQ(Facts(header), Facts(read)) << row.name;
        EXPECT_EQ(Facts(header).count(row.fact), 1u) << row.name;
        for (bool const isAll : {false, true}) {
            auto const io = Open(row.name);
            io->limits.maxPixels = 7;
            CImageDocument none;
            EXPECT_FALSE(isAll ? io->Read(none) : io->ReadHeader(none));
            EXPECT_EQ(Narrow(io->GetIoErrorTxt()), row.name + (": " + row.pixels) + " pixels, where 7 are allowed.");
        }
        // What is wrong with the pixels is nothing to the head.
        std::string const broken = folder.Read(row.name);
        if (broken.find("ftyp") != std::string::npos) {
            continue; // what is beside the pixels stands behind them
        }
        folder.Write(row.name, broken.substr(0, broken.size() - 9));
        CImageDocument head;
        EXPECT_TRUE(ReadHeader(row.name, head)) << row.name;
        EXPECT_EQ(Facts(head), Facts(read)) << row.name;
        EXPECT_FALSE(Read(row.name, read)) << row.name;
    }
}

/// The type follows from the tags; values fill its range as those of the tags' range do.
TEST_F(BitmapHeads, OfDicomTellTheTypeThatTheTagsAllow) {
    struct Row {
        Dicom file;
        PixelType type;
        std::vector<unsigned int> first; ///< The channels of the first pixel.
    } const rows[] = {
        {{}, PixelType::UInt8, {7}},
        {{.colours = "MONOCHROME1"}, PixelType::UInt8, {255 - 7}},
        {{.values = {1, 2, 3}, .colours = "RGB"}, PixelType::UInt8, {1, 2, 3}},
        {{.stored = 16, .values = {0x1234}}, PixelType::UInt16, {0x1234}},
        {{.stored = 16, .values = {0x1234}, .syntax = Syntax::Implicit}, PixelType::UInt16, {0x1234}},
        {{.stored = 16, .values = {0x1234}, .syntax = Syntax::Big}, PixelType::UInt16, {0x1234}},
        // Small values of a large range, which are no smaller type.
        {{.stored = 16, .values = {5}}, PixelType::UInt16, {5}},
        // The lowest of 16 bits with a sign is black; 0 is the middle.
        {{.stored = 16, .sign = 1, .values = {0x8000}}, PixelType::UInt16, {0}},
        {{.stored = 16, .sign = 1, .values = {0}}, PixelType::UInt16, {0x8000}},
        // A tomography: -1024 to 3071, 12 bits and a sign.
        {{.stored = 12, .values = {4095}, .scale = "1 -1024"}, PixelType::UInt16, {65520}},
        {{.stored = 12, .values = {0}, .scale = "1 -1024"}, PixelType::UInt16, {0}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(&row - rows);
        folder.Write("a.dcm", row.file.Make());
        CImageDocument header;
        CImageDocument read;
        ASSERT_TRUE(ReadHeader("a.dcm", header));
        ASSERT_TRUE(Read("a.dcm", read));
        EXPECT_EQ(Facts(header), Facts(read));
        ASSERT_EQ(read.GetSubImage(0).pixelType, row.type);
        std::string expected;
        for (unsigned int const value : row.first) {
            expected += Bytes(value, static_cast<int>(GetPixelTypeSize(row.type)));
        }
        std::string const pixels(reinterpret_cast<char const*>(read.GetSubImage(0).GetRow(0)), expected.size());
        EXPECT_EQ(pixels, expected) << static_cast<int>(pixels[0]);
        EXPECT_TRUE(header.GetSubImage(0).metadata.HasName(u"dicom:PatientName"));
    }
}

/// Sequences in sequences would fill the stack.
TEST_F(BitmapHeads, OfDicomStandNotTooDeep) {
    std::string const item = Bytes(0xE000FFFE, 4) + Bytes(0xFFFFFFFF, 4);
    std::string const sequence = Bytes(0x11400008, 4) + "SQ" + Bytes(0, 2) + Bytes(0xFFFFFFFF, 4) + item;
    std::string const ends = Bytes(0xE00DFFFE, 4) + Bytes(0, 4) + Bytes(0xE0DDFFFE, 4) + Bytes(0, 4);
    std::string const plain = Dicom{}.Make();
    std::size_t const firstTag = plain.find(std::string("\x10\0\x10\0PN", 6));
    for (int const depth : {20, 100'000}) {
        std::string nested;
        std::string closed;
        for (int i = 0; i < depth; ++i) {
            nested += sequence;
            closed += ends;
        }
        folder.Write("a.dcm", plain.substr(0, firstTag) + nested + closed + plain.substr(firstTag));
        CImageDocument image;
        EXPECT_EQ(ReadHeader("a.dcm", image), depth == 20);
        EXPECT_EQ(Read("a.dcm", image), depth == 20);
    }
}

/// Cut anywhere, or with a byte of the highest value: an answer, and no picture out of a part of one. Some hundred
/// places of each file, since sanitizers take seconds for all.
TEST_F(BitmapHeads, SurviveBrokenBytes) {
    CImageDocument image;
    AddNoise(image, 8, 8, u"RGB", PixelType::UInt8);
    ASSERT_TRUE(Write("a.heic", image));
    AddNoise(image, 8, 8, u"RGB", PixelType::UInt8);
    ASSERT_TRUE(Write("a.gif", image));
    folder.Write("a.dcm", Dicom{}.Make());
    folder.Write("a.tif", Tiff{}.Make());
    for (std::string const name : {"a.heic", "a.gif", "a.dcm", "a.tif"}) {
        std::string const whole = folder.Read(name);
        auto const read = [&] {
            auto const io = Open(name);
            io->limits.maxPixels = 100'000;
            io->ReadHeader(image);
            return io->Read(image);
        };
        // In place: a file that is written anew is flushed by some systems.
        std::fstream file(folder.Native() + name, std::ios::binary | std::ios::in | std::ios::out);
        std::size_t const step = whole.size() / 150 + 1;
        for (std::size_t i = 0; i < whole.size(); i += step) {
            file.seekp(static_cast<std::streamoff>(i)).put('\xFF').flush();
            read();
            file.seekp(static_cast<std::streamoff>(i)).put(whole[i]).flush();
        }
        EXPECT_TRUE(read()) << name;
        for (std::size_t size = whole.size(); size > step; size -= step) {
            std::filesystem::resize_file(folder.Native() + name, size - 1);
            EXPECT_FALSE(read()) << name << ' ' << size - 1;
        }
    }
}

TEST_F(BitmapHeads, OfTiffTellOfPixelsBehindTheEnd) {
    for (int row = 0; row < 4; ++row) {
        Tiff file{.isBig = (row & 1) != 0, .isLong = (row & 2) != 0};
        CImageDocument read;
        folder.Write("a.tif", file.Make());
        ASSERT_TRUE(Read("a.tif", read)) << row;
        EXPECT_EQ(std::to_integer<int>(read.GetSubImage(0).GetRow(0)[1]), 2);
        file.behind = 1;
        folder.Write("a.tif", file.Make());
        auto const io = Open("a.tif");
        EXPECT_TRUE(io->ReadHeader(read)) << row;
        EXPECT_FALSE(io->Read(read)) << row;
        auto const size = file.Make().size();
        EXPECT_EQ(Narrow(io->GetIoErrorTxt()), "a.tif: pixels end at byte " + std::to_string(size + 1) +
                                                   ", and the file at " + std::to_string(size) + ".");
    }
}

/// What a document has no type for becomes the nearest one, and the metadata tell what it was.
TEST_F(BitmapHeads, NameTheTypeThatADocumentDoesNotHave) {
    auto const third = std::bit_cast<std::uint64_t>(-1.0 / 3);
    struct Row {
        Tiff file;
        float pixel; ///< Each of them.
        char const* storedType;
    } const rows[] = {
        {{.bits = 8, .kind = 2, .values = {0x81, 0x81}}, -1, "int8"},
        {{.bits = 16, .kind = 2, .values = {0x8001, 0x8001}}, -1, "int16"},
        {{.bits = 32, .kind = 2, .values = {0x40000001, 0x40000001}}, 0.5F, "int"},
        // A row more than a piece has, since the library reads none of a strip's rows alone.
        {{.bits = 64, .kind = 3, .values = std::vector(257, third), .height = 257}, -1.0F / 3, "double"},
    };
    CImageDocument read;
    for (Row const& row : rows) {
        folder.Write("a.tif", row.file.Make());
        ASSERT_TRUE(Read("a.tif", read)) << row.storedType;
        CSubImage const& subImage = read.GetSubImage(0);
        ASSERT_EQ(subImage.pixelType, PixelType::Float);
        auto const* const pixels = reinterpret_cast<float const*>(subImage.GetRow(0));
        EXPECT_EQ(std::count(pixels, pixels + row.file.values.size(), row.pixel), std::ssize(row.file.values))
            << row.storedType << ' ' << pixels[0];
        EXPECT_EQ(Narrow(subImage.metadata.GetText(u"image:storedType")), row.storedType);
    }
    folder.Write("a.tif", Tiff{.bits = 64, .kind = 3, .values = {third, third}}.Make());
    EXPECT_FALSE(Read("a.tif", read)); // not zeros
}

TEST_F(BitmapHeads, OfSgiAreTheSameEachTime) {
    CImageDocument image;
    AddNoise(image, 8, 8, u"RGB", PixelType::UInt8);
    ASSERT_TRUE(Write("a.sgi", image));
    std::string const name = folder.Read("a.sgi").substr(24, 80);
    EXPECT_EQ(name, std::string(80, '\0')); // and not what lay in memory
}

} // namespace
