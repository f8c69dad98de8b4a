// SPDX-License-Identifier: MIT
// Portable greymaps: "P5", width, height and largest value as text, one blank, then a byte for each pixel.
#include <zeltools/zeltools.h>

#include <cstdio>
#include <media/bitmap_parser.h>
#include <media/media_io.h>

class GreymapParser final : public CBitmapParser {
public:
    using CBitmapParser::CBitmapParser;

    bool ReadHeader(CImageDocument& image, MediaLimits const& limits, CIoOptions*) override {
        if (!file.OpenFile(GetIoMgr()->GetCompleteName(), true, nullptr)) {
            return Fail(IoCannotOpen);
        }
        unsigned int size[2] = {};
        unsigned int largest = 0;
        int const found = std::fscanf(file.GetFileStream(), "P5 %9u %9u %3u%*c", &size[0], &size[1], &largest);
        if (found != 3 || size[0] == 0 || size[1] == 0 || largest != 255) {
            return Fail(IoBadFormat);
        }
        if (unsigned long long const pixels = 1ULL * size[0] * size[1]; pixels > limits.maxPixels) {
            return FailBeyondLimit(MediaLimit::Pixels, pixels, limits.maxPixels);
        } else if (pixels > file.FileGetLength()) {
            return Fail(IoBadFormat); // cut short, or lying
        }
        image.format = u"pgm";
        CSubImage& page = image.AddSubImage();
        page.width = size[0];
        page.height = size[1];
        page.channels.Add(u"Y");
        return true;
    }

    bool Read(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) override {
        if (!ReadHeader(image, limits, options)) {
            return false;
        }
        CSubImage& page = image.GetSubImage(0);
        if (page.GetByteCount() > limits.maxImageBytes) {
            return FailBeyondLimit(MediaLimit::ImageBytes, page.GetByteCount(), limits.maxImageBytes);
        }
        if (!page.AllocatePixels(limits.maxImageBytes)) {
            return Fail(IoNoMemory);
        }
        for (unsigned int row = 0; row < page.height; ++row) {
            if (ShouldCancelParser()) {
                return Fail(IoCanceled);
            }
            if (!file.FileRead(page.GetRow(row), page.width)) {
                return Fail(IoBadFormat);
            }
        }
        return true;
    }

    bool Write(CImageDocument const&, CIoOptions*) override { return Fail(IoCannotSaveSo); }

private:
    IoFile file;
};

extern "C" unsigned int QuenbyGetPluginVersion() {
    return PluginRelease;
}

extern "C" bool InitBitmapParser(IoPluginMode mode, void* data) {
    if (mode == IoPluginEnumerate) {
        auto& types = *static_cast<CXArray<CFileExt>*>(data);
        types.Add(CFileExt(u"Portable greymaps", u".pgm", FourCC("PGM "), FilePropertyLoad | FileKindBitmap,
                           FileIdPlugin, FileIdUnknown, nullptr));
        return true;
    }
    if (mode == IoPluginCreateParser) {
        auto& request = *static_cast<IoPluginParserInfo*>(data);
        auto* const manager = dynamic_cast<CMediaIo*>(request.io); // null for a manager that knows no images
        request.parser = manager ? new GreymapParser(manager) : nullptr;
        return manager != nullptr;
    }
    return true; // IoPluginRelease: nothing to give back
}
