// SPDX-License-Identifier: MIT
#include "plugins/scene/scene_formats.h"

#include <algorithm>
#include <cctype>

namespace {

struct Row {
    std::string_view importer;
    std::string_view word;
    std::string_view classLetters;
    std::string_view description;
};

// A class is part of stored documents and preferences: it never changes, whatever assimp does to its names. Of the two
// glTF readers the newer stands first, since nearly every file is one of its.
constexpr Row rows[] = {
    {"Wavefront Object Importer", "obj", "OBJ ", "Wavefront objects"},
    {"glTF2 Importer", "gltf2", "GLT2", "glTF 2 scenes"},
    {"glTF Importer", "gltf", "GLTF", "glTF 1 scenes"},
    {"Stanford Polygon Library (PLY) Importer", "ply", "PLY ", "Stanford polygons"},
    {"Stereolithography (STL) Importer", "stl", "STL ", "Stereolithography solids"},
    {"Autodesk FBX Importer", "fbx", "FBX ", "Filmbox scenes"},
    {"Collada Importer", "collada", "DAE ", "Collada scenes"},
    {"Discreet 3DS Importer", "3ds", "3DS ", "3D Studio scenes"},
    {"ASE Importer", "ase", "ASE ", "3D Studio text exports"},
    {"3mf Importer", "3mf", "3MF ", "3D manufacturing packages"},
    {"Additive manufacturing file format(AMF) Importer", "amf", "AMF ", "Additive manufacturing solids"},
    {"Extensible 3D(X3D) Importer", "x3d", "X3D ", "Extensible 3D scenes"},
    {"Direct3D XFile Importer", "x", "XFIL", "Direct3D meshes"},
    {"Blender 3D Importer (http://www.blender3d.org)", "blend", "BLND", "Blender scenes"},
    {"Industry Foundation Classes (IFC) Importer", "ifc", "IFC ", "Building models"},
    {"Drawing Interchange Format (DXF) Importer", "dxf", "DXF ", "Drawing interchange files"},
    {"LightWave/Modo Object Importer", "lwo", "LWO ", "LightWave and Modo objects"},
    {"LightWave Scene Importer", "lws", "LWS ", "LightWave scenes"},
    {"OFF Importer", "off", "OFF ", "Object file format meshes"},
    {"AC3D Importer", "ac", "AC3D", "AC3D scenes"},
    {"BVH Importer (MoCap)", "bvh", "BVH ", "Motion capture (BVH)"},
    {"CharacterStudio Motion Importer (MoCap)", "csm", "CSM ", "Motion capture (Character Studio)"},
    {"BlitzBasic 3D Importer", "b3d", "B3D ", "Blitz3D scenes"},
    {"TrueSpace Object Importer", "cob", "COB ", "trueSpace objects"},
    {"Milkshape 3D Importer", "ms3d", "MS3D", "MilkShape scenes"},
    {"Open Game Engine Exchange", "ogex", "OGEX", "Game engine exchange scenes"},
    {"Ogre3D Mesh Importer", "ogre", "OGRE", "Ogre meshes"},
    {"Irrlicht Mesh Reader", "irrmesh", "IRRM", "Irrlicht meshes"},
    {"Irrlicht Scene Reader", "irr", "IRR ", "Irrlicht scenes"},
    {"Quake Mesh / 3D GameStudio Mesh Importer", "mdl", "MDL ", "Quake and GameStudio models"},
    {"Quake II Mesh Importer", "md2", "MD2 ", "Quake II models"},
    {"Quake III Mesh Importer", "md3", "MD3 ", "Quake III models"},
    {"Quake III BSP Importer", "bsp", "BSP ", "Quake III levels"},
    {"Return To Castle Wolfenstein Mesh Importer", "mdc", "MDC ", "Wolfenstein models"},
    {"Doom 3 / MD5 Mesh Importer", "md5", "MD5 ", "Doom 3 models"},
    {"Inter-Quake Model Importer", "iqm", "IQM ", "Inter-Quake models"},
    {"Unreal Mesh Importer", "unreal", "U3D ", "Unreal models"},
    {"Valve SMD Importer", "smd", "SMD ", "Valve models"},
    {"MMD Importer", "mmd", "PMX ", "MikuMikuDance models"},
    {"3D GameStudio Heightmap (HMP) Importer", "hmp", "HMP ", "GameStudio height maps"},
    {"Terragen Heightmap Importer", "ter", "TER ", "Terragen height maps"},
    {"Neutral File Format Importer", "nff", "NFF ", "Neutral file format scenes"},
    {"Raw Importer", "raw", "RAW3", "Raw triangles"},
    {"Silo SIB Importer", "sib", "SIB ", "Silo models"},
    {"Quick3D Importer", "q3d", "Q3D ", "Quick3D scenes"},
    {"Nendo Mesh Importer", "ndo", "NDO ", "Nendo meshes"},
    {"XGL Importer", "xgl", "XGL ", "XGL scenes"},
    {"Assimp Binary Importer", "assbin", "ASSB", "Assimp binary scenes"},
    // What is only written. The building models' reader does not take what "stp" writes, though it claims ".stp".
    {"", "step", "STEP", "STEP surfaces"},
    {"", "assxml", "ASSX", "Assimp XML scenes"},
    {"", "assjson", "ASSJ", "Assimp JSON scenes"},
    {"", "pbrt", "PBRT", "Scene descriptions for rendering (PBRT)"},
};

constexpr SceneExporter exporters[] = {
    {"collada", "collada", ""},
    {"x", "x", ""},
    {"stp", "step", ""},
    {"obj", "obj", ""},
    {"objnomtl", "obj", "materials=none"},
    {"stlb", "stl", ""},
    {"stl", "stl", "encoding=text"},
    {"plyb", "ply", ""},
    {"ply", "ply", "encoding=text"},
    {"3ds", "3ds", ""},
    {"gltf2", "gltf2", ""},
    {"glb2", "gltf2", ""},
    {"gltf", "gltf", ""},
    {"glb", "gltf", ""},
    {"assbin", "assbin", ""},
    {"assxml", "assxml", ""},
    {"assjson", "assjson", ""},
    {"x3d", "x3d", ""},
    {"fbxa", "fbx", ""}, // assimp 5.2 cannot read its own binary ones
    {"fbx", "fbx", "encoding=binary"},
    {"3mf", "3mf", ""},
    {"pbrt", "pbrt", ""},
};

SceneFormat FormatOf(Row const& row) {
    return {std::string(row.word), std::string(row.classLetters), std::string(row.description),
            static_cast<unsigned int>(&row - rows)};
}

} // namespace

SceneFormat GetSceneFormat(std::string_view importer, std::string_view extensions) {
    std::string const word(extensions.substr(0, extensions.find(' ')));
    for (Row const& row : rows) {
        if (importer.empty() ? row.word == word : row.importer == importer) {
            return FormatOf(row);
        }
    }
    std::string letters = word.substr(0, 4);
    std::transform(letters.begin(), letters.end(), letters.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    letters.resize(4, ' ');
    return {word, letters, importer.empty() ? word + " scenes" : std::string(importer),
            static_cast<unsigned int>(std::size(rows))};
}

std::span<SceneExporter const> GetSceneExporters() {
    return exporters;
}

std::string GetExportedFormat(std::string_view exporterId) {
    for (SceneExporter const& exporter : exporters) {
        if (exporter.id == exporterId) {
            return std::string(exporter.word);
        }
    }
    return std::string(exporterId);
}
