// SPDX-License-Identifier: MIT
// What must hold of a file before OpenImageIO may open it. Some of its readers believe the numbers of a file where
// that costs memory, a crash or a picture that is half grey; each check names the fault that it stops.

#pragma once

#include "plugins/bitmap/polled_file.h"

#include <string>

/// What is wrong with a file.
enum class FileFault {
    None,
    Damaged,       ///< Its numbers contradict each other.
    CutShort,      ///< It ends before its pixels do.
    UnreadableIcon ///< A sound icon that the library has no reader for.
};

/// @param allPixels  Whether the pixels will be read, and not the header alone.
FileFault CheckFile(std::string const& format, PolledFile& file, bool allPixels);

/// How many pixels a file claims to have, for the formats that are decoded as soon as they are opened; 0 for others,
/// and where it cannot be told.
unsigned long long ClaimedPixels(std::string const& format, PolledFile& file);
