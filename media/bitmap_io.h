// SPDX-License-Identifier: MIT
// The manager of an image's load or save.
//
//     CBitmapIo io(CFileNameSpec(u"\\home\\ana\\a.png"), IoFlagLoading | IoFlagSilent, nullptr);
//     CImageDocument image;
//     if (!io.ReadHeader(image))
//         Print(io.GetIoErrorTxt());
//
// Threads: one at a time.

#pragma once

#include "media/image_document.h"
#include "media/media_api.h"
#include "media/media_io.h"

class ZEL_MEDIA_API CBitmapIo : public CMediaIo {
public:
    using CMediaIo::CMediaIo;

    /// Reads everything but the pixels. False on failure, with an empty image.
    bool ReadHeader(CImageDocument& image, CIoOptions* options = nullptr);
    /// Reads everything.
    bool Read(CImageDocument& image, CIoOptions* options = nullptr);
    /// Writes the file, which is in place whole or not at all.
    bool Write(CImageDocument const& image, CIoOptions* options = nullptr);

    /// Has CFileIo::CreateFileIoFromPath make managers of this class for images.
    static void Register();
};
