// SPDX-License-Identifier: MIT
// Where the pixels of a TIFF lie. OpenImageIO takes those that lie behind the file's end for black.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <cstdint>

/// Where the last strip or tile of all pages ends; 0 where the directories are damaged or tell of none.
std::uint64_t FindEndOfTiffPixels(PolledFile& file);
