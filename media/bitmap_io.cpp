// SPDX-License-Identifier: MIT
#include "media/bitmap_io.h"

#include "media/bitmap_parser.h"

CBitmapParser::~CBitmapParser() = default;

bool CBitmapIo::ReadHeader(CImageDocument& image, CIoOptions* options) {
    return FillDocument<CBitmapParser>(
        options, image, [&](CBitmapParser& parser) { return parser.ReadHeader(image, limits, options); });
}

bool CBitmapIo::Read(CImageDocument& image, CIoOptions* options) {
    return FillDocument<CBitmapParser>(options, image,
                                       [&](CBitmapParser& parser) { return parser.Read(image, limits, options); });
}

bool CBitmapIo::Write(CImageDocument const& image, CIoOptions* options) {
    return TryParsers(options, [&](CFileParser& base) {
        auto* const parser = dynamic_cast<CBitmapParser*>(&base);
        return parser && parser->Write(image, options);
    });
}

void CBitmapIo::Register() {
    RegisterFileIoCreationCallback(FileKindBitmap,
                                   [](CFileNameSpec const& name, unsigned int flags, CWnd* parent) -> CFileIo* {
                                       return new CBitmapIo(name, flags, parent);
                                   });
}
