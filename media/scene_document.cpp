// SPDX-License-Identifier: MIT
#include "media/scene_document.h"

#include <algorithm>

void SceneBox::Add(SceneVector const& point) {
    lowest = {std::min(lowest.x, point.x), std::min(lowest.y, point.y), std::min(lowest.z, point.z)};
    highest = {std::max(highest.x, point.x), std::max(highest.y, point.y), std::max(highest.z, point.z)};
}

void CSceneDocument::CountContent() {
    unsigned long long vertices = 0;
    unsigned long long faces = 0;
    for (SceneMesh const& mesh : meshes) {
        vertices += mesh.vertices.size();
        faces += mesh.faces.size();
    }
    counts.vertices = vertices;
    counts.faces = faces;
    counts.meshes = meshes.size();
    counts.materials = materials.size();
    counts.nodes = nodes.size();
    counts.cameras = cameras.size();
    counts.lights = lights.size();
}

std::vector<CXTString<char16_t>> CSceneDocument::GetTexturePaths() const {
    std::vector<CXTString<char16_t>> paths;
    for (SceneMaterial const& material : materials) {
        for (CXTString<char16_t> const& path : material.texturePaths) {
            if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
                paths.push_back(path);
            }
        }
    }
    return paths;
}
