// SPDX-License-Identifier: MIT
// .obj: lines of a keyword and its values. Points come before the faces that use them, which name each corner by the
// number of its point, texture coordinate and normal: "f 1/1/1 2/2/1 -1//1".
#include "plugins/scene/quick/quick_header.h"
#include "plugins/scene/quick/quick_lines.h"
#include "plugins/scene/quick/quick_mtl.h"
#include <zeltools/foundation/string_conversion.h>

namespace {

/// assimp refuses a file that is smaller, as too small to be one.
constexpr unsigned long long LeastSize = 16;

class ObjReader {
public:
    ObjReader(QuickSource& objSource, CSceneDocument& filled) : source(objSource), scene(filled) {
        materials.Add("DefaultMaterial");
    }

    bool Read() {
        if (source.GetSize() < LeastSize) {
            return false;
        }
        QuickBytes bytes(source);
        for (std::string_view line; bytes.Line(line);) {
            if (line.ends_with('\r')) {
                line.remove_suffix(1);
            }
            if (line.ends_with('\\') || !TakeLine(line)) { // a backslash joins the next line
                return false;
            }
        }
        if (!bytes.IsAtEnd() || faces == 0) {
            return false;
        }
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (isUsed[i]) {
                scene.boundingBox.Add(points[i]);
            }
        }
        scene.counts.vertices = corners; // assimp gives each corner a vertex of its own
        scene.counts.faces = faces;
        scene.materials = std::move(materials.materials);
        return true;
    }

private:
    bool TakeLine(std::string_view line) {
        if (line.empty() || line.front() == '#') {
            return true;
        }
        std::string_view const word = TakeWord(line);
        if (word == "v") {
            return TakePoint(line);
        }
        if (word == "f") {
            return TakeFace(line);
        }
        if (word == "vt" || word == "vn") {
            float numbers[3];
            bool const isNormal = word == "vn";
            ++(isNormal ? normals : textureCoordinates);
            return TakeNumbers(line, 2, numbers) && (isNormal || !line.empty() ? TakeNumber(line, numbers[2]) : true) &&
                   line.empty();
        }
        if (word == "usemtl") {
            if (IsQuickName(line)) {
                materials.Add(line);
                return true;
            }
            return false;
        }
        if (word == "mtllib") {
            return TakeLibrary(line);
        }
        return (word == "g" || word == "o" || word == "s") && IsQuickName(line);
    }

    bool TakePoint(std::string_view line) {
        SceneVector point;
        float color[3];
        if (!TakeNumbers(line, 3, &point.x) || (!line.empty() && !(TakeNumbers(line, 3, color) && line.empty()))) {
            return false;
        }
        points.push_back(point);
        isUsed.push_back(false);
        return true;
    }

    bool TakeFace(std::string_view line) {
        unsigned int count = 0;
        for (; !line.empty(); SkipBlanks(line), ++count) {
            std::size_t const point = TakeIndex(line, points.size());
            if (point == None) {
                return false;
            }
            isUsed[point] = true;
            if (TakeSlash(line)) {
                if (!TakeSlash(line)) {
                    if (TakeIndex(line, textureCoordinates) == None) {
                        return false;
                    }
                    if (TakeSlash(line) && TakeIndex(line, normals) == None) {
                        return false;
                    }
                } else if (TakeIndex(line, normals) == None) {
                    return false;
                }
            }
            if (!line.empty() && !IsBlank(line.front())) {
                return false;
            }
        }
        ++faces;
        corners += count;
        return count >= 3;
    }

    static bool TakeSlash(std::string_view& line) {
        bool const isThere = line.starts_with('/');
        line.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    static constexpr std::size_t None = ~std::size_t{0};

    /// The place among `count` ones that were told so far; negative numbers count from the last one.
    static std::size_t TakeIndex(std::string_view& line, std::size_t count) {
        long long number = 0;
        auto const [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
        auto const most = static_cast<long long>(count);
        if (error != std::errc() || number == 0 || number > most || number < -most) {
            return None;
        }
        line.remove_prefix(static_cast<std::size_t>(end - line.data()));
        return static_cast<std::size_t>(number > 0 ? number - 1 : most + number);
    }

    /// The materials lie beside the scene. Where they are missing, assimp looks for a file called as the scene.
    bool TakeLibrary(std::string_view name) {
        std::unique_ptr<QuickSource> library;
        if (hasLibrary || materials.names.size() != 1 || !IsQuickName(name) ||
            name.find_first_of("/\\") != std::string_view::npos) {
            return false;
        }
        hasLibrary = true;
        switch (source.OpenBeside(std::string(name), library)) {
        case QuickSource::Beside::There: return library->GetSize() >= LeastSize && ReadQuickMtl(*library, materials);
        case QuickSource::Beside::Missing:
            return source.OpenBeside(source.GetStem() + ".mtl", library) == QuickSource::Beside::Missing;
        case QuickSource::Beside::Unknown: break;
        }
        return false;
    }

    QuickSource& source;
    CSceneDocument& scene;
    QuickMaterials materials;
    std::vector<SceneVector> points;
    std::vector<bool> isUsed; ///< By a face; as many as points.
    std::size_t textureCoordinates = 0;
    std::size_t normals = 0;
    unsigned long long faces = 0;
    unsigned long long corners = 0;
    bool hasLibrary = false;
};

} // namespace

bool ReadQuickObj(QuickSource& source, CSceneDocument& scene) {
    return ObjReader(source, scene).Read();
}
