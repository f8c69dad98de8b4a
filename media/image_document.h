// SPDX-License-Identifier: MIT
// An image in memory: one or several subimages (layers, pages, cube faces), each with any channels, and what is known
// beside the pixels. A header that was read without its pixels is an image whose subimages have none.
//
//     CImageDocument image;
//     CSubImage& page = image.AddSubImage();
//     page.width = 640;
//     page.height = 480;
//     page.channels.Add(u"Y");
//     if (page.AllocatePixels(limits.maxImageBytes))
//         page.GetRow(0)[0] = std::byte{255};
//
// Threads: one at a time.

#pragma once

#include "media/media_api.h"
#include "media/metadata.h"
#include <zeltools/foundation/xarray.h>
#include <zeltools/foundation/xstring.h>

#include <cstddef>
#include <memory>
#include <vector>

/// What one channel of one pixel is stored as.
enum class PixelType {
    UInt8,
    UInt16,
    UInt32,
    Half, ///< IEEE 754 binary16.
    Float,
};

/// Bytes of one channel of one pixel.
ZEL_MEDIA_API unsigned int GetPixelTypeSize(PixelType type);

/// "uint8", "uint16", "uint32", "half", "float".
ZEL_MEDIA_API char const* GetPixelTypeName(PixelType type);

/// One picture of an image.
struct ZEL_MEDIA_API CSubImage {
    CXTString<char16_t> name;              ///< May be empty.
    unsigned int width = 0;                ///< Pixels.
    unsigned int height = 0;               ///< Pixels.
    unsigned int depth = 1;                ///< Slices of a volume.
    CXArray<CXTString<char16_t>> channels; ///< Their names: "R", "G", "B", "A", "Z", ...
    PixelType pixelType = PixelType::UInt8;
    CXTString<char16_t> colorSpace; ///< "sRGB", "Linear", ...; empty when it is not known.
    CMetadata metadata;

    /// Bytes of all pixels; all ones when that is more than 64 bits hold.
    unsigned long long GetByteCount() const;
    /// Bytes of one row.
    unsigned long long GetRowSize() const;

    /// Makes room for the pixels, whose content is not set.
    /// @return false when they take more than `maxBytes`, or when there is no memory; then there are none.
    [[nodiscard]] bool AllocatePixels(unsigned long long maxBytes);
    bool HasPixels() const { return pixels != nullptr; }
    /// A row from the top, slice after slice: pixel by pixel, in each the channels in their order, in the machine's
    /// byte order. To be asked of an image with pixels only.
    std::byte* GetRow(unsigned long long row) { return pixels.get() + row * GetRowSize(); }
    std::byte const* GetRow(unsigned long long row) const { return pixels.get() + row * GetRowSize(); }

private:
    std::unique_ptr<std::byte[]> pixels;
};

/// An image. A document that a parser failed to fill is empty.
class ZEL_MEDIA_API CImageDocument {
public:
    CXTString<char16_t> format; ///< The parser's word for the file format: "png", "openexr".

    CSubImage& AddSubImage() { return subImages.emplace_back(); }
    std::size_t GetSubImageCount() const { return subImages.size(); }
    CSubImage& GetSubImage(std::size_t index) { return subImages[index]; }
    CSubImage const& GetSubImage(std::size_t index) const { return subImages[index]; }

    /// Makes it empty again.
    void Clear();

private:
    std::vector<CSubImage> subImages;
};
