// SPDX-License-Identifier: MIT
// The manager of a scene's load or save.
//
//     CSceneIo io(CFileNameSpec(u"\\home\\ana\\a.obj"), IoFlagLoading | IoFlagSilent, nullptr);
//     CSceneDocument scene;
//     if (!io.ReadHeader(scene))
//         Print(io.GetIoErrorTxt());
//
// Threads: one at a time.

#pragma once

#include "media/media_api.h"
#include "media/media_io.h"
#include "media/scene_document.h"

class ZEL_MEDIA_API CSceneIo : public CMediaIo {
public:
    using CMediaIo::CMediaIo;

    /// Reads the counts, as far as the format tells them without the geometry. False on failure, with an empty scene.
    bool ReadHeader(CSceneDocument& scene, CIoOptions* options = nullptr);
    /// Reads everything.
    bool Read(CSceneDocument& scene, CIoOptions* options = nullptr);
    /// Writes the file, which is in place whole or not at all.
    bool Write(CSceneDocument const& scene, CIoOptions* options = nullptr);

    /// Has CFileIo::CreateFileIoFromPath make managers of this class for scenes.
    static void Register();
};
