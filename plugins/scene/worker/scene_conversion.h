// SPDX-License-Identifier: MIT
// Between assimp's scene and the toolkit's document.

#pragma once

#include "media/scene_document.h"
#include "plugins/scene/scene_wire.h"

#include <memory>

struct aiScene;

/// Fills a document, whose format is set already. The tree is walked without recursion, however deep it is.
/// @param withGeometry  Otherwise the meshes stay away; they are counted and measured all the same.
SceneReply ConvertScene(aiScene const& from, bool withGeometry, CSceneDocument& to);

/// Makes assimp's scene of a sound document.
/// @param hasAddresses  The format's texture paths are parts of addresses.
std::unique_ptr<aiScene> MakeAssimpScene(CSceneDocument const& from, bool hasAddresses);

/// A scene that looks the same, whose nodes stand below the root, each with one mesh in the scene's own space: what a
/// format without a tree is made of.
CSceneDocument FlattenScene(CSceneDocument const& from);
