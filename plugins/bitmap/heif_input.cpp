// SPDX-License-Identifier: MIT
#include "plugins/bitmap/heif_input.h"

#include <OpenImageIO/tiffutils.h>
#include <algorithm>
#include <cstring>
#include <libheif/heif.h>
#include <vector>

namespace {

using Context = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Image = std::unique_ptr<heif_image const, decltype(&heif_image_release)>;
using Handle = std::unique_ptr<heif_image_handle const, decltype(&heif_image_handle_release)>;

PolledFile& FileOf(void* file) {
    return *static_cast<PolledFile*>(file);
}

/// How libheif reads the file, which does not grow; nothing at all it reads into nowhere.
constexpr heif_reader reader = {
    .reader_api_version = 1,
    .get_position = [](void* file) { return FileOf(file).tell(); },
    .read = [](void* target, size_t size,
               void* file) { return size == 0 || FileOf(file).read(target, size) == size ? 0 : 1; },
    .seek = [](int64_t position, void* file) { return FileOf(file).seek(position) ? 0 : 1; },
    .wait_for_file_size =
        [](int64_t size, void* file) {
            return size <= static_cast<int64_t>(FileOf(file).size()) ? heif_reader_grow_status_size_reached
                                                                     : heif_reader_grow_status_size_beyond_eof;
        },
};

void ReadExif(heif_image_handle const* picture, OIIO::ImageSpec& spec) {
    constexpr std::size_t tiffAt = 10; // behind an offset of 4 bytes, "Exif" and two zeros
    int const count = heif_image_handle_get_number_of_metadata_blocks(picture, "Exif");
    std::vector<heif_item_id> ids(static_cast<std::size_t>(std::max(count, 0)));
    heif_image_handle_get_list_of_metadata_block_IDs(picture, "Exif", ids.data(), count);
    for (heif_item_id const id : ids) {
        std::vector<uint8_t> block(heif_image_handle_get_metadata_size(picture, id));
        if (block.size() >= tiffAt && heif_image_handle_get_metadata(picture, id, block.data()).code == heif_error_Ok) {
            OIIO::decode_exif(OIIO::cspan<uint8_t>(block).subspan(tiffAt), spec);
        }
    }
    spec.erase_attribute("Orientation"); // libheif turns the picture
}

OIIO::ImageSpec Describe(heif_image_handle const* picture) {
    bool const hasAlpha = heif_image_handle_has_alpha_channel(picture) != 0;
    OIIO::ImageSpec spec(heif_image_handle_get_width(picture), heif_image_handle_get_height(picture), hasAlpha ? 4 : 3,
                         OIIO::TypeDesc::UINT8);
    spec.attribute("oiio:ColorSpace", "sRGB");
    if (hasAlpha && heif_image_handle_is_premultiplied_alpha(picture) == 0) {
        spec.attribute("heif:UnassociatedAlpha", 1);
        spec.attribute("oiio:UnassociatedAlpha", 1); // the reader is asked to leave it so
    }
    ReadExif(picture, spec);
    return spec;
}

/// The pictures that are no part of another, the primary one first.
std::vector<heif_item_id> ListPictures(heif_context* context) {
    int const count = heif_context_get_number_of_top_level_images(context);
    std::vector<heif_item_id> ids(static_cast<std::size_t>(std::max(count, 0)));
    heif_context_get_list_of_top_level_image_IDs(context, ids.data(), count);
    heif_item_id primary = 0;
    if (heif_context_get_primary_image_ID(context, &primary).code == heif_error_Ok) {
        std::stable_partition(ids.begin(), ids.end(), [primary](heif_item_id id) { return id == primary; });
    }
    return ids;
}

class HeifInput final : public OIIO::ImageInput {
public:
    explicit HeifInput(PolledFile& source) : file(source) {}

    char const* format_name() const override { return "heif"; }
    using ImageInput::open;
    bool open(std::string const& name, OIIO::ImageSpec& spec) override;
    bool close() override;
    int current_subimage() const override { return current; }
    bool seek_subimage(int subimage, int mipLevel) override;
    bool read_native_scanline(int subimage, int mipLevel, int y, int z, void* row) override;

private:
    bool Decode();
    /// Whether libheif could do it; tells why not.
    bool Check(heif_error const& error);

    PolledFile& file;
    Context context{nullptr, &heif_context_free};
    std::vector<heif_item_id> pictures;
    int current = -1;
    Handle handle{nullptr, &heif_image_handle_release}; ///< Of the current picture.
    Image image{nullptr, &heif_image_release};          ///< The same, once it is decoded.
    std::uint8_t const* pixels = nullptr;
    std::size_t stride = 0;
};

bool HeifInput::Check(heif_error const& error) {
    if (error.code != heif_error_Ok) {
        errorfmt("{}", error.message ? error.message : "");
    }
    return error.code == heif_error_Ok;
}

bool HeifInput::open(std::string const&, OIIO::ImageSpec& spec) {
    close();
    context.reset(heif_context_alloc());
    if (!Check(heif_context_read_from_reader(context.get(), &reader, &file, nullptr))) {
        return false;
    }
    pictures = ListPictures(context.get());
    if (!seek_subimage(0, 0)) {
        return false;
    }
    spec = m_spec;
    return true;
}

bool HeifInput::close() {
    image.reset();
    handle.reset();
    context.reset();
    pictures.clear();
    pixels = nullptr;
    current = -1;
    return true;
}

bool HeifInput::seek_subimage(int subimage, int mipLevel) {
    if (subimage < 0 || subimage >= std::ssize(pictures) || mipLevel != 0) {
        return false;
    }
    if (subimage == current) {
        return true;
    }
    heif_image_handle* picture = nullptr;
    if (!Check(heif_context_get_image_handle(context.get(), pictures[static_cast<std::size_t>(subimage)], &picture))) {
        return false;
    }
    image.reset();
    pixels = nullptr;
    handle.reset(picture);
    m_spec = Describe(picture);
    current = subimage;
    return true;
}

bool HeifInput::Decode() {
    heif_image* decoded = nullptr;
    heif_chroma const chroma = m_spec.nchannels == 4 ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
    if (!Check(heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB, chroma, nullptr))) {
        return false;
    }
    image.reset(decoded);
    int rowBytes = 0;
    std::uint8_t const* const plane = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &rowBytes);
    if (!plane || heif_image_get_width(decoded, heif_channel_interleaved) != m_spec.width ||
        heif_image_get_height(decoded, heif_channel_interleaved) != m_spec.height ||
        rowBytes < m_spec.width * m_spec.nchannels) {
        errorfmt("The size of the pixels is not that of the header");
        return false;
    }
    pixels = plane;
    stride = static_cast<std::size_t>(rowBytes);
    return true;
}

bool HeifInput::read_native_scanline(int subimage, int mipLevel, int y, int, void* row) {
    if (!seek_subimage(subimage, mipLevel) || y < 0 || y >= m_spec.height || (!pixels && !Decode())) {
        return false;
    }
    std::memcpy(row, pixels + stride * static_cast<std::size_t>(y), m_spec.scanline_bytes());
    return true;
}

} // namespace

std::unique_ptr<OIIO::ImageInput> MakeHeifInput(PolledFile& file) {
    return std::make_unique<HeifInput>(file);
}
