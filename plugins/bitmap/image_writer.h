// SPDX-License-Identifier: MIT
// Writes a document into one file.
//
// What a user may choose, by the names of media/named_options.h:
//
//   quality      1 to 100, for formats that lose something
//   compression  the format's word: "zip", "lzw", "none", ...
//   type         of the stored pixels: "uint8", "uint16", "uint32", "half", "float"
//   bits         of a channel in the file, where the format has odd ones: 10
//   tile         width and height of tiles, in pixels; 0 for none
//   subimage     the number of the only one to be written, from 0
//   word:name    anything that OpenImageIO names so, such as png:compressionLevel

#pragma once

#include "media/image_document.h"
#include "plugins/bitmap/polled_file.h"

#include <OpenImageIO/imageio.h>
#include <memory>
#include <string>
#include <vector>

class CIoOptions;
class OiioParser;

/// Threads: one at a time. A failure is told to the parser.
class ImageWriter {
public:
    explicit ImageWriter(OiioParser& parser);

    /// The file is in place whole or not at all.
    bool Write(CImageDocument const& image, CIoOptions* options);

private:
    bool ChooseSubImages(CImageDocument const& image, CIoOptions const* options);
    bool MakeSpecs(CImageDocument const& image, CIoOptions const* options);
    /// The subimages of one file lie in one window: that of all of them.
    void ShareWindow();
    bool WriteFile(std::string const& nativeName, CIoOptions* options);
    bool WritePixels(std::size_t index);
    /// Notes in the log where the format keeps less than the document has.
    void TellDifference(std::size_t index, CIoOptions* options);
    bool FailAsLibrary();

    OiioParser& parser;
    std::vector<CSubImage const*> subImages;
    std::vector<OIIO::ImageSpec> specs; ///< One for each subimage.
    std::unique_ptr<PolledFile> file;   ///< Null for a format that opens its file itself; outlives `output`.
    std::unique_ptr<OIIO::ImageOutput> output;
};
