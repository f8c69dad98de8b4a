// SPDX-License-Identifier: MIT
// Writing a scene through assimp.

#pragma once

#include "media/scene_document.h"
#include "plugins/scene/scene_wire.h"

/// Writes the request's file, and its format's companions beside it.
/// @param scene  A sound one.
SceneReply WriteScene(SceneRequest const& request, CSceneDocument const& scene);
