// SPDX-License-Identifier: MIT
// The named values beside the pixels, between the document and OpenImageIO.

#pragma once

#include "media/metadata.h"

#include <OpenImageIO/imageio.h>

/// Enters all attributes of a description, apart from those that the document has fields for.
void ReadAttributes(OIIO::ImageSpec const& spec, CMetadata& metadata);

/// Gives a description the attributes that still hold in another file: what the picture shows and where it comes from,
/// but not how the old file kept it.
/// @param sameFormat  With those that only the format knows.
void WriteAttributes(CMetadata const& metadata, bool sameFormat, OIIO::ImageSpec& spec);

/// A value that is a whole number; `usual` when there is none.
long long GetInteger(CMetadata const& metadata, CXTString<char16_t> const& name, long long usual);
