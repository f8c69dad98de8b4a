// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/scene_conversion.h"
#include "plugins/scene/worker/texture_path.h"
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <assimp/scene.h>
#include <iterator>

namespace {

using Text = CXTString<char16_t>;

aiString ToString(Text const& text) {
    return aiString(static_cast<char const*>(XCW2A(text, xEncodingUtf8)));
}

aiVector3D* ToVectors(std::vector<SceneVector> const& from) {
    if (from.empty()) {
        return nullptr;
    }
    auto* const to = new aiVector3D[from.size()];
    std::transform(from.begin(), from.end(), to, [](SceneVector const& v) { return aiVector3D(v.x, v.y, v.z); });
    return to;
}

unsigned int PrimitiveType(unsigned int corners) {
    return corners == 1   ? aiPrimitiveType_POINT
           : corners == 2 ? aiPrimitiveType_LINE
           : corners == 3 ? aiPrimitiveType_TRIANGLE
                          : aiPrimitiveType_POLYGON;
}

/// The arrays of assimp's records are made by new[], and deleted by the records.
template <class Item, class From, class Make>
Item** MakeArray(From const& from, unsigned int& count, Make const& make) {
    auto** const items = from.empty() ? nullptr : new Item* [from.size()] {};
    count = static_cast<unsigned int>(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        items[i] = make(from[i]);
    }
    return items;
}

aiMesh* MakeMesh(SceneMesh const& from) {
    auto* const to = new aiMesh;
    to->mName = ToString(from.name);
    to->mNumVertices = static_cast<unsigned int>(from.vertices.size());
    to->mVertices = ToVectors(from.vertices);
    to->mNormals = ToVectors(from.normals);
    to->mTextureCoords[0] = ToVectors(from.textureCoordinates);
    to->mNumUVComponents[0] = from.textureCoordinates.empty() ? 0 : 2;
    to->mMaterialIndex = from.material;
    to->mNumFaces = static_cast<unsigned int>(from.faces.size());
    to->mFaces = new aiFace[from.faces.size()];
    for (std::size_t i = 0; i < from.faces.size(); ++i) {
        SceneFace const& face = from.faces[i];
        to->mPrimitiveTypes |= PrimitiveType(face.count);
        to->mFaces[i].mNumIndices = face.count;
        to->mFaces[i].mIndices = new unsigned int[face.count];
        std::copy_n(from.faceIndices.begin() + face.first, face.count, to->mFaces[i].mIndices);
    }
    return to;
}

aiMaterial* MakeMaterial(SceneMaterial const& from, bool hasAddresses) {
    auto* const to = new aiMaterial;
    aiString const name = ToString(from.name);
    to->AddProperty(&name, AI_MATKEY_NAME);
    aiColor4D const color(from.diffuse[0], from.diffuse[1], from.diffuse[2], from.diffuse[3]);
    to->AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
    to->AddProperty(&color, 1, AI_MATKEY_BASE_COLOR);
    to->AddProperty(&from.diffuse[3], 1, AI_MATKEY_OPACITY);
    // The first texture is the colour's in nearly every file; of the others the document does not tell the use.
    constexpr aiTextureType uses[] = {aiTextureType_DIFFUSE, aiTextureType_SPECULAR, aiTextureType_EMISSIVE,
                                      aiTextureType_NORMALS, aiTextureType_AMBIENT,  aiTextureType_OPACITY};
    for (std::size_t i = 0; i < std::min(from.texturePaths.size(), std::size(uses)); ++i) {
        aiString const path(FromTexturePath(from.texturePaths[i], hasAddresses));
        to->AddProperty(&path, AI_MATKEY_TEXTURE(uses[i], 0));
    }
    return to;
}

aiNode* MakeNodes(CSceneDocument const& from) {
    if (from.nodes.empty()) {
        auto* const root = new aiNode("scene");
        root->mNumMeshes = static_cast<unsigned int>(from.meshes.size());
        root->mMeshes = new unsigned int[from.meshes.size()];
        for (unsigned int i = 0; i < root->mNumMeshes; ++i) {
            root->mMeshes[i] = i;
        }
        return root;
    }
    std::vector<unsigned int> children(from.nodes.size());
    std::vector<aiNode*> nodes;
    for (SceneNode const& node : from.nodes) {
        if (node.parent != SceneNode::NoParent) {
            ++children[node.parent];
        }
    }
    for (std::size_t i = 0; i < from.nodes.size(); ++i) {
        SceneNode const& node = from.nodes[i];
        auto* const made = nodes.emplace_back(new aiNode);
        made->mName = ToString(node.name);
        std::copy(node.transform.begin(), node.transform.end(), made->mTransformation[0]);
        made->mNumMeshes = static_cast<unsigned int>(node.meshes.size());
        made->mMeshes = node.meshes.empty() ? nullptr : new unsigned int[node.meshes.size()];
        std::copy(node.meshes.begin(), node.meshes.end(), made->mMeshes);
        made->mChildren = children[i] == 0 ? nullptr : new aiNode* [children[i]] {};
        if (node.parent != SceneNode::NoParent) {
            aiNode* const parent = nodes[node.parent];
            made->mParent = parent;
            parent->mChildren[parent->mNumChildren++] = made;
        }
    }
    return nodes.front();
}

aiLightSourceType LightType(Text const& kind) {
    struct Row {
        char16_t const* kind;
        aiLightSourceType type;
    };
    constexpr Row rows[] = {{u"directional", aiLightSource_DIRECTIONAL},
                            {u"spot", aiLightSource_SPOT},
                            {u"ambient", aiLightSource_AMBIENT},
                            {u"area", aiLightSource_AREA}};
    for (Row const& row : rows) {
        if (kind == row.kind) {
            return row.type;
        }
    }
    return aiLightSource_POINT;
}

/// Those whose place a node of the same name tells; assimp's exporters look for it.
template <class Item>
std::vector<Item> OnesWithNodes(std::vector<Item> const& items, CSceneDocument const& scene) {
    std::vector<Item> kept;
    std::copy_if(items.begin(), items.end(), std::back_inserter(kept), [&scene](Item const& item) {
        return std::any_of(scene.nodes.begin(), scene.nodes.end(),
                           [&item](SceneNode const& node) { return node.name == item.name; });
    });
    return kept;
}

/// A point moved by a node's matrix.
SceneVector Transform(std::array<float, 16> const& m, SceneVector const& p) {
    return {m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3], m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
            m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]};
}

std::array<float, 16> Multiply(std::array<float, 16> const& a, std::array<float, 16> const& b) {
    std::array<float, 16> product{};
    for (std::size_t i = 0; i < 16; ++i) {
        for (std::size_t k = 0; k < 4; ++k) {
            product[i] += a[i / 4 * 4 + k] * b[k * 4 + i % 4];
        }
    }
    return product;
}

} // namespace

CSceneDocument FlattenScene(CSceneDocument const& from) {
    constexpr std::array<float, 16> identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    CSceneDocument to;
    to.materials = from.materials;
    to.nodes.emplace_back().transform = identity;
    std::vector<std::array<float, 16>> globals;
    auto const add = [&](SceneMesh mesh, std::array<float, 16> const& matrix) {
        for (SceneVector& vertex : mesh.vertices) {
            vertex = Transform(matrix, vertex);
        }
        mesh.normals.clear(); // which would have to turn, and which no flat format keeps
        to.nodes.push_back({mesh.name, 0, identity, {static_cast<unsigned int>(to.meshes.size())}});
        to.meshes.push_back(std::move(mesh));
    };
    for (SceneNode const& node : from.nodes) {
        globals.push_back(node.parent == SceneNode::NoParent ? node.transform
                                                             : Multiply(globals[node.parent], node.transform));
        for (unsigned int const index : node.meshes) {
            add(from.meshes[index], globals.back());
        }
    }
    if (from.nodes.empty()) {
        for (SceneMesh const& mesh : from.meshes) {
            add(mesh, identity);
        }
    }
    return to;
}

std::unique_ptr<aiScene> MakeAssimpScene(CSceneDocument const& from, bool hasAddresses) {
    auto to = std::make_unique<aiScene>();
    // Faces share vertices, which AI_SCENE_FLAGS_NON_VERBOSE_FORMAT would tell. It stays unset: assimp would then part
    // them with room for triangles only, and write past its end for a quadrangle.
    to->mMeshes = MakeArray<aiMesh>(from.meshes, to->mNumMeshes, MakeMesh);
    auto const materials = from.materials.empty() ? std::vector<SceneMaterial>(1) : from.materials;
    to->mMaterials = MakeArray<aiMaterial>(materials, to->mNumMaterials, [hasAddresses](SceneMaterial const& material) {
        return MakeMaterial(material, hasAddresses);
    });
    to->mCameras =
        MakeArray<aiCamera>(OnesWithNodes(from.cameras, from), to->mNumCameras, [](SceneCamera const& camera) {
            auto* const made = new aiCamera;
            made->mName = ToString(camera.name);
            made->mHorizontalFOV = camera.horizontalAngle;
            return made;
        });
    to->mLights = MakeArray<aiLight>(OnesWithNodes(from.lights, from), to->mNumLights, [](SceneLight const& light) {
        auto* const made = new aiLight;
        made->mName = ToString(light.name);
        made->mType = LightType(light.kind);
        return made;
    });
    to->mRootNode = MakeNodes(from);
    return to;
}
