// SPDX-License-Identifier: MIT
// Binary .ply, of vertices and faces: lines that tell the properties of each, then the vertices, each of the same size,
// then the faces, each a number of corners and their vertices.
#include "plugins/scene/quick/quick_header.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

namespace {

struct Layout {
    unsigned int vertices = 0;
    unsigned int faces = 0;
    std::size_t vertexSize = 0;
    std::optional<std::size_t> places[3]; ///< Of x, y and z in a vertex.
};

/// The next word of a line, which has single blanks.
std::string_view TakeWord(std::string_view& line) {
    std::string_view const word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return word;
}

bool TakeCount(std::string_view text, unsigned int& count) {
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    return error == std::errc() && end == text.data() + text.size() && count != 0;
}

/// 0 for a type that is not known.
std::size_t SizeOfType(std::string_view type) {
    struct Row {
        std::string_view type;
        std::size_t size;
    };
    constexpr Row rows[] = {{"char", 1},  {"uchar", 1},   {"int8", 1},   {"uint8", 1},  {"short", 2}, {"ushort", 2},
                            {"int16", 2}, {"uint16", 2},  {"int", 4},    {"uint", 4},   {"int32", 4}, {"uint32", 4},
                            {"float", 4}, {"float32", 4}, {"double", 8}, {"float64", 8}};
    for (Row const& row : rows) {
        if (row.type == type) {
            return row.size;
        }
    }
    return 0;
}

bool AddVertexProperty(std::string_view line, Layout& layout) {
    std::string_view const type = TakeWord(line);
    std::string_view const name = TakeWord(line);
    std::size_t const size = SizeOfType(type);
    bool const isPlace = name == "x" || name == "y" || name == "z";
    if (size == 0 || name.empty() || !line.empty() || (isPlace && type != "float" && type != "float32")) {
        return false;
    }
    if (isPlace) {
        std::optional<std::size_t>& place = layout.places[name[0] - 'x'];
        if (place) {
            return false;
        }
        place = layout.vertexSize;
    }
    layout.vertexSize += size;
    return true;
}

bool IsCornersProperty(std::string_view line) {
    std::string_view const list = TakeWord(line);
    std::string_view const count = TakeWord(line);
    std::string_view const index = TakeWord(line);
    return list == "list" && (count == "uchar" || count == "uint8") &&
           (index == "int" || index == "int32" || index == "uint" || index == "uint32") &&
           (line == "vertex_indices" || line == "vertex_index");
}

bool ReadLayout(QuickBytes& bytes, Layout& layout) {
    enum {
        Beginning,
        InVertices,
        InFaces,
        BehindFaces
    } state = Beginning;
    std::string_view line;
    if (!bytes.Line(line) || line != "ply" || !bytes.Line(line) || line != "format binary_little_endian 1.0") {
        return false;
    }
    while (bytes.Line(line)) {
        std::string_view const word = TakeWord(line);
        if (word == "comment") {
            if (line.find("Texture") != std::string_view::npos) {
                return false; // which becomes a material's
            }
        } else if (word == "element" && state == Beginning && TakeWord(line) == "vertex") {
            if (!TakeCount(line, layout.vertices)) {
                return false;
            }
            state = InVertices;
        } else if (word == "element" && state == InVertices && TakeWord(line) == "face") {
            if (!TakeCount(line, layout.faces)) {
                return false;
            }
            state = InFaces;
        } else if (word == "property" && state == InVertices) {
            if (!AddVertexProperty(line, layout)) {
                return false;
            }
        } else if (word == "property" && state == InFaces && IsCornersProperty(line)) {
            state = BehindFaces;
        } else {
            return word == "end_header" && line.empty() && state == BehindFaces && layout.places[0] &&
                   layout.places[1] && layout.places[2];
        }
    }
    return false;
}

bool AddVertices(QuickBytes& bytes, Layout const& layout, SceneBox& box) {
    for (unsigned int i = 0; i < layout.vertices; ++i) {
        char const* const vertex = bytes.Take(layout.vertexSize);
        if (!vertex) {
            return false;
        }
        float point[3];
        for (std::size_t axis = 0; axis < 3; ++axis) {
            std::memcpy(&point[axis], vertex + *layout.places[axis], sizeof(float));
            if (!std::isfinite(point[axis])) {
                return false;
            }
        }
        box.Add({point[0], point[1], point[2]});
    }
    return true;
}

bool CheckFaces(QuickBytes& bytes, Layout const& layout) {
    for (unsigned int i = 0; i < layout.faces; ++i) {
        char const* const count = bytes.Take(1);
        std::size_t const corners = count ? static_cast<unsigned char>(*count) : 0;
        char const* const indices = corners < 3 ? nullptr : bytes.Take(corners * sizeof(unsigned int));
        if (!indices) {
            return false;
        }
        for (std::size_t k = 0; k < corners; ++k) {
            unsigned int index = 0;
            std::memcpy(&index, indices + k * sizeof index, sizeof index);
            if (index >= layout.vertices) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

bool ReadQuickPly(QuickSource& source, CSceneDocument& scene) {
    QuickBytes bytes(source);
    Layout layout;
    if (!ReadLayout(bytes, layout) || !AddVertices(bytes, layout, scene.boundingBox) || !CheckFaces(bytes, layout) ||
        !bytes.IsAtEnd()) {
        return false;
    }
    scene.counts.vertices = layout.vertices;
    scene.counts.faces = layout.faces;
    scene.counts.meshes = scene.counts.nodes = 1;
    scene.materials.emplace_back();
    return true;
}
