// SPDX-License-Identifier: MIT
#include "plugins/scene/scene_check.h"

#include <algorithm>

namespace {

bool IsSoundMesh(SceneMesh const& mesh, std::size_t materials) {
    std::size_t const vertices = mesh.vertices.size();
    auto const fits = [vertices](std::vector<SceneVector> const& values) {
        return values.empty() || values.size() == vertices;
    };
    return fits(mesh.normals) && fits(mesh.textureCoordinates) &&
           (mesh.material < materials || (mesh.material == 0 && materials == 0)) &&
           std::all_of(mesh.faceIndices.begin(), mesh.faceIndices.end(),
                       [vertices](unsigned int index) { return index < vertices; }) &&
           std::all_of(mesh.faces.begin(), mesh.faces.end(), [&mesh](SceneFace const& face) {
               return face.first <= mesh.faceIndices.size() && face.count <= mesh.faceIndices.size() - face.first;
           });
}

} // namespace

bool IsSoundScene(CSceneDocument const& scene, std::size_t& mesh) {
    for (mesh = 0; mesh < scene.meshes.size(); ++mesh) {
        if (!IsSoundMesh(scene.meshes[mesh], scene.materials.size())) {
            return false;
        }
    }
    for (std::size_t i = 0; i < scene.nodes.size(); ++i) {
        SceneNode const& node = scene.nodes[i];
        bool const isInTree = i == 0 ? node.parent == SceneNode::NoParent : node.parent < i;
        if (!isInTree || std::any_of(node.meshes.begin(), node.meshes.end(),
                                     [&scene](unsigned int index) { return index >= scene.meshes.size(); })) {
            return false;
        }
    }
    return true;
}
