// SPDX-License-Identifier: MIT
// Reads HEIF (HEIC, AVIF) through libheif, as OpenImageIO does, but so that describing a picture decodes nothing, and
// a picture that is decoded to another size than the file tells is refused: OpenImageIO reads beyond it.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <OpenImageIO/imageio.h>
#include <memory>

/// Opens what is in `file`, which outlives it, whatever name is asked for.
std::unique_ptr<OIIO::ImageInput> MakeHeifInput(PolledFile& file);
