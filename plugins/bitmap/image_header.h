// SPDX-License-Identifier: MIT
// What an image is, between a subimage of the document and OpenImageIO's description.

#pragma once

#include "media/image_document.h"

#include <OpenImageIO/imageio.h>

/// The document's type for pixels of a file: the same one, else the nearest that loses nothing, else float.
PixelType PixelTypeOf(OIIO::ImageSpec const& spec);

OIIO::TypeDesc TypeDescOf(PixelType type);

/// The number of pixels; all ones when 64 bits do not hold it.
unsigned long long CountPixels(OIIO::ImageSpec const& spec);

/// Sets all of a subimage but its pixels.
void DescribeSubImage(OIIO::ImageSpec const& spec, CSubImage& subImage);

/// The description of a subimage for a file of a format.
/// @param sameFormat  The document came from a file of this format, so that what only this format has counts too.
OIIO::ImageSpec MakeSpec(CSubImage const& subImage, bool sameFormat);
