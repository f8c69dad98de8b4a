// SPDX-License-Identifier: MIT
// What a file says of its pictures, for formats whose reader in OpenImageIO decodes a picture before it tells of it:
// seconds for a large one, and too late for a limit.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <OpenImageIO/imageio.h>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct ImageHead {
    std::vector<OIIO::ImageSpec> subImages; ///< As OpenImageIO would describe them. None where the file is damaged.
    bool isCutShort = false;                ///< It ends before its pixels do.
};

/// @param mostSubImages  A file may hold more: these are enough to see it.
/// @return nothing where OpenImageIO has to be asked.
std::optional<ImageHead> ReadImageHead(std::string const& format, PolledFile& file, std::size_t mostSubImages);
