// SPDX-License-Identifier: MIT
#include "plugins/scene/quick/quick_header.h"

bool ReadQuickHeader(std::string_view format, QuickSource& source, CSceneDocument& scene) {
    struct Row {
        std::string_view format;
        bool (*read)(QuickSource&, CSceneDocument&);
        char16_t const* source; ///< What assimp's metadata calls the format.
    };
    constexpr Row rows[] = {
        {"stl", &ReadQuickStl, u"Stereolithography (STL) Importer"},
        {"ply", &ReadQuickPly, u"Stanford Polygon Library (PLY) Importer"},
        {"obj", &ReadQuickObj, u"Wavefront Object Importer"},
    };
    for (Row const& row : rows) {
        if (row.format == format && row.read(source, scene)) {
            scene.format = CXTString<char16_t>(std::string(format).c_str());
            scene.metadata.SetText(u"SourceAsset_Format", row.source);
            scene.counts.materials = scene.materials.size();
            scene.counts.cameras = scene.counts.lights = scene.counts.animations = 0;
            return true;
        }
    }
    return false;
}
