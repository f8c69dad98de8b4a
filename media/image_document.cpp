// SPDX-License-Identifier: MIT
#include "media/image_document.h"

#include <new>

namespace {

/// The product, all ones when it does not fit.
unsigned long long Multiply(unsigned long long a, unsigned long long b) {
    unsigned long long product = 0;
    return __builtin_mul_overflow(a, b, &product) ? ~0ULL : product;
}

} // namespace

unsigned int GetPixelTypeSize(PixelType type) {
    switch (type) {
    case PixelType::UInt8: return 1;
    case PixelType::UInt16:
    case PixelType::Half: return 2;
    case PixelType::UInt32:
    case PixelType::Float: break;
    }
    return 4;
}

char const* GetPixelTypeName(PixelType type) {
    switch (type) {
    case PixelType::UInt8: return "uint8";
    case PixelType::UInt16: return "uint16";
    case PixelType::UInt32: return "uint32";
    case PixelType::Half: return "half";
    case PixelType::Float: break;
    }
    return "float";
}

unsigned long long CSubImage::GetRowSize() const {
    return Multiply(width, static_cast<unsigned int>(channels.GetSize()) * GetPixelTypeSize(pixelType));
}

unsigned long long CSubImage::GetByteCount() const {
    return Multiply(GetRowSize(), Multiply(height, depth));
}

bool CSubImage::AllocatePixels(unsigned long long maxBytes) {
    unsigned long long const bytes = GetByteCount();
    pixels.reset(bytes <= maxBytes ? new (std::nothrow) std::byte[bytes] : nullptr);
    return pixels != nullptr;
}

void CImageDocument::Clear() {
    format = CXTString<char16_t>();
    subImages.clear();
}
