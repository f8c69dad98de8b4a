// SPDX-License-Identifier: MIT
#include "plugins/bitmap/image_header.h"

#include "plugins/bitmap/metadata_attributes.h"
#include "plugins/bitmap/utf8_text.h"

#include <algorithm>
#include <string>

namespace {

using OIIO::TypeDesc;

/// The one type that holds all of these channels.
TypeDesc::BASETYPE MergedType(OIIO::ImageSpec const& spec) {
    auto merged = static_cast<TypeDesc::BASETYPE>(spec.format.basetype);
    for (TypeDesc const& channel : spec.channelformats) {
        if (channel.basetype != spec.channelformats[0].basetype) {
            return TypeDesc::FLOAT;
        }
        merged = static_cast<TypeDesc::BASETYPE>(channel.basetype);
    }
    return merged;
}

/// Where the pixels lie, in the metadata of the document; and what they are in the file, where the document differs.
struct WindowField {
    char16_t const* name;
    int OIIO::ImageSpec::*field;
    int OIIO::ImageSpec::*usual; ///< What it is when nothing is said; null for 0.
};

constexpr WindowField windowFields[] = {
    {u"image:x", &OIIO::ImageSpec::x, nullptr},
    {u"image:y", &OIIO::ImageSpec::y, nullptr},
    {u"image:z", &OIIO::ImageSpec::z, nullptr},
    {u"image:fullX", &OIIO::ImageSpec::full_x, nullptr},
    {u"image:fullY", &OIIO::ImageSpec::full_y, nullptr},
    {u"image:fullZ", &OIIO::ImageSpec::full_z, nullptr},
    {u"image:fullWidth", &OIIO::ImageSpec::full_width, &OIIO::ImageSpec::width},
    {u"image:fullHeight", &OIIO::ImageSpec::full_height, &OIIO::ImageSpec::height},
    {u"image:fullDepth", &OIIO::ImageSpec::full_depth, &OIIO::ImageSpec::depth},
};

int UsualValue(OIIO::ImageSpec const& spec, WindowField const& window) {
    return window.usual ? spec.*window.usual : 0;
}

void DescribeStorage(OIIO::ImageSpec const& spec, CSubImage& subImage) {
    for (WindowField const& window : windowFields) {
        if (spec.*window.field != UsualValue(spec, window)) {
            subImage.metadata.SetInteger(window.name, spec.*window.field);
        }
    }
    if (spec.deep) {
        subImage.metadata.SetInteger(u"image:deep", 1);
    }
    if (!spec.channelformats.empty()) {
        std::string types;
        for (TypeDesc const& channel : spec.channelformats) {
            types += (types.empty() ? "" : ",") + std::string(channel.c_str());
        }
        subImage.metadata.SetText(u"image:channelTypes", ToText(types));
    } else if (TypeDescOf(subImage.pixelType).basetype != spec.format.basetype) {
        subImage.metadata.SetText(u"image:storedType", ToText(spec.format.c_str()));
    }
}

} // namespace

PixelType PixelTypeOf(OIIO::ImageSpec const& spec) {
    switch (MergedType(spec)) {
    case TypeDesc::UINT8: return PixelType::UInt8;
    case TypeDesc::UINT16: return PixelType::UInt16;
    case TypeDesc::UINT32:
    case TypeDesc::UINT64: return PixelType::UInt32;
    case TypeDesc::HALF: return PixelType::Half;
    default: return PixelType::Float; // whole for signed integers up to 16 bits
    }
}

OIIO::TypeDesc TypeDescOf(PixelType type) {
    switch (type) {
    case PixelType::UInt8: return TypeDesc::UINT8;
    case PixelType::UInt16: return TypeDesc::UINT16;
    case PixelType::UInt32: return TypeDesc::UINT32;
    case PixelType::Half: return TypeDesc::HALF;
    case PixelType::Float: break;
    }
    return TypeDesc::FLOAT;
}

unsigned long long CountPixels(OIIO::ImageSpec const& spec) {
    unsigned long long count = 1;
    for (int const size : {spec.width, spec.height, std::max(spec.depth, 1)}) {
        if (size <= 0) {
            return 0;
        }
        if (__builtin_mul_overflow(count, static_cast<unsigned long long>(size), &count)) {
            return ~0ULL;
        }
    }
    return count;
}

void DescribeSubImage(OIIO::ImageSpec const& spec, CSubImage& subImage) {
    subImage.name = ToText(std::string(spec.get_string_attribute("oiio:subimagename")));
    subImage.width = static_cast<unsigned int>(spec.width);
    subImage.height = static_cast<unsigned int>(spec.height);
    subImage.depth = static_cast<unsigned int>(std::max(spec.depth, 1));
    for (int i = 0; i < spec.nchannels; ++i) {
        subImage.channels.Add(ToText(std::string(spec.channel_name(i))));
    }
    subImage.pixelType = PixelTypeOf(spec);
    subImage.colorSpace = ToText(std::string(spec.get_string_attribute("oiio:ColorSpace")));
    DescribeStorage(spec, subImage);
    ReadAttributes(spec, subImage.metadata);
}

OIIO::ImageSpec MakeSpec(CSubImage const& subImage, bool sameFormat) {
    int const channelCount = subImage.channels.GetSize();
    OIIO::ImageSpec spec(static_cast<int>(subImage.width), static_cast<int>(subImage.height), channelCount,
                         TypeDescOf(subImage.pixelType));
    spec.depth = static_cast<int>(subImage.depth);
    spec.full_depth = spec.depth;
    spec.alpha_channel = -1;
    spec.z_channel = -1;
    spec.channelnames.clear();
    for (int i = 0; i < channelCount; ++i) {
        std::string const name = ToUtf8(subImage.channels[i]);
        if (name == "A") {
            spec.alpha_channel = i;
        } else if (name == "Z") {
            spec.z_channel = i;
        }
        spec.channelnames.push_back(name);
    }
    for (WindowField const& window : windowFields) {
        spec.*window.field = static_cast<int>(GetInteger(subImage.metadata, window.name, UsualValue(spec, window)));
    }
    WriteAttributes(subImage.metadata, sameFormat, spec);
    if (!subImage.colorSpace.IsEmpty()) {
        spec.attribute("oiio:ColorSpace", ToUtf8(subImage.colorSpace));
    }
    if (!subImage.name.IsEmpty()) {
        spec.attribute("oiio:subimagename", ToUtf8(subImage.name));
    }
    return spec;
}
