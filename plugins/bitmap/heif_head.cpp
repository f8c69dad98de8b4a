// SPDX-License-Identifier: MIT
#include "plugins/bitmap/heif_head.h"

#include <OpenImageIO/tiffutils.h>
#include <algorithm>
#include <libheif/heif.h>
#include <memory>

namespace {

using Context = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Handle = std::unique_ptr<heif_image_handle const, decltype(&heif_image_handle_release)>;

PolledFile& FileOf(void* file) {
    return *static_cast<PolledFile*>(file);
}

/// How libheif reads the file, which does not grow.
constexpr heif_reader reader = {
    .reader_api_version = 1,
    .get_position = [](void* file) { return FileOf(file).tell(); },
    .read = [](void* target, size_t size, void* file) { return FileOf(file).read(target, size) == size ? 0 : 1; },
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

} // namespace

ImageHead ReadHeifHead(PolledFile& file, std::size_t mostSubImages) {
    ImageHead head;
    Context const context(heif_context_alloc(), &heif_context_free);
    heif_error error = heif_context_read_from_reader(context.get(), &reader, &file, nullptr);
    std::vector<heif_item_id> ids;
    if (error.code == heif_error_Ok) {
        ids = ListPictures(context.get());
        ids.resize(std::min(ids.size(), mostSubImages));
    }
    for (heif_item_id const id : ids) {
        heif_image_handle* picture = nullptr;
        error = heif_context_get_image_handle(context.get(), id, &picture);
        if (error.code != heif_error_Ok) {
            head.subImages.clear();
            break;
        }
        Handle const owner(picture, &heif_image_handle_release);
        head.subImages.push_back(Describe(picture));
    }
    if (error.code != heif_error_Ok) {
        head.error = error.message ? error.message : "";
    }
    return head;
}
