// SPDX-License-Identifier: MIT
// A 3D scene in memory. A header that was read without the geometry has the counts, as far as the format tells them
// without reading everything, and no meshes.
//
// Threads: one at a time.

#pragma once

#include "media/media_api.h"
#include "media/metadata.h"
#include <zeltools/foundation/xstring.h>

#include <array>
#include <limits>
#include <optional>
#include <vector>

struct SceneVector {
    float x = 0;
    float y = 0;
    float z = 0;
};

/// The smallest box round all vertices, in the scene's own units; empty at first.
struct SceneBox {
    SceneVector lowest{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                       std::numeric_limits<float>::max()};
    SceneVector highest{std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                        std::numeric_limits<float>::lowest()};

    bool IsEmpty() const { return lowest.x > highest.x; }
    ZEL_MEDIA_API void Add(SceneVector const& point);
};

/// A polygon: some of a mesh's faceIndices.
struct SceneFace {
    unsigned int first = 0; ///< Index into SceneMesh::faceIndices.
    unsigned int count = 0; ///< Corners.
};

struct SceneMesh {
    CXTString<char16_t> name;
    std::vector<SceneVector> vertices;
    std::vector<SceneVector> normals;            ///< As many as vertices, or none.
    std::vector<SceneVector> textureCoordinates; ///< As many as vertices, or none; z is 0 for two dimensions.
    std::vector<SceneFace> faces;
    std::vector<unsigned int> faceIndices; ///< Indices of vertices.
    unsigned int material = 0;             ///< Index into SceneDocument::materials.
};

struct SceneMaterial {
    CXTString<char16_t> name;
    std::array<float, 4> diffuse{1, 1, 1, 1}; ///< Red, green, blue, opacity.
    /// As the file gives them: the toolkit's form, often relative to the scene's folder. A texture that lies in the
    /// scene file itself has none.
    std::vector<CXTString<char16_t>> texturePaths;
};

/// A node of the tree; the first one is the root.
struct SceneNode {
    static constexpr unsigned int NoParent = 0xFFFFFFFF;

    CXTString<char16_t> name;
    unsigned int parent = NoParent;    ///< Index of a node before this one.
    std::array<float, 16> transform{}; ///< Row by row, relative to the parent; a point is a column.
    std::vector<unsigned int> meshes;  ///< Indices into CSceneDocument::meshes.
};

struct SceneCamera {
    CXTString<char16_t> name;
    float horizontalAngle = 0; ///< Whole field of view, radians.
};

struct SceneLight {
    CXTString<char16_t> name;
    CXTString<char16_t> kind; ///< "directional", "point", "spot", "ambient", "area"; empty when it is not known.
};

/// How much there is of everything. Nothing where it cannot be told without reading the whole file.
struct SceneCounts {
    std::optional<unsigned long long> vertices;
    std::optional<unsigned long long> faces;
    std::optional<unsigned long long> meshes;
    std::optional<unsigned long long> materials;
    std::optional<unsigned long long> nodes;
    std::optional<unsigned long long> cameras;
    std::optional<unsigned long long> lights;
    std::optional<unsigned long long> animations;
};

/// A scene. A document that a parser failed to fill is empty.
class ZEL_MEDIA_API CSceneDocument {
public:
    CXTString<char16_t> format; ///< The parser's word for the file format: "obj", "gltf2".
    SceneCounts counts;
    SceneBox boundingBox;             ///< Of the vertices with the nodes' transforms; empty when it is not known.
    std::optional<double> unitMeters; ///< Length of one unit; nothing when the file does not tell.
    std::vector<SceneMesh> meshes;
    std::vector<SceneMaterial> materials;
    std::vector<SceneNode> nodes;
    std::vector<SceneCamera> cameras;
    std::vector<SceneLight> lights;
    CMetadata metadata;

    /// Makes it empty again.
    void Clear() { *this = CSceneDocument(); }
    /// Sets the counts of what the document holds; those of the animations stay.
    void CountContent();
    /// The texture paths of all materials, each once, in their order.
    std::vector<CXTString<char16_t>> GetTexturePaths() const;
};
