// SPDX-License-Identifier: MIT
#include "plugins/scene/quick/quick_mtl.h"

#include "plugins/scene/quick/quick_lines.h"
#include "plugins/scene/worker/texture_path.h"
#include <zeltools/foundation/string_conversion.h>

#include <array>
#include <iterator>

namespace {

constexpr float FirstGrey = 0.6F;

struct MapRow {
    std::string_view word;
    std::size_t use;
};
/// The uses are numbered in assimp's order of a material's textures.
constexpr MapRow mapRows[] = {{"map_Kd", 0},   {"map_Ka", 1},   {"map_Ke", 2}, {"map_Ks", 3}, {"bump", 4},
                              {"map_bump", 4}, {"map_Bump", 4}, {"map_d", 5},  {"map_Ns", 6}};
using Maps = std::array<std::string, 7>;

/// A texture's path. With options before it or blanks in it, it is not plain.
bool TakeMap(std::string_view word, std::string_view path, Maps& maps) {
    for (MapRow const& row : mapRows) {
        if (row.word == word) {
            bool const isPlain = !path.empty() && path[0] != '-' && path[0] != '*' &&
                                 std::none_of(path.begin(), path.end(), IsBlank) && maps[row.use].empty();
            maps[row.use] = isPlain ? path : std::string_view();
            return isPlain;
        }
    }
    return false;
}

bool TakeValue(std::string_view word, std::string_view values, SceneMaterial& material) {
    float numbers[3];
    if (word == "Kd" || word == "Ka" || word == "Ks" || word == "Ke" || word == "Tf") {
        if (!TakeNumbers(values, 3, numbers) || !values.empty()) {
            return false;
        }
        if (word == "Kd") {
            std::copy_n(numbers, 3, material.diffuse.begin());
        }
        return true;
    }
    if (word == "Ns" || word == "Ni" || word == "d" || word == "Tr" || word == "illum") {
        if (!TakeNumber(values, numbers[0]) || !values.empty()) {
            return false;
        }
        if (word == "d" || word == "Tr") {
            material.diffuse[3] = word == "d" ? numbers[0] : 1 - numbers[0];
        }
        return true;
    }
    return false;
}

void AddPaths(Maps& maps, SceneMaterial& material) {
    for (std::string& map : maps) {
        CXTString<char16_t> const path = ToTexturePath(map, false);
        auto& paths = material.texturePaths;
        if (!map.empty() && std::find(paths.begin(), paths.end(), path) == paths.end()) {
            paths.push_back(path);
        }
        map.clear();
    }
}

} // namespace

void QuickMaterials::Add(std::string_view name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        names.emplace_back(name);
        SceneMaterial& material = materials.emplace_back();
        material.name = XCA2W(names.back().c_str(), xEncodingUtf8);
        std::fill_n(material.diffuse.begin(), 3, FirstGrey);
    }
}

bool ReadQuickMtl(QuickSource& source, QuickMaterials& materials) {
    QuickBytes bytes(source);
    Maps maps;
    std::size_t const before = materials.names.size();
    for (std::string_view line; bytes.Line(line);) {
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (line.empty() || line.front() == '#') {
            continue;
        }
        // Programs indent, and assimp takes that, what belongs to a material.
        SkipBlanks(line);
        std::string_view const word = TakeWord(line);
        if (word == "newmtl") {
            std::size_t const count = materials.names.size();
            if (count != before) {
                AddPaths(maps, materials.materials.back());
            }
            if (!IsQuickName(line)) {
                return false;
            }
            materials.Add(line);
            if (materials.names.size() == count) {
                return false; // told twice
            }
        } else if (materials.names.size() == before ||
                   (!TakeValue(word, line, materials.materials.back()) && !TakeMap(word, line, maps))) {
            return false;
        }
    }
    if (materials.names.size() != before) {
        AddPaths(maps, materials.materials.back());
    }
    return bytes.IsAtEnd();
}
