// SPDX-License-Identifier: MIT
#include "plugins/bitmap/image_head.h"

#include "plugins/bitmap/gif_head.h"
#include "plugins/bitmap/jpeg2000_header.h"

std::optional<ImageHead> ReadImageHead(std::string const& format, PolledFile& file, std::size_t mostSubImages) {
    if (format == "gif") {
        return ReadGifHead(file, mostSubImages);
    }
    OIIO::ImageSpec spec;
    if (format == "jpeg2000" && ReadJpeg2000Header(file, spec)) {
        return ImageHead{.subImages = {spec}, .isCutShort = false};
    }
    return std::nullopt;
}
