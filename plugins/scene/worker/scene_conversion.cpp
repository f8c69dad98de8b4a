// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/scene_conversion.h"

#include "plugins/scene/worker/texture_path.h"
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <assimp/scene.h>
#include <cmath>
#include <cstring>

namespace {

using Text = CXTString<char16_t>;

Text ToText(aiString const& text) {
    return Text(XCA2W(text.C_Str(), xEncodingUtf8));
}

std::vector<SceneVector> ToVectors(aiVector3D const* from, unsigned int count) {
    std::vector<SceneVector> to;
    to.reserve(from ? count : 0);
    for (unsigned int i = 0; from && i < count; ++i) {
        to.push_back({from[i].x, from[i].y, from[i].z});
    }
    return to;
}

SceneMesh ToMesh(aiMesh const& from) {
    SceneMesh to;
    to.name = ToText(from.mName);
    to.vertices = ToVectors(from.mVertices, from.mNumVertices);
    to.normals = ToVectors(from.mNormals, from.mNumVertices);
    to.textureCoordinates = ToVectors(from.mTextureCoords[0], from.mNumVertices);
    to.material = from.mMaterialIndex;
    to.faces.reserve(from.mNumFaces);
    for (unsigned int i = 0; i < from.mNumFaces; ++i) {
        aiFace const& face = from.mFaces[i];
        to.faces.push_back({static_cast<unsigned int>(to.faceIndices.size()), face.mNumIndices});
        to.faceIndices.insert(to.faceIndices.end(), face.mIndices, face.mIndices + face.mNumIndices);
    }
    return to;
}

SceneMaterial ToMaterial(aiMaterial const& from, aiScene const& scene, bool hasAddresses) {
    SceneMaterial to;
    aiString name;
    if (from.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS) {
        to.name = ToText(name);
    }
    aiColor4D color;
    if (from.Get(AI_MATKEY_BASE_COLOR, color) == aiReturn_SUCCESS ||
        from.Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS) {
        to.diffuse = {color.r, color.g, color.b, color.a};
    }
    float opacity = 1;
    if (from.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS) {
        to.diffuse[3] = opacity;
    }
    for (unsigned int i = 0; i < from.mNumProperties; ++i) {
        aiMaterialProperty const& property = *from.mProperties[i];
        aiString path;
        bool const isPath =
            std::strcmp(property.mKey.C_Str(), _AI_MATKEY_TEXTURE_BASE) == 0 &&
            from.Get(_AI_MATKEY_TEXTURE_BASE, property.mSemantic, property.mIndex, path) == aiReturn_SUCCESS;
        if (!isPath || path.length == 0 || path.data[0] == '*' || scene.GetEmbeddedTexture(path.C_Str())) {
            continue; // no texture, or one inside the file
        }
        Text const toolkitPath = ToTexturePath(path.C_Str(), hasAddresses);
        if (std::find(to.texturePaths.begin(), to.texturePaths.end(), toolkitPath) == to.texturePaths.end()) {
            to.texturePaths.push_back(toolkitPath);
        }
    }
    return to;
}

char16_t const* LightKind(aiLightSourceType type) {
    switch (type) {
    case aiLightSource_DIRECTIONAL: return u"directional";
    case aiLightSource_POINT: return u"point";
    case aiLightSource_SPOT: return u"spot";
    case aiLightSource_AMBIENT: return u"ambient";
    case aiLightSource_AREA: return u"area";
    default: return u"";
    }
}

void AddMetadata(aiMetadata const& from, CMetadata& to) {
    for (unsigned int i = 0; i < from.mNumProperties; ++i) {
        Text const name = ToText(from.mKeys[i]);
        aiMetadataEntry const& value = from.mValues[i];
        switch (value.mType) {
        case AI_BOOL: to.SetInteger(name, *static_cast<bool const*>(value.mData) ? 1 : 0); break;
        case AI_INT32: to.SetInteger(name, *static_cast<int32_t const*>(value.mData)); break;
        case AI_UINT64: to.SetInteger(name, static_cast<long long>(*static_cast<uint64_t const*>(value.mData))); break;
        case AI_FLOAT: to.SetNumber(name, *static_cast<float const*>(value.mData)); break;
        case AI_DOUBLE: to.SetNumber(name, *static_cast<double const*>(value.mData)); break;
        case AI_AISTRING: to.SetText(name, ToText(*static_cast<aiString const*>(value.mData))); break;
        default: break; // vectors and nested tables say nothing to a reader of a list
        }
    }
}

/// What assimp leaves of a format's unit.
std::optional<double> UnitMeters(std::string_view format, aiMetadata const* metadata) {
    if (format == "gltf" || format == "gltf2") {
        return 1.0; // by the format's definition
    }
    float factor = 0;
    double preciseFactor = 0;
    if (format == "fbx" && metadata) {
        if (metadata->Get("UnitScaleFactor", factor)) {
            return factor * 0.01; // in centimetres
        }
        if (metadata->Get("UnitScaleFactor", preciseFactor)) {
            return preciseFactor * 0.01;
        }
    }
    return std::nullopt;
}

/// Walks the tree, parents before children; each node's matrix from its own space to the scene's goes into `globals`.
std::vector<SceneNode> ToNodes(aiNode const& root, std::vector<aiMatrix4x4>& globals) {
    struct Step {
        aiNode const* node;
        unsigned int parent;
    };
    std::vector<SceneNode> nodes;
    std::vector<Step> open{{&root, SceneNode::NoParent}};
    while (!open.empty()) {
        Step const step = open.back();
        open.pop_back();
        auto const index = static_cast<unsigned int>(nodes.size());
        aiMatrix4x4 const& transform = step.node->mTransformation;
        SceneNode& node = nodes.emplace_back();
        node.name = ToText(step.node->mName);
        node.parent = step.parent;
        std::copy_n(transform[0], 16, node.transform.begin());
        node.meshes.assign(step.node->mMeshes, step.node->mMeshes + step.node->mNumMeshes);
        globals.push_back(step.parent == SceneNode::NoParent ? transform : globals[step.parent] * transform);
        for (unsigned int i = step.node->mNumChildren; i > 0; --i) {
            open.push_back({step.node->mChildren[i - 1], index});
        }
    }
    return nodes;
}

bool HasNumbers(aiMesh const& mesh) {
    return std::all_of(mesh.mVertices, mesh.mVertices + mesh.mNumVertices, [](aiVector3D const& vertex) {
        return std::isfinite(vertex.x) && std::isfinite(vertex.y) && std::isfinite(vertex.z);
    });
}

bool IsSound(aiMesh const& mesh, aiScene const& scene) {
    return (mesh.mMaterialIndex == 0 || mesh.mMaterialIndex < scene.mNumMaterials) &&
           std::all_of(mesh.mFaces, mesh.mFaces + mesh.mNumFaces, [&mesh](aiFace const& face) {
               return std::all_of(face.mIndices, face.mIndices + face.mNumIndices,
                                  [&mesh](unsigned int index) { return index < mesh.mNumVertices; });
           });
}

void Measure(aiScene const& scene, std::vector<SceneNode> const& nodes, std::vector<aiMatrix4x4> const& globals,
             SceneBox& box) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (unsigned int const index : nodes[i].meshes) {
            aiMesh const& mesh = *scene.mMeshes[index];
            for (unsigned int k = 0; k < mesh.mNumVertices; ++k) {
                aiVector3D const point = globals[i] * mesh.mVertices[k];
                box.Add({point.x, point.y, point.z});
            }
        }
    }
}

void Count(aiScene const& from, CSceneDocument& to) {
    unsigned long long vertices = 0;
    unsigned long long faces = 0;
    for (unsigned int i = 0; i < from.mNumMeshes; ++i) {
        vertices += from.mMeshes[i]->mNumVertices;
        faces += from.mMeshes[i]->mNumFaces;
    }
    to.counts = {.vertices = vertices,
                 .faces = faces,
                 .meshes = from.mNumMeshes,
                 .materials = from.mNumMaterials,
                 .nodes = to.nodes.size(),
                 .cameras = from.mNumCameras,
                 .lights = from.mNumLights,
                 .animations = from.mNumAnimations};
}

} // namespace

SceneReply ConvertScene(aiScene const& from, bool withGeometry, CSceneDocument& to) {
    for (unsigned int i = 0; i < from.mNumMeshes; ++i) {
        if (!HasNumbers(*from.mMeshes[i])) {
            return {IoOwnText, SceneFault::NoNumber, i, {}};
        }
        if (!IsSound(*from.mMeshes[i], from)) {
            return {IoOwnText, SceneFault::UnsoundMesh, i, {}};
        }
    }
    std::string const format(XCW2A(to.format, xEncodingUtf8));
    std::vector<aiMatrix4x4> globals;
    to.nodes = ToNodes(*from.mRootNode, globals);
    for (SceneNode const& node : to.nodes) {
        if (std::any_of(node.meshes.begin(), node.meshes.end(),
                        [&from](unsigned int index) { return index >= from.mNumMeshes; })) {
            return {IoBadFormat, SceneFault::None, 0, {}};
        }
    }
    Measure(from, to.nodes, globals, to.boundingBox);
    Count(from, to);
    for (unsigned int i = 0; i < from.mNumMaterials; ++i) {
        to.materials.push_back(ToMaterial(*from.mMaterials[i], from, HasAddresses(format)));
    }
    for (unsigned int i = 0; i < from.mNumCameras; ++i) {
        to.cameras.push_back({ToText(from.mCameras[i]->mName), from.mCameras[i]->mHorizontalFOV});
    }
    for (unsigned int i = 0; i < from.mNumLights; ++i) {
        to.lights.push_back({ToText(from.mLights[i]->mName), LightKind(from.mLights[i]->mType)});
    }
    if (from.mMetaData) {
        AddMetadata(*from.mMetaData, to.metadata);
    }
    to.unitMeters = UnitMeters(format, from.mMetaData);
    if (withGeometry) {
        for (unsigned int i = 0; i < from.mNumMeshes; ++i) {
            to.meshes.push_back(ToMesh(*from.mMeshes[i]));
        }
    } else {
        for (SceneNode& node : to.nodes) {
            node.meshes.clear();
        }
    }
    return {};
}
