// SPDX-License-Identifier: MIT
// Headers of scenes without assimp. Its readers build the whole scene to tell its counts, in a process of their own;
// these go through a file once, keep at most the points, and run in the host. Each knows the plain form of its format,
// which nearly all files have, and there tells what assimp would tell. On anything else, be it rare or broken, it gives
// up, and the worker has the last word: nothing is refused here.
//
// Known are: binary .stl, binary .ply, and .obj of polygons with at most one plain .mtl.

#pragma once

#include "media/scene_document.h"
#include "plugins/scene/quick/quick_source.h"

#include <string_view>

/// @param format  The format's word.
/// @param scene   Empty. Receives the format, the bounding box, the materials, the metadata, and all counts but, for
///                .obj, those of meshes and nodes. After a false, anything.
/// @return false when the file has to be read by assimp.
bool ReadQuickHeader(std::string_view format, QuickSource& source, CSceneDocument& scene);

// One for each format.
bool ReadQuickStl(QuickSource& source, CSceneDocument& scene);
bool ReadQuickPly(QuickSource& source, CSceneDocument& scene);
bool ReadQuickObj(QuickSource& source, CSceneDocument& scene);
