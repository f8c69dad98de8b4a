// SPDX-License-Identifier: MIT
// Binary .stl: 80 bytes of any kind, the number of triangles, and 50 bytes for each: twelve numbers (a normal, three
// points) and two bytes that some programs keep a colour in.
#include "plugins/scene/quick/quick_header.h"

#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t HeadSize = 80;
constexpr std::size_t TriangleSize = 50;
constexpr std::size_t NormalSize = 12;

} // namespace

bool ReadQuickStl(QuickSource& source, CSceneDocument& scene) {
    QuickBytes bytes(source);
    char const* const head = bytes.Take(HeadSize);
    // "solid" may begin a text all the same, and "COLOR=" tells of a material.
    if (!head || std::string_view(head, HeadSize).find("solid") != std::string_view::npos ||
        std::string_view(head, HeadSize).find("COLOR=") != std::string_view::npos) {
        return false;
    }
    unsigned int triangles = 0;
    char const* const count = bytes.Take(sizeof triangles);
    if (!count) {
        return false;
    }
    std::memcpy(&triangles, count, sizeof triangles);
    if (triangles == 0 || triangles > 0xFFFFFFFFU / 3 ||
        source.GetSize() != HeadSize + sizeof triangles + TriangleSize * triangles) {
        return false;
    }
    for (unsigned int i = 0; i < triangles; ++i) {
        char const* const triangle = bytes.Take(TriangleSize);
        if (!triangle) {
            return false; // cut short meanwhile
        }
        SceneVector points[3];
        std::memcpy(points, triangle + NormalSize, sizeof points);
        for (SceneVector const& point : points) {
            if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) {
                return false;
            }
            scene.boundingBox.Add(point);
        }
    }
    scene.counts.vertices = 3ULL * triangles;
    scene.counts.faces = triangles;
    scene.counts.meshes = 1;
    scene.counts.nodes = 2;
    scene.materials.emplace_back().name = u"DefaultMaterial";
    return true;
}
