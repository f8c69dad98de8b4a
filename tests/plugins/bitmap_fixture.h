// SPDX-License-Identifier: MIT
// The plug-in for images, out of the build tree, with a temporary folder to write into and read from.

#pragma once

#include "media/bitmap_io.h"
#include "tests/support/temporary_folder.h"
#include <zeltools/zeltools.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <set>
#include <string>

inline std::string Narrow(CXTString<char16_t> const& text) {
    return fileGetNativeName(text).GetConstBuffer();
}

/// Pixels that any format with room for them keeps: noise, but no value that is none.
inline CSubImage& AddNoise(CImageDocument& image, unsigned int width, unsigned int height,
                           std::u16string const& channels, PixelType type) {
    CSubImage& subImage = image.AddSubImage();
    subImage.width = width;
    subImage.height = height;
    subImage.pixelType = type;
    for (char16_t const channel : channels) {
        subImage.channels.Add(CXTString<char16_t>(&channel, 1));
    }
    subImage.metadata.SetInteger(u"oiio:UnassociatedAlpha", 1);
    EXPECT_TRUE(subImage.AllocatePixels(~0ULL));
    std::mt19937 random(width);
    auto* const bytes = reinterpret_cast<unsigned char*>(subImage.GetRow(0));
    for (unsigned long long i = 0; i < subImage.GetByteCount(); ++i) {
        bytes[i] = static_cast<unsigned char>(random());
    }
    // The upper byte of a half or a float, without infinities.
    unsigned int const size = GetPixelTypeSize(type);
    if (type == PixelType::Half || type == PixelType::Float) {
        for (unsigned long long i = size - 1; i < subImage.GetByteCount(); i += size) {
            bytes[i] = 0x38;
        }
    }
    return subImage;
}

inline bool HasSamePixels(CSubImage const& a, CSubImage const& b) {
    return a.GetByteCount() == b.GetByteCount() && std::memcmp(a.GetRow(0), b.GetRow(0), a.GetByteCount()) == 0;
}

class BitmapPlugin : public testing::Test {
protected:
    BitmapPlugin() {
        InitZelTools(0);
        Use(ZELTOOLS_BUILT_PLUGINS "/");
    }
    ~BitmapPlugin() override {
        CRegisteredFile::Free();
        CloseZelTools(0);
    }

    static void Use(std::string const& plugins) {
        CRegisteredFile::Free();
        SetPluginsDirectory(fileFromNativeName(plugins.c_str()), false);
        RegisterIOPlugins(FileKindBitmap, u"");
    }
    std::unique_ptr<CBitmapIo> Open(std::string const& name, unsigned int flags = IoFlagLoading) const {
        CFileNameSpec const spec(CXTString<char16_t>(folder.Path(name).c_str()));
        return std::make_unique<CBitmapIo>(spec, flags | IoFlagSilent, nullptr);
    }
    testing::AssertionResult Write(std::string const& name, CImageDocument const& image,
                                   CIoOptions* options = nullptr) {
        auto const io = Open(name, 0);
        return io->Write(image, options) ? testing::AssertionSuccess()
                                         : testing::AssertionFailure() << Narrow(io->GetIoErrorTxt());
    }
    testing::AssertionResult Read(std::string const& name, CImageDocument& image) {
        auto const io = Open(name);
        return io->Read(image) ? testing::AssertionSuccess()
                               : testing::AssertionFailure() << Narrow(io->GetIoErrorTxt());
    }
    testing::AssertionResult ReadHeader(std::string const& name, CImageDocument& image) {
        auto const io = Open(name);
        return io->ReadHeader(image) ? testing::AssertionSuccess()
                                     : testing::AssertionFailure() << Narrow(io->GetIoErrorTxt());
    }
    std::set<std::string> Files() const {
        std::set<std::string> names;
        for (auto const& entry : std::filesystem::directory_iterator(folder.Native())) {
            names.insert(entry.path().filename());
        }
        return names;
    }

    TemporaryFolder folder;
};
