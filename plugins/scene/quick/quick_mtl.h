// SPDX-License-Identifier: MIT
// The materials of an .obj file: lines of a keyword and its values, below the name of each material.

#pragma once

#include "media/scene_document.h"
#include "plugins/scene/quick/quick_source.h"

#include <string>
#include <vector>

struct QuickMaterials {
    std::vector<std::string> names; ///< As the files have them; as many as materials.
    std::vector<SceneMaterial> materials;

    /// Adds one as assimp makes it before anything is known of it; nothing happens when the name is there already.
    void Add(std::string_view name);
};

/// Adds the materials of a file.
/// @return false for what is not plain.
bool ReadQuickMtl(QuickSource& source, QuickMaterials& materials);
