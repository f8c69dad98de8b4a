// SPDX-License-Identifier: MIT
// The head of a JPEG 2000 file, which OpenImageIO cannot read without decoding the picture: seconds for a large one.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <OpenImageIO/imageio.h>

/// Describes the picture as OpenImageIO would.
/// @return false for what is no such file, and where a palette, channels of several sizes or of other meaning make the
///         picture something else than its codestream tells.
bool ReadJpeg2000Header(PolledFile& file, OIIO::ImageSpec& spec);
