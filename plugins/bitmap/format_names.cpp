// SPDX-License-Identifier: MIT
#include "plugins/bitmap/format_names.h"

#include <algorithm>

namespace {

struct Row {
    std::string_view format;
    std::string_view classLetters;
    std::string_view description;
};

// A class is part of stored documents and preferences: it never changes, whatever the library does to its word.
constexpr Row rows[] = {
    {"bmp", "BMP ", "Bitmap images"},
    {"cineon", "CIN ", "Film scans (Cineon)"},
    {"dds", "DDS ", "Surface textures"},
    {"dicom", "DICM", "Medical images (DICOM)"},
    {"dpx", "DPX ", "Digital picture exchange images"},
    {"ffmpeg", "FFMP", "Video files"},
    {"fits", "FITS", "Astronomical images (FITS)"},
    {"gif", "GIF ", "Graphics interchange images"},
    {"hdr", "HDR ", "Radiance images"},
    {"heif", "HEIF", "High efficiency images"},
    {"ico", "ICON", "Icons"},
    {"iff", "IFF ", "Interchange format images"},
    {"jpeg", "JPEG", "JPEG images"},
    {"jpeg2000", "JP2 ", "JPEG 2000 images"},
    {"openexr", "EXR ", "OpenEXR images"},
    {"openvdb", "VDB ", "Volumes (OpenVDB)"},
    {"png", "PNG ", "Portable network graphics"},
    {"pnm", "PNM ", "Portable pixmaps"},
    {"psd", "PSD ", "Layered images"},
    {"raw", "RAW ", "Camera raw images"},
    {"rla", "RLA ", "Run length images with channels"},
    {"sgi", "SGI ", "SGI images"},
    {"softimage", "PIC ", "Softimage pictures"},
    {"targa", "TGA ", "Targa images"},
    {"tiff", "TIFF", "TIFF images"},
    {"webp", "WEBP", "WebP images"},
    {"zfile", "ZBUF", "Depth images"},
};

} // namespace

FormatName GetFormatName(std::string_view format) {
    for (Row const& row : rows) {
        if (row.format == format) {
            return {std::string(row.classLetters), std::string(row.description)};
        }
    }
    std::string upper(format);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
    });
    std::string letters = upper;
    letters.resize(4, ' ');
    return {letters, upper + " images"};
}
