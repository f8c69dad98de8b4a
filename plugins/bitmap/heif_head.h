// SPDX-License-Identifier: MIT
// The pictures of a HEIF file (HEIC, AVIF), told by libheif without decoding one.

#pragma once

#include "plugins/bitmap/image_head.h"

ImageHead ReadHeifHead(PolledFile& file, std::size_t mostSubImages);
