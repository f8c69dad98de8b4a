// SPDX-License-Identifier: MIT
// The frames of a GIF, told from its blocks.

#pragma once

#include "plugins/bitmap/image_head.h"

ImageHead ReadGifHead(PolledFile& file, std::size_t mostSubImages);
