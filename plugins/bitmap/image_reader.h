// SPDX-License-Identifier: MIT
// Reads one file into a document.

#pragma once

#include "media/image_document.h"
#include "media/media_limits.h"
#include "plugins/bitmap/image_head.h"
#include "plugins/bitmap/polled_file.h"

#include <OpenImageIO/imageio.h>
#include <memory>
#include <string>

class OiioParser;

/// Threads: one at a time. A failure is told to the parser.
class ImageReader {
public:
    ImageReader(OiioParser& parser, MediaLimits const& limits);

    /// Describes all subimages.
    bool ReadHeader(CImageDocument& image);
    /// Describes them and reads their pixels.
    bool Read(CImageDocument& image);

private:
    enum class Extent {
        Header,
        All
    };

    bool ReadSubImages(CImageDocument& image, Extent extent);
    bool Open();
    bool OpenFile(Extent extent);
    bool HasAllPixels();
    /// Describes pictures that the library would decode as soon as it opens them.
    bool ReadHead(ImageHead const& head, CImageDocument& image);
    bool IsWithinLimits(OIIO::ImageSpec const& spec, CSubImage const& described);
    bool ReadPixels(OIIO::ImageSpec const& spec, int index, CSubImage& subImage);
    bool ReadScanlines(OIIO::ImageSpec const& spec, int index, CSubImage& subImage);
    bool ReadTiles(OIIO::ImageSpec const& spec, int index, CSubImage& subImage);
    /// Tells why the library stopped.
    bool FailAsLibrary();

    OiioParser& parser;
    MediaLimits const& limits;
    std::unique_ptr<PolledFile> file; ///< Outlives `input`, which reads from it.
    std::unique_ptr<OIIO::ImageInput> input;
};
