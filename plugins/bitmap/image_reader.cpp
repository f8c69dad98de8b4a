// SPDX-License-Identifier: MIT
#include "plugins/bitmap/image_reader.h"

#include "plugins/bitmap/dicom_input.h"
#include "plugins/bitmap/format_checks.h"
#include "plugins/bitmap/heif_input.h"
#include "plugins/bitmap/image_head.h"
#include "plugins/bitmap/image_header.h"
#include "plugins/bitmap/oiio_parser.h"
#include "plugins/bitmap/tiff_pixels.h"

#include <algorithm>
#include <cerrno>

namespace {

constexpr unsigned int NoPixelsText = 5630;
constexpr unsigned int DeepPixelsText = 5631;
constexpr unsigned int CutShortText = 5633;
constexpr unsigned int UnreadableIconText = 5635;
constexpr unsigned int PixelsBehindEndText = 5636;
constexpr unsigned int DoublePixelsText = 5637;

/// Pixels are decoded in pieces of about so many bytes, between which the operation may be stopped: the slowest
/// decoder takes 15 ms for one, and several times that on a busy machine.
constexpr unsigned long long PieceBytes = 1 << 20;

/// Rows of a piece. Where it takes several compressed blocks, it takes whole ones: few formats have larger than 32
/// rows.
int RowsOfPiece(unsigned long long rowBytes) {
    unsigned long long const rows = std::clamp(PieceBytes / std::max(rowBytes, 1ULL), 1ULL, 256ULL);
    return static_cast<int>(rows < 32 ? rows : rows & ~31ULL);
}

/// Frames of a film are read one by one by whoever plays it: the document gets the first.
bool IsFilm(std::string const& format) {
    return format == "ffmpeg";
}

/// The reader of TIFF gives doubles right from strips that are read at once, and otherwise zeros without a word.
bool WantsWholeStrips(std::string const& format, OIIO::ImageSpec const& spec) {
    return format == "tiff" && spec.format == OIIO::TypeDesc::DOUBLE;
}

/// The reader of a format: one of our own where the library's is not to be borne.
std::unique_ptr<OIIO::ImageInput> MakeInput(std::string const& format, PolledFile& file) {
    return format == "dicom"  ? MakeDicomInput()
           : format == "heif" ? MakeHeifInput(file)
                              : OIIO::ImageInput::create(format, false, nullptr, nullptr, "");
}

} // namespace

ImageReader::ImageReader(OiioParser& imageParser, MediaLimits const& hostLimits)
    : parser(imageParser), limits(hostLimits) {}

bool ImageReader::ReadHeader(CImageDocument& image) {
    return ReadSubImages(image, Extent::Header);
}

bool ImageReader::Read(CImageDocument& image) {
    return ReadSubImages(image, Extent::All);
}

bool ImageReader::FailAsLibrary() {
    std::string words = input ? input->geterror() : std::string();
    if (words.empty()) {
        words = OIIO::geterror();
    }
    if ((file && file->HasStopped()) || parser.ShouldCancelParser()) {
        return parser.FailAsStopped();
    }
    return parser.FailInWords(words);
}

bool ImageReader::OpenFile(Extent extent) {
    file = PolledFile::Open(parser.GetNativeName(), PolledFile::Read, [this] { return parser.ShouldCancelParser(); });
    if (!file) {
        return parser.FailWithErrno(errno);
    }
    if (file->size() == 0) {
        return parser.Fail(IoEmptyFile);
    }
    switch (CheckFile(parser.GetFormat(), *file, extent == Extent::All)) {
    case FileFault::None: break;
    case FileFault::Damaged: return parser.Fail(IoBadFormat);
    case FileFault::CutShort: return parser.FailWithName(CutShortText);
    case FileFault::UnreadableIcon: return parser.FailWithName(UnreadableIconText);
    }
    if (extent == Extent::All && parser.GetFormat() == "tiff" && !HasAllPixels()) {
        return false;
    }
    unsigned long long const pixels = ClaimedPixels(parser.GetFormat(), *file);
    return pixels <= limits.maxPixels || parser.FailBeyondLimit(MediaLimit::Pixels, pixels, limits.maxPixels);
}

bool ImageReader::HasAllPixels() {
    std::uint64_t const end = FindEndOfTiffPixels(*file);
    if (end <= file->size()) {
        return true;
    }
    CXTString<char16_t> text;
    text.Format(PixelsBehindEndText, static_cast<char16_t const*>(parser.GetShortName()),
                static_cast<unsigned long long>(end), static_cast<unsigned long long>(file->size()));
    return parser.Fail(text);
}

bool ImageReader::Open() {
    OIIO::geterror(); // of whatever ran on this thread before
    file->seek(0);
    input = MakeInput(parser.GetFormat(), *file);
    if (!input) {
        return FailAsLibrary();
    }
    input->threads(1); // the host has threads of its own
    if (input->supports("ioproxy")) {
        input->set_ioproxy(file.get());
    }
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1); // as in the file: multiplying loses bits
    OIIO::ImageSpec first;
    return input->open(parser.GetNativeName(), first, wishes) || FailAsLibrary();
}

bool ImageReader::IsWithinLimits(OIIO::ImageSpec const& spec, CSubImage const& described) {
    unsigned long long const pixels = CountPixels(spec);
    if (pixels == 0 || spec.nchannels <= 0) {
        return parser.FailWithName(NoPixelsText);
    }
    if (pixels > limits.maxPixels) {
        return parser.FailBeyondLimit(MediaLimit::Pixels, pixels, limits.maxPixels);
    }
    if (described.GetByteCount() > limits.maxImageBytes) {
        return parser.FailBeyondLimit(MediaLimit::ImageBytes, described.GetByteCount(), limits.maxImageBytes);
    }
    return true;
}

bool ImageReader::ReadHead(ImageHead const& head, CImageDocument& image) {
    if (file->HasStopped() || parser.ShouldCancelParser()) {
        return parser.FailAsStopped();
    }
    if (head.subImages.empty()) {
        return parser.Fail(IoBadFormat);
    }
    image.format = CXTString<char16_t>(parser.GetFormat().c_str());
    for (OIIO::ImageSpec const& spec : head.subImages) {
        if (image.GetSubImageCount() >= limits.maxSubImages) {
            return parser.FailBeyondLimit(MediaLimit::SubImages, head.subImages.size(), limits.maxSubImages);
        }
        CSubImage& subImage = image.AddSubImage();
        DescribeSubImage(spec, subImage);
        if (!IsWithinLimits(spec, subImage)) {
            return false;
        }
    }
    return true;
}

bool ImageReader::ReadSubImages(CImageDocument& image, Extent extent) {
    if (!OpenFile(extent)) {
        return false;
    }
    unsigned long long const most = 1ULL + limits.maxSubImages;
    std::optional<ImageHead> const head = ReadImageHead(parser.GetFormat(), *file, most);
    if (head) {
        if (extent == Extent::Header) {
            return ReadHead(*head, image);
        }
        CImageDocument told;
        if (!ReadHead(*head, told)) {
            return false;
        }
        if (head->isCutShort) {
            return parser.FailWithName(CutShortText);
        }
    }
    if (!Open()) {
        return false;
    }
    image.format = CXTString<char16_t>(input->format_name());
    for (int index = 0; index == 0 || (!IsFilm(parser.GetFormat()) && input->seek_subimage(index, 0)); ++index) {
        if (parser.ShouldCancelParser()) {
            return parser.FailAsStopped();
        }
        if (static_cast<unsigned int>(index) >= limits.maxSubImages) {
            return parser.FailBeyondLimit(MediaLimit::SubImages, static_cast<unsigned int>(index) + 1,
                                          limits.maxSubImages);
        }
        OIIO::ImageSpec const spec = input->spec(); // a copy: seeking changes it
        CSubImage& subImage = image.AddSubImage();
        DescribeSubImage(spec, subImage);
        if (!IsWithinLimits(spec, subImage) || (extent == Extent::All && !ReadPixels(spec, index, subImage))) {
            return false;
        }
    }
    // A damaged frame ends a GIF without a word.
    if (head && head->subImages.size() > image.GetSubImageCount()) {
        return FailAsLibrary();
    }
    // Asking for a subimage behind the last one is no fault, but some formats say so.
    input->geterror();
    return !(file->HasStopped() || parser.ShouldCancelParser()) || parser.FailAsStopped();
}

bool ImageReader::ReadPixels(OIIO::ImageSpec const& spec, int index, CSubImage& subImage) {
    if (spec.deep) {
        return parser.FailWithName(DeepPixelsText);
    }
    if (WantsWholeStrips(parser.GetFormat(), spec) && (spec.tile_width > 0 || spec.height == 1)) {
        return parser.FailWithName(DoublePixelsText);
    }
    if (!subImage.AllocatePixels(limits.maxImageBytes)) {
        return parser.Fail(IoNoMemory);
    }
    return spec.tile_width > 0 ? ReadTiles(spec, index, subImage) : ReadScanlines(spec, index, subImage);
}

bool ImageReader::ReadScanlines(OIIO::ImageSpec const& spec, int index, CSubImage& subImage) {
    OIIO::TypeDesc const type = TypeDescOf(subImage.pixelType);
    int const step = WantsWholeStrips(parser.GetFormat(), spec) ? spec.height : RowsOfPiece(subImage.GetRowSize());
    for (int z = 0; z < std::max(spec.depth, 1); ++z) {
        for (int y = 0; y < spec.height; y += step) {
            if (parser.ShouldCancelParser()) {
                return parser.FailAsStopped();
            }
            auto const row = static_cast<unsigned long long>(z) * subImage.height + static_cast<unsigned int>(y);
            if (!input->read_scanlines(index, 0, spec.y + y, spec.y + std::min(y + step, spec.height), spec.z + z, 0,
                                       spec.nchannels, type, subImage.GetRow(row))) {
                return FailAsLibrary();
            }
        }
    }
    return true;
}

bool ImageReader::ReadTiles(OIIO::ImageSpec const& spec, int index, CSubImage& subImage) {
    OIIO::TypeDesc const type = TypeDescOf(subImage.pixelType);
    auto const pixelBytes = static_cast<OIIO::stride_t>(subImage.GetRowSize() / subImage.width);
    auto const rowBytes = static_cast<OIIO::stride_t>(subImage.GetRowSize());
    auto const sliceBytes = rowBytes * spec.height;
    int const tileDepth = std::max(spec.tile_depth, 1);
    unsigned long long const tileBytes =
        static_cast<unsigned long long>(spec.tile_width) * static_cast<unsigned int>(spec.tile_height) *
        static_cast<unsigned int>(tileDepth) * static_cast<unsigned long long>(pixelBytes);
    // Several tiles side by side. Counted in pixels without overflow: a tile may be as wide as it claims.
    unsigned long long const tiles = std::clamp(PieceBytes / std::max(tileBytes, 1ULL), 1ULL, 4096ULL);
    auto const stepX = static_cast<int>(std::min<unsigned long long>(tiles * static_cast<unsigned int>(spec.tile_width),
                                                                     static_cast<unsigned int>(spec.width)));
    for (int z = 0; z < std::max(spec.depth, 1); z += tileDepth) {
        for (int y = 0; y < spec.height; y += std::min(spec.tile_height, spec.height - y)) {
            for (int x = 0; x < spec.width; x += std::min(stepX, spec.width - x)) {
                if (parser.ShouldCancelParser()) {
                    return parser.FailAsStopped();
                }
                auto const row = static_cast<unsigned long long>(z) * subImage.height + static_cast<unsigned int>(y);
                int const endX = x + std::min(stepX, spec.width - x);
                int const endY = y + std::min(spec.tile_height, spec.height - y);
                int const endZ = std::min(z + tileDepth, std::max(spec.depth, 1));
                if (!input->read_tiles(index, 0, spec.x + x, spec.x + endX, spec.y + y, spec.y + endY, spec.z + z,
                                       spec.z + endZ, 0, spec.nchannels, type, subImage.GetRow(row) + x * pixelBytes,
                                       pixelBytes, rowBytes, sliceBytes)) {
                    return FailAsLibrary();
                }
            }
        }
    }
    return true;
}
