// SPDX-License-Identifier: MIT
// Reading a scene through assimp. Nothing is processed afterwards: polygons stay as they are.

#pragma once

#include "media/scene_document.h"
#include "plugins/scene/scene_wire.h"

/// @param scene  Receives what the request's task asks for; after a failure whatever was found.
SceneReply ReadScene(SceneRequest const& request, CSceneDocument& scene);
