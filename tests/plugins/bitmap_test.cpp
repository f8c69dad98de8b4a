// SPDX-License-Identifier: MIT
// The plug-in for images against real files: those that it writes itself, read back bit for bit, and what oiiotool, the
// library's own tool, says of the library.
#include "media/named_options.h"
#include "tests/plugins/bitmap_fixture.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

using Text = CXTString<char16_t>;
using Clock = std::chrono::steady_clock;

bool IsInMemory(std::string const& library) {
    std::ifstream maps("/proc/self/maps");
    return std::string(std::istreambuf_iterator<char>(maps), {}).find(library) != std::string::npos;
}

/// The formats after a title of oiiotool's help: "Input formats supported: bmp, cineon, ...".
std::set<std::string> ListedFormats(std::string const& title) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const pipe(popen("oiiotool --help 2>/dev/null", "r"), pclose);
    std::set<std::string> formats;
    std::vector<char> line(65536);
    while (pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get())) {
        std::string const text = line.data();
        if (text.starts_with(title)) {
            std::string list = text.substr(title.size());
            for (char* word = std::strtok(list.data(), ", \n"); word; word = std::strtok(nullptr, ", \n")) {
                formats.insert(word);
            }
        }
    }
    formats.erase("null"); // makes its pixels up
    formats.erase("term"); // prints them
    return formats;
}

TEST_F(BitmapPlugin, OffersWhatTheLibraryHasWithoutOpeningIt) {
    bool const wasInMemory = IsInMemory("libOpenImageIO"); // by another test of this process
    struct Format {
        std::string name;
        char16_t const* extension;
    } const formats[] = {
        {"bmp", u".bmp"},     {"cineon", u".cin"},  {"dds", u".dds"},       {"dicom", u".dcm"}, {"dpx", u".dpx"},
        {"ffmpeg", u".mov"},  {"fits", u".fits"},   {"gif", u".gif"},       {"hdr", u".hdr"},   {"heif", u".heic"},
        {"ico", u".ico"},     {"iff", u".iff"},     {"jpeg", u".jpe"},      {"png", u".png"},   {"jpeg2000", u".jp2"},
        {"openexr", u".exr"}, {"pnm", u".pgm"},     {"openvdb", u".vdb"},   {"psd", u".psb"},   {"raw", u".nef"},
        {"rla", u".rla"},     {"sgi", u".bw"},      {"softimage", u".pic"}, {"targa", u".tga"}, {"tiff", u".tx"},
        {"webp", u".webp"},   {"zfile", u".zfile"},
    };
    std::set<std::string> const readable = ListedFormats("Input formats supported: ");
    std::set<std::string> const writable = ListedFormats("Output formats supported: ");
    ASSERT_FALSE(readable.empty());
    std::set<std::string> known;
    for (Format const& format : formats) {
        CFileExt type;
        if (readable.contains(format.name)) {
            known.insert(format.name);
            ASSERT_TRUE(fileGetFileExt(format.extension, type)) << format.name;
            EXPECT_EQ(type.GetLoader(), FileIdPlugin) << format.name;
            EXPECT_EQ(type.GetSaver() == FileIdPlugin, writable.contains(format.name)) << format.name;
            EXPECT_NE(type.GetKindOf() & FileKindBitmap, 0u) << format.name;
        }
    }
    EXPECT_EQ(known, readable);
    // A class that was built in stays the only one of its extension, and a film stays a film.
    EXPECT_EQ(fileGetClass(u"a.bmp"), FourCC("BMP "));
    EXPECT_EQ(fileGetClass(u"a.qt"), FourCC("MOV "));
    EXPECT_EQ(fileGetKindOf(FourCC("MOV ")), FileKindBitmap | FileKindVideo);
    EXPECT_NE(fileGetClass(u"a.zfile"), FourCC("ZFIL"));
    EXPECT_EQ(IsInMemory("libOpenImageIO"), wasInMemory);
}

TEST_F(BitmapPlugin, TellsWhyItsBackendCannotBeOpened) {
    std::filesystem::create_directories(folder.Native() + "plugins/backends");
    std::filesystem::copy_file(ZELTOOLS_BUILT_PLUGINS "/bitmap.so", folder.Native() + "plugins/bitmap.so");
    Use(folder.Native() + "plugins/");
    CImageDocument image;
    auto const io = Open("a.png");
    EXPECT_FALSE(io->ReadHeader(image));
    EXPECT_NE(Narrow(io->GetIoErrorTxt()).find("bitmap_backend.so: cannot open shared object file"), std::string::npos);
}

/// What each format keeps whole. The sizes are odd, so that nothing lines up; icons and their like want 8.
TEST_F(BitmapPlugin, WritesAndReadsBitForBit) {
    using enum PixelType;
    struct Kept {
        char const* extension;
        std::u16string channels;
        PixelType type;
        unsigned int subImages = 1;
        bool unassociated = true; ///< Whether the format keeps colour as it is beside alpha.
    } const rows[] = {
        {"bmp", u"RGB", UInt8},
        {"dpx", u"RGB", UInt8},
        {"dpx", u"RGBA", UInt16, 1, false},
        {"exr", u"RGBAZ", Float, 1, false},
        {"exr", u"YZ", UInt32},
        {"exr", u"RGB", Half, 3},
        {"fits", u"Y", Float},
        {"ico", u"RGBA", UInt8},
        {"iff", u"RGB", UInt8},
        {"jp2", u"RGB", UInt8},
        {"j2k", u"Y", UInt16},
        {"jp2", u"RGBA", UInt8},
        {"pgm", u"Y", UInt8},
        {"png", u"RGBA", UInt8},
        {"png", u"RGB", UInt16},
        {"ppm", u"RGB", UInt8},
        {"rla", u"RGB", Float},
        {"sgi", u"RGBA", UInt8, 1, false},
        {"sgi", u"RGB", UInt16},
        {"tga", u"RGBA", UInt8},
        {"tif", u"RGBA", UInt8, 2},
        {"tif", u"RGBAZ", UInt16},
        {"tif", u"RGB", UInt32},
        {"tif", u"RGBA", Float},
        {"zfile", u"Z", Float},
        {"tx", u"RGB", Float},
    };
    int number = 0;
    for (Kept const& row : rows) {
        CImageDocument written;
        for (unsigned int i = 0; i < row.subImages; ++i) {
            CSubImage& subImage = AddNoise(written, 40 + 8 * i, 37, row.channels, row.type);
            subImage.metadata.SetInteger(u"oiio:UnassociatedAlpha", row.unassociated);
        }
        std::string const name = std::to_string(++number) + '.' + row.extension;
        SCOPED_TRACE(name + ' ' + GetPixelTypeName(row.type));
        CImageDocument header;
        CImageDocument read;
        ASSERT_TRUE(Write(name, written));
        ASSERT_TRUE(ReadHeader(name, header));
        ASSERT_TRUE(Read(name, read));
        ASSERT_EQ(header.GetSubImageCount(), row.subImages);
        ASSERT_EQ(read.GetSubImageCount(), row.subImages);
        for (unsigned int i = 0; i < row.subImages; ++i) {
            CSubImage const& before = written.GetSubImage(i);
            CSubImage const& told = header.GetSubImage(i);
            EXPECT_FALSE(told.HasPixels());
            EXPECT_EQ(told.width, before.width);
            EXPECT_EQ(told.height, before.height);
            EXPECT_EQ(told.pixelType, before.pixelType);
            EXPECT_EQ(told.channels.GetSize(), before.channels.GetSize());
            EXPECT_TRUE(HasSamePixels(read.GetSubImage(i), before));
        }
    }
}

TEST_F(BitmapPlugin, KeepsWhatIsBesideThePixels) {
    CImageDocument image;
    CSubImage& subImage = AddNoise(image, 16, 16, u"RGB", PixelType::UInt8);
    subImage.metadata.SetText(u"Make", u"C\u00E2mera %s");
    subImage.metadata.SetNumber(u"Exif:FocalLength", 2.8);
    subImage.metadata.SetInteger(u"Orientation", 6);
    subImage.metadata.SetBinary(u"ICCProfile", "profile of 24 bytes here", 24);
    subImage.metadata.SetText(u"png:of_another_format", u"x");
    for (char const* const name : {"a.jpg", "a.tif"}) {
        CImageDocument read;
        ASSERT_TRUE(Write(name, image));
        ASSERT_TRUE(ReadHeader(name, read));
        CMetadata const& metadata = read.GetSubImage(0).metadata;
        EXPECT_EQ(Narrow(metadata.GetText(u"Make")), "C\u00E2mera %s") << name;
        EXPECT_EQ(Narrow(metadata.GetText(u"Exif:FocalLength")), "2.8") << name;
        EXPECT_EQ(Narrow(metadata.GetText(u"Orientation")), "6") << name;
        EXPECT_EQ(Narrow(metadata.GetText(u"ICCProfile")), "[24 bytes]") << name;
        EXPECT_FALSE(metadata.HasName(u"png:of_another_format")) << name;
    }
    // The picture's place in a larger one.
    subImage.metadata.SetInteger(u"image:x", -3);
    subImage.metadata.SetInteger(u"image:fullWidth", 50);
    CImageDocument read;
    ASSERT_TRUE(Write("a.exr", image));
    ASSERT_TRUE(Read("a.exr", read));
    EXPECT_EQ(Narrow(read.GetSubImage(0).metadata.GetText(u"image:x")), "-3");
    EXPECT_EQ(Narrow(read.GetSubImage(0).metadata.GetText(u"image:fullWidth")), "50");
}

TEST_F(BitmapPlugin, TakesOptionsByName) {
    CImageDocument image;
    AddNoise(image, 64, 64, u"RGB", PixelType::Float);
    AddNoise(image, 32, 64, u"RGB", PixelType::Float);
    auto const write = [&](std::string const& name, std::vector<std::pair<Text, Text>> const& values) {
        CIoOptions options(false);
        for (auto const& [option, value] : values) {
            SetNamedOption(options.GetParserOptions(), option, value);
        }
        EXPECT_TRUE(Write(name, image, &options));
        CImageDocument read;
        EXPECT_TRUE(Read(name, read));
        return read;
    };
    CImageDocument const tiled = write("a.exr", {{u"type", u"half"}, {u"compression", u"none"}, {u"tile", u"32"}});
    EXPECT_EQ(tiled.GetSubImage(0).pixelType, PixelType::Half);
    EXPECT_EQ(Narrow(tiled.GetSubImage(1).metadata.GetText(u"compression")), "none");
    CImageDocument const one = write("a.png", {{u"subimage", u"1"}, {u"type", u"uint16"}, {u"unheard of", u"1"}});
    EXPECT_EQ(one.GetSubImage(0).width, 32u);
    EXPECT_EQ(one.GetSubImage(0).pixelType, PixelType::UInt16);
    image.Clear();
    AddNoise(image, 64, 64, u"RGB", PixelType::UInt8);
    write("bad.jpg", {{u"quality", u"5"}});
    write("good.jpg", {{u"quality", u"95"}});
    EXPECT_LT(folder.Read("bad.jpg").size() * 2, folder.Read("good.jpg").size());
    AddNoise(image, 64, 64, u"RGB", PixelType::UInt8);
    EXPECT_FALSE(Write("two.jpg", image)); // not the first of two, silently
    EXPECT_FALSE(Write("none.png", CImageDocument()));
}

TEST_F(BitmapPlugin, RefusesWhatIsBeyondTheLimits) {
    CImageDocument image;
    AddNoise(image, 100, 30, u"RGB", PixelType::UInt16);
    AddNoise(image, 100, 30, u"RGB", PixelType::UInt16);
    ASSERT_TRUE(Write("a.tif", image));
    std::pair<MediaLimits, std::string> const rows[] = {
        {{.maxImageBytes = 17'999}, "a.tif: 18000 bytes of pixels, where 17999 are allowed."},
        {{.maxSubImages = 1}, "a.tif: 2 subimages, where 1 are allowed."},
        {{.maxPixels = 3000, .maxImageBytes = 18'000, .maxSubImages = 2}, ""},
    };
    for (auto const& [limits, error] : rows) {
        auto const io = Open("a.tif");
        io->limits = limits;
        CImageDocument read;
        EXPECT_EQ(io->ReadHeader(read), error.empty());
        EXPECT_EQ(read.GetSubImageCount(), error.empty() ? 2u : 0u);
        if (!error.empty()) {
            EXPECT_EQ(Narrow(io->GetIoErrorTxt()), error);
        }
    }
}

TEST_F(BitmapPlugin, TellsWhatCannotBeRead) {
    CImageDocument image;
    AddNoise(image, 64, 64, u"RGB", PixelType::UInt8);
    ASSERT_TRUE(Write("a.png", image));
    folder.Write("empty.png");
    std::filesystem::create_directory(folder.Native() + "folder.png");
    ASSERT_EQ(mkfifo((folder.Native() + "pipe.png").c_str(), 0600), 0); // nobody ever answers
    std::filesystem::copy_file(folder.Native() + "a.png", folder.Native() + "a.jpg");
    std::filesystem::copy_file(folder.Native() + "a.png", folder.Native() + "\xFF%s?\\.png");
    std::pair<char const*, int> const rows[] = {
        {"absent.png", IoCannotOpen}, {"empty.png", IoEmptyFile}, {"folder.png", IoCannotOpen},
        {"pipe.png", IoCannotOpen},   {"a.jpg", IoOwnText},       {"\xFF%s?\\.png", IoSuccess},
    };
    for (auto const& [name, code] : rows) {
        auto const io = Open(name);
        CImageDocument read;
        EXPECT_EQ(io->Read(read), code == IoSuccess) << name;
        EXPECT_EQ(io->GetIoError(), code) << name << ' ' << Narrow(io->GetIoErrorTxt());
    }
}

/// A file that ends too early is never taken for a whole one, takes nothing down, and no format prints on its own.
TEST_F(BitmapPlugin, NoticesThatAFileIsCut) {
    CImageDocument image;
    AddNoise(image, 64, 48, u"RGB", PixelType::UInt8);
    testing::internal::CaptureStderr();
    for (char const* const extension :
         {"bmp", "dpx", "exr", "ico", "iff", "jp2", "jpg", "png", "ppm", "rla", "sgi", "tga", "tif", "webp", "gif"}) {
        std::string const name = std::string("a.") + extension;
        ASSERT_TRUE(Write(name, image)) << extension;
        std::string const whole = folder.Read(name);
        for (std::size_t part = 1; part < 22; ++part) {
            std::string const cut = "cut" + std::to_string(part) + '.' + extension;
            folder.Write(cut, whole.substr(0, whole.size() * part / 24));
            CImageDocument read;
            EXPECT_FALSE(Read(cut, read)) << cut;
            EXPECT_EQ(read.GetSubImageCount(), 0u);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

/// Where the disk takes no more, the old file stays and nothing is left beside it, whatever the format.
TEST_F(BitmapPlugin, AFailedSaveLeavesTheOldFile) {
    CImageDocument image;
    AddNoise(image, 256, 256, u"RGB", PixelType::UInt8);
    std::signal(SIGXFSZ, SIG_IGN); // a write beyond the limit fails instead
    for (char const* const extension : {"bmp", "dpx", "exr", "fits", "gif", "hdr", "heic", "ico", "iff", "jp2", "jpg",
                                        "png", "ppm", "rla", "sgi", "tga", "tif", "webp"}) {
        std::string const name = std::string("a.") + extension;
        folder.Write(name, "old");
        ASSERT_TRUE(Write("whole_" + name, image)) << name;
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit const half{.rlim_cur = folder.Read("whole_" + name).size() / 2, .rlim_max = before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &half);
        bool const written = Open(name, 0)->Write(image);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_FALSE(written) << name;
        EXPECT_EQ(folder.Read(name), "old");
        std::filesystem::remove(folder.Native() + name);
        std::filesystem::remove(folder.Native() + "whole_" + name);
        EXPECT_EQ(Files(), std::set<std::string>()) << name;
    }
}

/// Asked from another thread in the middle of it, loading and saving end within the tenth of a second.
TEST_F(BitmapPlugin, StopsWhenItIsAsked) {
    CImageDocument image;
    AddNoise(image, 4000, 3000, u"RGB", PixelType::UInt16);
    CIoOptions quick(false);
    SetNamedOption(quick.GetParserOptions(), u"png:compressionLevel", u"1");
    ASSERT_TRUE(Write("a.png", image, &quick));
    auto const stop = [](CBitmapIo& io, auto const& work) {
        std::atomic<bool> ended = false;
        Clock::time_point asked;
        std::thread asker([&] {
            // The first work is done; taking the parser up clears the flag, so it is asked again.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            for (asked = Clock::now(); !ended;) {
                io.SetFlag(IoFlagCancel, true);
                std::this_thread::yield();
            }
        });
        bool const done = work();
        Clock::time_point const end = Clock::now();
        ended = true;
        asker.join();
        EXPECT_FALSE(done);
        EXPECT_EQ(io.GetIoError(), IoCanceled);
        return std::chrono::duration_cast<std::chrono::milliseconds>(end - asked).count();
    };
    long long read = 1000;
    long long written = 1000;
    for (int attempt = 0; attempt < 5 && (read > 100 || written > 100); ++attempt) { // other programs run too
        CImageDocument document;
        auto const reader = Open("a.png");
        auto const writer = Open("b.png", 0);
        read = std::min<long long>(read, stop(*reader, [&] { return reader->Read(document); }));
        written = std::min<long long>(written, stop(*writer, [&] { return writer->Write(image); }));
    }
    EXPECT_LE(read, 100);
    EXPECT_LE(written, 100);
    EXPECT_EQ(Files(), std::set<std::string>{"a.png"});
}

} // namespace
