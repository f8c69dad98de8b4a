// SPDX-License-Identifier: MIT
#include "plugins/bitmap/image_writer.h"

#include "media/named_options.h"
#include "plugins/bitmap/image_header.h"
#include "plugins/bitmap/metadata_attributes.h"
#include "plugins/bitmap/oiio_parser.h"
#include "plugins/bitmap/utf8_text.h"
#include "plugins/common/replaced_file.h"
#include <zeltools/files/io_options.h>
#include <zeltools/foundation/xload_string.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace {

using Text = CXTString<char16_t>;

constexpr unsigned int OneImageText = 5632;
constexpr unsigned int DifferenceText = 5634;

/// Pixels are encoded in pieces of about so many bytes, between which the operation may be stopped: the slowest
/// encoder takes 15 ms for one, and several times that on a busy machine.
constexpr unsigned long long PieceBytes = 1 << 18;

std::string Option(CIoOptions const* options, char16_t const* name) {
    return options ? ToUtf8(GetNamedOption(options->GetParserOptions(), name)) : std::string();
}

OIIO::TypeDesc TypeOption(CIoOptions const* options) {
    std::string const word = Option(options, u"type");
    for (PixelType const type :
         {PixelType::UInt8, PixelType::UInt16, PixelType::UInt32, PixelType::Half, PixelType::Float}) {
        if (word == GetPixelTypeName(type)) {
            return TypeDescOf(type);
        }
    }
    return OIIO::TypeUnknown;
}

/// Enters a value as the number that it looks like, or as a text.
void SetAttribute(OIIO::ImageSpec& spec, std::string const& name, std::string const& value) {
    if (OIIO::Strutil::string_is_int(value)) {
        spec.attribute(name, OIIO::Strutil::stoi(value));
    } else if (OIIO::Strutil::string_is_float(value)) {
        spec.attribute(name, OIIO::Strutil::stof(value));
    } else {
        spec.attribute(name, value);
    }
}

void ApplyOptions(CIoOptions const* options, bool canTile, OIIO::ImageSpec& spec) {
    if (!options) {
        return;
    }
    if (OIIO::TypeDesc const type = TypeOption(options); type != OIIO::TypeUnknown) {
        spec.set_format(type);
        spec.erase_attribute("oiio:BitsPerSample");
    }
    if (int const quality = std::atoi(Option(options, u"quality").c_str()); quality > 0) {
        spec.attribute("CompressionQuality", std::min(quality, 100));
    }
    if (std::string const compression = Option(options, u"compression"); !compression.empty()) {
        spec.attribute("compression", compression);
    }
    if (int const bits = std::atoi(Option(options, u"bits").c_str()); bits > 0) {
        spec.attribute("oiio:BitsPerSample", bits);
    }
    if (int const tile = std::atoi(Option(options, u"tile").c_str()); tile > 0 && canTile) {
        spec.tile_width = tile;
        spec.tile_height = tile;
        spec.tile_depth = 1;
    }
    for (NamedOption const& option : GetNamedOptions(options->GetParserOptions())) {
        if (option.name.Find(u':') > 0) {
            SetAttribute(spec, ToUtf8(option.name), ToUtf8(option.value));
        }
    }
}

/// Formats that store colour as it is beside its alpha; the others want it multiplied by alpha.
bool KeepsUnassociatedAlpha(std::string const& format) {
    constexpr std::string_view formats[] = {"png", "tiff", "targa", "bmp", "ico", "gif", "jpeg2000"};
    return std::find(std::begin(formats), std::end(formats), format) != std::end(formats);
}

/// 8-bit pixels with room behind them: the writer of HEIF copies rows as long as its encoder's, beyond its own last
/// one.
std::vector<std::byte> MakePaddedBytes(std::byte const* pixels, OIIO::TypeDesc type, std::size_t size) {
    constexpr std::size_t longest = 1024; // the encoder has rows of 64 pixels at least, in steps of a few
    std::size_t const count = size / type.size();
    std::vector<std::byte> bytes(count + longest);
    OIIO::convert_pixel_values(type, pixels, OIIO::TypeDesc::UINT8, bytes.data(), static_cast<int>(count));
    return bytes;
}

/// The writer of SGI stores what lies in memory as the name of a picture that has none.
bool ClearName(std::string const& nativeName) {
    constexpr std::array<char, 80> noName{};
    constexpr int64_t nameAt = 24;
    auto const file = PolledFile::Open(nativeName, PolledFile::Write, [] { return false; });
    return file && file->pwrite(noName.data(), noName.size(), nameAt) == noName.size() && file->Finish();
}

/// Through the proxy no failed write goes unseen. TIFF reads its own directories back as it writes several images,
/// which it cannot do through one.
bool WritesThroughProxy(OIIO::ImageOutput const& output) {
    return output.supports("ioproxy") != 0 && std::string_view(output.format_name()) != "tiff";
}

/// Whether a format that opens its file itself wrote all of it: some overlook a full disk. The rows at both ends tell,
/// since a format stores them from the top or from the bottom. Icons are left out: not every one can be read.
bool IsWhole(std::string const& nativeName, std::string const& format) {
    if (format == "ico") {
        return true;
    }
    auto const input = OIIO::ImageInput::create(format, false, nullptr, nullptr, "");
    OIIO::ImageSpec spec;
    bool whole = input && input->open(nativeName, spec);
    for (int index = 0; whole && input->seek_subimage(index, 0); ++index) {
        spec = input->spec();
        int const last = spec.y + spec.height - 1;
        std::vector<std::byte> row(spec.scanline_bytes());
        whole =
            spec.tile_width > 0 || // libtiff's tiles, which tell of a failure themselves
            (input->read_scanlines(index, 0, spec.y, spec.y + 1, spec.z, 0, spec.nchannels, spec.format, row.data()) &&
             input->read_scanlines(index, 0, last, last + 1, spec.z, 0, spec.nchannels, spec.format, row.data()));
    }
    if (input) {
        input->geterror();
    }
    return whole;
}

} // namespace

ImageWriter::ImageWriter(OiioParser& imageParser) : parser(imageParser) {}

bool ImageWriter::FailAsLibrary() {
    std::string words = output ? output->geterror() : std::string();
    if (words.empty()) {
        words = OIIO::geterror();
    }
    if ((file && file->HasStopped()) || parser.ShouldCancelParser()) {
        return parser.FailAsStopped();
    }
    if (file && file->GetError() != 0) {
        return parser.FailWithErrno(file->GetError());
    }
    return words.empty() ? parser.Fail(IoCannotSaveSo) : parser.FailInWords(words);
}

bool ImageWriter::ChooseSubImages(CImageDocument const& image, CIoOptions const* options) {
    std::string const choice = Option(options, u"subimage");
    auto const chosen = static_cast<std::size_t>(std::max(std::atoi(choice.c_str()), 0));
    for (std::size_t i = 0; i < image.GetSubImageCount(); ++i) {
        if (choice.empty() || i == chosen) {
            subImages.push_back(&image.GetSubImage(i));
        }
    }
    bool const hasAll = std::all_of(subImages.begin(), subImages.end(), [](CSubImage const* subImage) {
        return subImage->HasPixels() && subImage->GetByteCount() > 0;
    });
    if (subImages.empty() || !hasAll) {
        return parser.Fail(IoNothingToSave);
    }
    if (subImages.size() > 1 && !output->supports("multiimage")) {
        Text text;
        text.Format(xLoadString(OneImageText), static_cast<char16_t const*>(parser.GetShortName()),
                    static_cast<unsigned int>(subImages.size()));
        return parser.Fail(text);
    }
    return true;
}

bool ImageWriter::MakeSpecs(CImageDocument const& image, CIoOptions const* options) {
    constexpr auto most = static_cast<unsigned int>(std::numeric_limits<int>::max());
    bool const sameFormat = image.format == CXTString<char16_t>(parser.GetFormat().c_str());
    for (CSubImage const* const subImage : subImages) {
        if (subImage->width > most || subImage->height > most || subImage->depth > most ||
            (subImage->depth > 1 && !output->supports("volumes"))) {
            return parser.Fail(IoCannotSaveSo);
        }
        specs.push_back(MakeSpec(*subImage, sameFormat));
        ApplyOptions(options, output->supports("tiles") != 0, specs.back());
    }
    ShareWindow();
    return true;
}

void ImageWriter::ShareWindow() {
    if (specs.size() < 2 || !output->supports("displaywindow")) {
        return;
    }
    int left = specs[0].full_x;
    int top = specs[0].full_y;
    int right = left + specs[0].full_width;
    int bottom = top + specs[0].full_height;
    for (OIIO::ImageSpec const& spec : specs) {
        left = std::min(left, spec.full_x);
        top = std::min(top, spec.full_y);
        right = std::max(right, spec.full_x + spec.full_width);
        bottom = std::max(bottom, spec.full_y + spec.full_height);
    }
    for (OIIO::ImageSpec& spec : specs) {
        spec.full_x = left;
        spec.full_y = top;
        spec.full_width = right - left;
        spec.full_height = bottom - top;
    }
}

void ImageWriter::TellDifference(std::size_t index, CIoOptions* options) {
    OIIO::ImageSpec const& stored = output->spec();
    CSubImage const& subImage = *subImages[index];
    if (!options || (stored.format == specs[index].format && stored.nchannels == subImage.channels.GetSize())) {
        return;
    }
    Text text;
    text.Format(xLoadString(DifferenceText), static_cast<char16_t const*>(parser.GetShortName()),
                static_cast<char16_t const*>(ToText(stored.format.c_str())),
                static_cast<unsigned int>(stored.nchannels),
                static_cast<char16_t const*>(ToText(GetPixelTypeName(subImage.pixelType))),
                static_cast<unsigned int>(subImage.channels.GetSize()));
    options->AddLogInfo(IoLogInfo::Warning, text);
}

bool ImageWriter::WritePixels(std::size_t index) {
    CSubImage const& subImage = *subImages[index];
    OIIO::ImageSpec const& spec = specs[index];
    bool const readsBeyond = parser.GetFormat() == "heif";
    OIIO::TypeDesc const pixelType = TypeDescOf(subImage.pixelType);
    OIIO::TypeDesc const type = readsBeyond ? OIIO::TypeDesc(OIIO::TypeDesc::UINT8) : pixelType;
    bool const multiply = spec.alpha_channel >= 0 && spec.get_int_attribute("oiio:UnassociatedAlpha") != 0 &&
                          !KeepsUnassociatedAlpha(parser.GetFormat());
    auto const rowBytes = static_cast<std::size_t>(subImage.GetRowSize());
    int rows = static_cast<int>(std::clamp(PieceBytes / subImage.GetRowSize(), 1ULL, 256ULL));
    bool const tiled = output->spec().tile_width > 0; // some formats choose tiles themselves
    if (tiled) {
        rows = output->spec().tile_height; // a row of tiles at once
    }
    std::vector<std::byte> multiplied;
    std::vector<std::byte> padded;
    for (int z = 0; z < spec.depth; ++z) {
        for (int y = 0; y < spec.height; y += std::min(rows, spec.height - y)) {
            if (parser.ShouldCancelParser()) {
                return parser.FailAsStopped();
            }
            int const end = y + std::min(rows, spec.height - y);
            std::byte const* data =
                subImage.GetRow(static_cast<unsigned long long>(z) * subImage.height + static_cast<unsigned int>(y));
            if (multiply) {
                multiplied.assign(data, data + rowBytes * static_cast<std::size_t>(end - y));
                OIIO::premult(spec.nchannels, spec.width, end - y, 1, 0, spec.nchannels, pixelType, multiplied.data(),
                              OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride, spec.alpha_channel, spec.z_channel);
                data = multiplied.data();
            }
            if (readsBeyond) {
                padded = MakePaddedBytes(data, pixelType, rowBytes * static_cast<std::size_t>(end - y));
                data = padded.data();
            }
            bool const written = tiled ? output->write_tiles(spec.x, spec.x + spec.width, spec.y + y, spec.y + end,
                                                             spec.z + z, spec.z + z + 1, type, data)
                                       : output->write_scanlines(spec.y + y, spec.y + end, spec.z + z, type, data);
            if (!written || (file && file->GetError() != 0)) {
                return FailAsLibrary();
            }
        }
    }
    return true;
}

bool ImageWriter::WriteFile(std::string const& nativeName, CIoOptions* options) {
    if (WritesThroughProxy(*output)) {
        file = PolledFile::Open(nativeName, PolledFile::Write, [this] { return parser.ShouldCancelParser(); });
        if (!file) {
            return parser.FailWithErrno(errno);
        }
        output->set_ioproxy(file.get());
    }
    for (std::size_t i = 0; i < subImages.size(); ++i) {
        bool const opened = i == 0 ? output->open(nativeName, static_cast<int>(specs.size()), specs.data())
                                   : output->open(nativeName, specs[i], OIIO::ImageOutput::AppendSubimage);
        if (!opened) {
            return FailAsLibrary();
        }
        TellDifference(i, options);
        if (!WritePixels(i)) {
            return false;
        }
    }
    if (!output->close() || (file && !file->Finish())) {
        return FailAsLibrary();
    }
    if (!file && !IsWhole(nativeName, parser.GetFormat())) {
        return parser.Fail(IoDiskFull);
    }
    bool const hasStrayName = parser.GetFormat() == "sgi" && !specs[0].find_attribute("ImageDescription");
    return !hasStrayName || ClearName(nativeName) || parser.FailWithErrno(errno);
}

bool ImageWriter::Write(CImageDocument const& image, CIoOptions* options) {
    OIIO::geterror(); // of whatever ran on this thread before
    output = OIIO::ImageOutput::create(parser.GetFormat(), nullptr, "");
    if (!output) {
        return FailAsLibrary();
    }
    output->threads(1); // the host has threads of its own
    if (!ChooseSubImages(image, options) || !MakeSpecs(image, options)) {
        return false;
    }
    ReplacedFile target(parser.GetNativeName());
    if (!target.Create()) {
        return parser.FailWithErrno(errno);
    }
    bool const written = WriteFile(target.GetTemporaryName(), options);
    output.reset(); // some formats write their last bytes now
    file.reset();
    return written && (target.Commit() || parser.FailWithErrno(errno));
}
