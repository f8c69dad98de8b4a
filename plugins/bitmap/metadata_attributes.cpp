// SPDX-License-Identifier: MIT
#include "plugins/bitmap/metadata_attributes.h"

#include "plugins/bitmap/utf8_text.h"
#include <zeltools/foundation/four_cc.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using OIIO::TypeDesc;

/// A value of more elements is cut in its text: nobody reads it, and a program takes it from the file.
constexpr int MostElements = 256;

bool IsField(std::string_view name) {
    return name == "oiio:ColorSpace" || name == "oiio:subimagename";
}

void ReadAttribute(OIIO::ParamValue const& attribute, CMetadata& metadata) {
    CXTString<char16_t> const name = ToText(attribute.name().string());
    TypeDesc const type = attribute.type();
    if (type == TypeDesc::STRING) {
        metadata.SetText(name, ToText(attribute.get_ustring().string()));
    } else if (type.basetype == TypeDesc::UINT8 && type.arraylen > 0) {
        metadata.SetBinary(name, attribute.data(), static_cast<unsigned int>(type.size()));
    } else if (type.numelements() != 1 || type.aggregate != TypeDesc::SCALAR) {
        metadata.SetText(name, ToText(attribute.get_string(MostElements)));
    } else if (type.basetype == TypeDesc::INT64) {
        metadata.SetInteger(name, *static_cast<int64_t const*>(attribute.data()));
    } else if (type.basetype == TypeDesc::UINT32) {
        metadata.SetInteger(name, *static_cast<uint32_t const*>(attribute.data()));
    } else if (type.basetype == TypeDesc::FLOAT || type.basetype == TypeDesc::HALF) {
        metadata.SetNumber(name, attribute.get_float());
    } else if (type.basetype == TypeDesc::DOUBLE) {
        metadata.SetNumber(name, *static_cast<double const*>(attribute.data()));
    } else if (type.basetype <= TypeDesc::INT32) {
        metadata.SetInteger(name, attribute.get_int());
    } else {
        metadata.SetText(name, ToText(attribute.get_string(MostElements)));
    }
}

/// Attributes whose type is more than a number or a text. Readers know them by name and want them so.
struct TypedAttribute {
    std::string_view name;
    TypeDesc type;
};

TypedAttribute const typedAttributes[] = {
    {"chromaticities", TypeDesc(TypeDesc::FLOAT, 8)},
    {"worldtocamera", OIIO::TypeMatrix44},
    {"worldtoscreen", OIIO::TypeMatrix44},
    {"worldtoNDC", OIIO::TypeMatrix44},
    {"Exif:LensSpecification", TypeDesc(TypeDesc::FLOAT, 4)},
    {"GPS:Latitude", TypeDesc(TypeDesc::FLOAT, 3)},
    {"GPS:Longitude", TypeDesc(TypeDesc::FLOAT, 3)},
    {"GPS:TimeStamp", TypeDesc(TypeDesc::FLOAT, 3)},
};

/// Whether an attribute tells how one file kept its pixels, or is a type that its text does not give back.
bool IsOfOneFile(std::string_view name) {
    constexpr std::string_view names[] = {"compression",    "planarconfig",    "oiio:subimages",   "smpte:KeyCode",
                                          "smpte:TimeCode", "oiio:ColorSpace", "jpeg:subsampling", "oiio:subimagename"};
    constexpr std::string_view beginnings[] = {"tiff:", "thumbnail_", "image:", "oiio:sha", "oiio:SHA"};
    return std::find(std::begin(names), std::end(names), name) != std::end(names) ||
           std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&](std::string_view beginning) { return name.starts_with(beginning); });
}

/// Whether the part before the colon is a format's word: "png:bitDepth".
bool IsOfOneFormat(std::string_view name) {
    static std::vector<std::string> const formats =
        OIIO::Strutil::splits(OIIO::get_string_attribute("format_list"), ",");
    std::size_t const colon = name.find(':');
    return colon != std::string_view::npos &&
           std::find(formats.begin(), formats.end(), name.substr(0, colon)) != formats.end();
}

void WriteTyped(std::string const& name, std::string const& value, OIIO::ImageSpec& spec) {
    for (TypedAttribute const& typed : typedAttributes) {
        if (typed.name == name) {
            spec.attribute(name, typed.type, value);
            return;
        }
    }
    spec.attribute(name, value);
}

constexpr unsigned int NameKey = FourCC("NAME");
constexpr unsigned int ValueKey = FourCC("VALU");

CCustomData EntryOf(CMetadata const& metadata, unsigned int index) {
    CCustomData entry;
    unsigned int size = 0;
    void const* const bytes = metadata.GetStore().GetCustomPtr(index + 1, size);
    entry.SetData(bytes, size);
    return entry;
}

void WriteAttribute(CCustomData const& entry, std::string const& name, OIIO::ImageSpec& spec) {
    long long integer = 0;
    double number = 0;
    unsigned int size = 0;
    if (entry.GetLongInt(ValueKey, integer)) {
        spec.attribute(name, static_cast<int>(std::clamp(integer, -0x80000000LL, 0x7FFFFFFFLL)));
    } else if (entry.GetDouble(ValueKey, number)) {
        spec.attribute(name, static_cast<float>(number));
    } else if (entry.GetDataKindOf(ValueKey) == CustomDataBinary) {
        void const* const bytes = entry.GetCustomPtr(ValueKey, size);
        spec.attribute(name, TypeDesc(TypeDesc::UINT8, static_cast<int>(size)), bytes);
    } else {
        CXTString<char16_t> text;
        entry.GetString(ValueKey, text);
        WriteTyped(name, ToUtf8(text), spec);
    }
}

} // namespace

void ReadAttributes(OIIO::ImageSpec const& spec, CMetadata& metadata) {
    for (OIIO::ParamValue const& attribute : spec.extra_attribs) {
        if (!IsField(std::string_view(attribute.name().string()))) {
            ReadAttribute(attribute, metadata);
        }
    }
}

void WriteAttributes(CMetadata const& metadata, bool sameFormat, OIIO::ImageSpec& spec) {
    for (unsigned int i = 0; i < metadata.GetCount(); ++i) {
        CCustomData const entry = EntryOf(metadata, i);
        CXTString<char16_t> nameText;
        entry.GetString(NameKey, nameText);
        std::string const name = ToUtf8(nameText);
        if (!IsOfOneFile(name) && (sameFormat || !IsOfOneFormat(name))) {
            WriteAttribute(entry, name, spec);
        }
    }
    // The file's depth counts while the pixels are still of the type that it was widened to.
    int const bits = spec.get_int_attribute("oiio:BitsPerSample");
    if (spec.format.is_floating_point() || bits >= static_cast<int>(8 * spec.format.size()) ||
        bits <= static_cast<int>(4 * spec.format.size())) {
        spec.erase_attribute("oiio:BitsPerSample");
    }
}

long long GetInteger(CMetadata const& metadata, CXTString<char16_t> const& name, long long usual) {
    CXTString<char> const text(metadata.GetText(name));
    return text.IsEmpty() ? usual : std::strtoll(text, nullptr, 10);
}
