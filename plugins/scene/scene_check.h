// SPDX-License-Identifier: MIT
// Whether a scene's parts refer only to what is there. What comes from outside and what a host wants written is checked
// by it before anybody follows an index.

#pragma once

#include "media/scene_document.h"

#include <cstddef>

/// @param mesh  Receives the index of the first broken mesh; the number of meshes when a node is broken.
bool IsSoundScene(CSceneDocument const& scene, std::size_t& mesh);
