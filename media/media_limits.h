// SPDX-License-Identifier: MIT
// How much a host lets a file ask for. A file that asks for more is refused, with both numbers; it is never cut down.

#pragma once

/// What a limit counts.
enum class MediaLimit {
    Pixels,
    ImageBytes,
    SubImages,
    Faces,
    Vertices,
    Time, ///< Milliseconds.
};

/// Limits of one operation. The defaults take every honest file of today and keep a lying one from taking the machine.
struct MediaLimits {
    unsigned long long maxPixels = 1ULL << 32;      ///< Of one subimage: 65536 by 65536.
    unsigned long long maxImageBytes = 16ULL << 30; ///< Of one subimage's pixels in memory.
    unsigned int maxSubImages = 65536;
    unsigned long long maxFaces = 200'000'000;
    unsigned long long maxVertices = 500'000'000;
    unsigned int timeMs = 0; ///< Of the whole operation; 0 for none.
};
