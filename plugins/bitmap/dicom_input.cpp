// SPDX-License-Identifier: MIT
#include "plugins/bitmap/dicom_input.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmimage/diregist.h> // colours
#include <dcmtk/dcmimgle/dcmimage.h>
#include <mutex>
#include <string>

namespace {

/// A longer value is none that a person reads.
constexpr Uint32 LongestValue = 4096;

unsigned int GetNumber(DcmItem& tags, DcmTagKey const& key, unsigned long place = 0) {
    Uint16 value = 0;
    return tags.findAndGetUint16(key, value, place).good() ? value : 0;
}

std::string GetText(DcmItem& tags, DcmTagKey const& key) {
    OFString value;
    return tags.findAndGetOFString(key, value).good() ? std::string(value.c_str()) : std::string();
}

/// Bits of stored values after the file's scale and offset.
int CountScaledBits(DcmItem& tags, int stored) {
    Float64 slope = 1;
    Float64 offset = 0;
    if (tags.findAndGetFloat64(DCM_RescaleSlope, slope).bad() ||
        tags.findAndGetFloat64(DCM_RescaleIntercept, offset).bad()) {
        return stored;
    }
    double const values = std::ldexp(1.0, stored);
    double const lowest = GetNumber(tags, DCM_PixelRepresentation) == 1 ? -values / 2 : 0;
    double const ends[] = {lowest * slope + offset, (lowest + values - 1) * slope + offset};
    double const largest = std::max(std::fabs(ends[0]), std::fabs(ends[1]));
    int const sign = std::min(ends[0], ends[1]) < 0 ? 1 : 0;
    return largest < std::ldexp(1.0, 31) ? static_cast<int>(std::ceil(std::log2(largest + 1))) + sign : 32;
}

/// Bits of a channel as it is shown.
int CountBits(DcmItem& tags, std::string const& colours) {
    int const stored = std::clamp(static_cast<int>(GetNumber(tags, DCM_BitsStored)), 1, 32);
    constexpr unsigned long bitsOfTable = 2; // behind the number of its entries and the first of them
    if (colours == "PALETTE COLOR") {
        return GetNumber(tags, DCM_RedPaletteColorLookupTableDescriptor, bitsOfTable) <= 8 ? 8 : 16;
    }
    DcmItem* table = nullptr;
    if (tags.findAndGetSequenceItem(DCM_ModalityLUTSequence, table).good()) {
        return GetNumber(*table, DCM_LUTDescriptor, bitsOfTable) <= 8 ? 8 : 16;
    }
    return std::clamp(CountScaledBits(tags, stored), 1, 32);
}

/// What the description of the picture says already.
bool IsOfPixels(DcmTagKey const& key) {
    DcmTagKey const keys[] = {DCM_Rows,
                              DCM_Columns,
                              DCM_BitsAllocated,
                              DCM_BitsStored,
                              DCM_HighBit,
                              DCM_PixelRepresentation,
                              DCM_SamplesPerPixel,
                              DCM_NumberOfFrames};
    return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

void ReadTag(DcmElement& element, OIIO::ImageSpec& spec) {
    DcmTag tag = element.getTag();
    std::string const name = tag.getTagName();
    OFString value;
    if (!element.isLeaf() || element.getLength() > LongestValue || IsOfPixels(tag) || name.starts_with("Unknown") ||
        element.getOFStringArray(value).bad()) {
        return;
    }
    std::string const text = value.c_str();
    DcmEVR const kind = element.ident();
    if (element.isaString()) {
        spec.attribute("dicom:" + name, text);
    } else if (kind == EVR_US || kind == EVR_SS || kind == EVR_UL || kind == EVR_SL) {
        int64_t const number = std::strtoll(text.c_str(), nullptr, 10);
        spec.attribute("dicom:" + name, OIIO::TypeDesc::INT64, &number);
    } else if (kind == EVR_FL || kind == EVR_FD) {
        double const number = std::strtod(text.c_str(), nullptr);
        spec.attribute("dicom:" + name, OIIO::TypeDesc::DOUBLE, &number);
    }
}

/// How much wider than high a pixel is; 0 where the file does not say.
float GetPixelAspect(DcmItem& tags) {
    // Each has the height first.
    for (DcmTagKey const& key :
         {DCM_PixelSpacing, DCM_ImagerPixelSpacing, DCM_NominalScannedPixelSpacing, DCM_PixelAspectRatio}) {
        OFString sizes[2];
        if (tags.findAndGetOFString(key, sizes[0], 0).good() && tags.findAndGetOFString(key, sizes[1], 1).good()) {
            double const height = std::strtod(sizes[0].c_str(), nullptr);
            double const width = std::strtod(sizes[1].c_str(), nullptr);
            return height > 0 && width > 0 ? static_cast<float>(width / height) : 0;
        }
    }
    return 0;
}

OIIO::ImageSpec Describe(DcmItem& tags) {
    std::string const colours = GetText(tags, DCM_PhotometricInterpretation);
    int const bits = CountBits(tags, colours);
    OIIO::TypeDesc const type = bits <= 8    ? OIIO::TypeDesc::UINT8
                                : bits <= 16 ? OIIO::TypeDesc::UINT16
                                             : OIIO::TypeDesc::UINT32;
    OIIO::ImageSpec spec(static_cast<int>(GetNumber(tags, DCM_Columns)), static_cast<int>(GetNumber(tags, DCM_Rows)),
                         colours.starts_with("MONOCHROME") ? 1 : 3, type);
    for (unsigned long i = 0; i < tags.card(); ++i) {
        if (DcmElement* const element = tags.getElement(i)) {
            ReadTag(*element, spec);
        }
    }
    if (bits != static_cast<int>(8 * type.size())) {
        spec.attribute("oiio:BitsPerSample", bits);
    }
    if (float const aspect = GetPixelAspect(tags); aspect > 0) {
        spec.attribute("PixelAspectRatio", aspect);
    }
    return spec;
}

class DicomInput final : public OIIO::ImageInput {
public:
    char const* format_name() const override { return "dicom"; }
    using ImageInput::open;
    bool open(std::string const& name, OIIO::ImageSpec& spec) override;
    bool close() override;
    int current_subimage() const override { return frame; }
    bool seek_subimage(int subimage, int mipLevel) override;
    bool read_native_scanline(int subimage, int mipLevel, int y, int z, void* row) override;

private:
    bool Decode();

    std::string fileName;
    int frame = 0;
    int frameCount = 0;
    std::unique_ptr<DicomImage> picture; ///< Of `frame`, once it is decoded.
    unsigned char const* pixels = nullptr;
};

bool DicomInput::open(std::string const& name, OIIO::ImageSpec& spec) {
    static std::once_flag once;
    std::call_once(once, [] { OFLog::configure(OFLogger::OFF_LOG_LEVEL); }); // it would print into the host's output
    close();
    DcmFileFormat file;
    OFCondition const read =
        file.loadFileUntilTag(name.c_str(), EXS_Unknown, EGL_noChange, LongestValue, ERM_autoDetect, DCM_PixelData);
    if (read.bad()) {
        errorfmt("{}", read.text());
        return false;
    }
    fileName = name;
    m_spec = Describe(*file.getDataset());
    Sint32 count = 1;
    file.getDataset()->findAndGetSint32(DCM_NumberOfFrames, count);
    frameCount = std::max(count, 1);
    spec = m_spec;
    return true;
}

bool DicomInput::close() {
    picture.reset();
    pixels = nullptr;
    frame = 0;
    return true;
}

bool DicomInput::seek_subimage(int subimage, int mipLevel) {
    if (subimage < 0 || subimage >= frameCount || mipLevel != 0) {
        return false;
    }
    if (subimage != frame) {
        close();
        frame = subimage;
    }
    return true;
}

bool DicomInput::Decode() {
    picture = std::make_unique<DicomImage>(fileName.c_str(), CIF_UsePartialAccessToPixelData,
                                           static_cast<unsigned long>(frame), 1);
    if (picture->getStatus() != EIS_Normal) {
        errorfmt("{}", DicomImage::getString(picture->getStatus()));
        return false;
    }
    int const bits = static_cast<int>(8 * m_spec.format.size());
    if (picture->getWidth() != static_cast<unsigned long>(m_spec.width) ||
        picture->getHeight() != static_cast<unsigned long>(m_spec.height) ||
        picture->getOutputDataSize(bits) != m_spec.image_bytes()) {
        errorfmt("The size of the pixels is not that of the header");
        return false;
    }
    pixels = static_cast<unsigned char const*>(picture->getOutputData(bits));
    if (!pixels) {
        errorfmt("The pixels cannot be decoded");
    }
    return pixels != nullptr;
}

bool DicomInput::read_native_scanline(int subimage, int mipLevel, int y, int, void* row) {
    if (!seek_subimage(subimage, mipLevel) || y < 0 || y >= m_spec.height || (!pixels && !Decode())) {
        return false;
    }
    std::size_t const size = m_spec.scanline_bytes();
    std::memcpy(row, pixels + size * static_cast<std::size_t>(y), size);
    return true;
}

} // namespace

std::unique_ptr<OIIO::ImageInput> MakeDicomInput() {
    return std::make_unique<DicomInput>();
}
