// SPDX-License-Identifier: MIT
// Reads DICOM through DCMTK, as OpenImageIO does, but so that describing a picture decodes nothing, all frames are
// read, and the pixel type follows from the file's tags. OpenImageIO's own reader takes the type from the values that
// happen to occur, and then rendered 16-bit pixels for signed ones, which garbles tomographies.
//
// Pixels are as they are shown: grey from black to white over the range that the tags allow, after the file's scale and
// offset; colours as RGB.

#pragma once

#include <OpenImageIO/imageio.h>
#include <memory>

/// The picture whose head this is decodes at its first line.
std::unique_ptr<OIIO::ImageInput> MakeDicomInput();
