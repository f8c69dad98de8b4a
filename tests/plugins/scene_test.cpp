// SPDX-License-Identifier: MIT
// The plug-in for scenes, as a host loads it: its types, files of known content read, written and broken, and stopping.
#include "media/named_options.h"
#include "media/scene_io.h"
#include "tests/support/temporary_folder.h"
#include <zeltools/files/file_types.h>
#include <zeltools/files/io_options.h>
#include <zeltools/files/io_plugins.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/application_preferences.h>
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <assimp/types.h>
#include <atomic>
#include <chrono>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <thread>

namespace {

using Wide = CXTString<char16_t>;

std::string Narrow(Wide const& text) {
    return std::string(XCW2A(text, xEncodingUtf8));
}

/// Two faces of a roof, a quadrangle and a triangle, and a texture in another folder.
constexpr char const* RoofObj = "mtllib roof.mtl\n"
                                "v 0 0 0\nv 4 0 0\nv 4 2 1\nv 0 2 1\nv 2 3 -5\n"
                                "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                                "usemtl tiles\nf 1/1 2/2 3/3 4/4\nf 4/4 3/3 5/1\n";
constexpr char const* RoofMtl = "newmtl tiles\nKd 0.5 0.25 0.125\nmap_Kd ..\\tex\\Wood grain.png\n";
constexpr char const* PyramidPly = "ply\nformat ascii 1.0\nelement vertex 5\nproperty float x\nproperty float y\n"
                                   "property float z\nelement face 5\nproperty list uchar int vertex_indices\n"
                                   "end_header\n-1 -1 0\n1 -1 0\n1 1 0\n-1 1 0\n0 0 3\n"
                                   "4 0 1 2 3\n3 0 1 4\n3 1 2 4\n3 2 3 4\n3 3 0 4\n";
constexpr char const* SailStl = "solid sail\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 7 0 0\nvertex 0 9 0\n"
                                "endloop\nendfacet\nendsolid sail\n";
/// One triangle, (0 0 0) (1 0 0) (0 1 0), twice as large and ten to the right.
constexpr char const* TriangleGltf =
    R"({"asset":{"version":"2.0","generator":"by hand"},"scene":0,"scenes":[{"nodes":[0]}],
"nodes":[{"name":"tip","mesh":0,"translation":[10,0,0],"scale":[2,2,2]}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"material":0}]}],
"materials":[{"pbrMetallicRoughness":{"baseColorFactor":[1,0,0,1],"baseColorTexture":{"index":0}}}],
"textures":[{"source":0}],"images":[{"uri":"wood%20grain.png"}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],
"buffers":[{"uri":"tip.bin","byteLength":36}]})";

std::string TriangleBin() {
    float const corners[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    return std::string(reinterpret_cast<char const*>(corners), sizeof corners);
}

bool IsInMemory(std::string const& library) {
    std::ifstream maps("/proc/self/maps");
    return std::string(std::istreambuf_iterator<char>(maps), {}).find(library) != std::string::npos;
}

/// What assimp says of itself: "*.3ds;*.obj". It is opened here and not linked, since hosts must do without it.
std::string LibrarysExtensions() {
    void* const library = dlopen(ZEL_ASSIMP, RTLD_NOW | RTLD_LOCAL);
    auto const getList =
        reinterpret_cast<void (*)(aiString*)>(library ? dlsym(library, "aiGetExtensionList") : nullptr);
    auto list = std::make_unique<aiString>();
    if (getList) {
        getList(list.get());
    }
    return list->C_Str();
}

class ScenePlugin : public testing::Test {
protected:
    ScenePlugin() {
        EnablePreferencesSaving(false); // the user's own stay out of the tests
        static bool const registered = [] {
            RegisterIOPlugins(FileKind3D, fileFromNativeName(ZEL_SCENE_PLUGIN));
            return true;
        }();
        (void)registered;
        folder.Write("roof/roof.obj", RoofObj);
        folder.Write("roof/roof.mtl", RoofMtl);
        folder.Write("pyramid.ply", PyramidPly);
        folder.Write("sail.stl", SailStl);
        folder.Write("tip.gltf", TriangleGltf);
        folder.Write("tip.bin", TriangleBin());
    }

    Wide Path(std::string const& name) const { return Wide(folder.Path(name).c_str()); }

    /// Reads into `scene`; the error, or nothing.
    std::string Read(std::string const& name, bool headerOnly = false) {
        CSceneIo io(CFileNameSpec(Path(name)), IoFlagLoading | IoFlagSilent, nullptr);
        io.limits = limits;
        bool const read = headerOnly ? io.ReadHeader(scene) : io.Read(scene);
        code = io.GetIoError();
        return read ? std::string() : Narrow(io.GetIoErrorTxt());
    }

    std::string Write(std::string const& name, Wide const& option = {}, Wide const& value = {}) {
        CSceneIo io(CFileNameSpec(Path(name)), IoFlagSilent, nullptr);
        CIoOptions options(false);
        if (!option.IsEmpty()) {
            SetNamedOption(options.GetParserOptions(), option, value);
        }
        bool const written = io.Write(scene, &options);
        code = io.GetIoError();
        return written ? std::string() : Narrow(io.GetIoErrorTxt());
    }

    /// The one entry of the folder's listing would be a temporary folder that stayed.
    bool HasLeftovers() const {
        return std::ranges::any_of(std::filesystem::directory_iterator(folder.Native()), [](auto const& entry) {
            return entry.path().filename().native().starts_with(".zel");
        });
    }

    TemporaryFolder folder;
    MediaLimits limits;
    CSceneDocument scene;
    int code = 0;
};

std::string BoxText(SceneBox const& box) {
    std::ostringstream text;
    text << box.lowest.x << ' ' << box.lowest.y << ' ' << box.lowest.z << " | " << box.highest.x << ' ' << box.highest.y
         << ' ' << box.highest.z;
    return text.str();
}

TEST_F(ScenePlugin, OffersEveryFormatOfItsLibraryWithoutOpeningIt) {
    unsigned int count = 0;
    CFileExt* const types = fileGetRegisteredFiles(count, FileKind3D);
    std::string classes;
    for (unsigned int i = 0; i < count; ++i) {
        classes += Narrow(types[i].GetExtension()) + '|';
    }
    fileFreeRegisteredFiles(types, count);
    EXPECT_FALSE(IsInMemory("assimp"));
    EXPECT_EQ(Read("pyramid.ply"), "");
    EXPECT_FALSE(IsInMemory("assimp")); // nor has the reading opened it here
    std::istringstream extensions(LibrarysExtensions());
    for (std::string extension; std::getline(extensions, extension, ';');) {
        extension.erase(0, 1); // of "*.obj"
        // The registry goes by the last one of several, and an .xml file is hardly ever a scene.
        if (extension.rfind('.') == 0 && extension != ".xml") {
            EXPECT_NE(classes.find(extension + '|'), std::string::npos) << extension;
        }
    }
    CFileExt type;
    EXPECT_FALSE(fileGetFileExt(u".xml", type));
    ASSERT_TRUE(fileGetFileExt(u".fbx", type));
    EXPECT_EQ(type.GetProperties() & (FilePropertyLoad | FilePropertySave), FilePropertyLoad | FilePropertySave);
    ASSERT_TRUE(fileGetFileExt(u".blend", type));
    EXPECT_EQ(type.GetProperties() & FilePropertyAnySave, 0U);
}

TEST_F(ScenePlugin, ReadsKnownFiles) {
    // A vertex of an .obj or .stl belongs to one face; of a .ply, to all that share it.
    struct {
        char const* file;
        unsigned long long vertices;
        unsigned long long faces;
        char const* box;
        char const* corners; ///< Of each face.
    } const rows[] = {
        {"roof/roof.obj", 7, 2, "0 0 -5 | 4 3 1", "4 3 "},
        {"pyramid.ply", 5, 5, "-1 -1 0 | 1 1 3", "4 3 3 3 3 "},
        {"sail.stl", 3, 1, "0 0 0 | 7 9 0", "3 "},
        {"tip.gltf", 3, 1, "10 0 0 | 12 2 0", "3 "},
    };
    for (auto const& row : rows) {
        for (bool const headerOnly : {true, false}) {
            SCOPED_TRACE(std::string(row.file) + (headerOnly ? ", header" : ""));
            ASSERT_EQ(Read(row.file, headerOnly), "");
            EXPECT_EQ(scene.counts.vertices, row.vertices);
            EXPECT_EQ(scene.counts.faces, row.faces);
            EXPECT_EQ(scene.counts.animations, 0U);
            EXPECT_EQ(BoxText(scene.boundingBox), row.box);
            EXPECT_EQ(scene.meshes.empty(), headerOnly);
        }
        std::string corners;
        for (SceneMesh const& mesh : scene.meshes) {
            EXPECT_EQ(mesh.vertices.size(), row.vertices);
            for (SceneFace const& face : mesh.faces) {
                corners += std::to_string(face.count) + ' ';
            }
        }
        EXPECT_EQ(corners, row.corners) << row.file;
    }
    EXPECT_EQ(scene.unitMeters, 1.0);
    EXPECT_EQ(Narrow(scene.format), "gltf2");
    EXPECT_EQ(Narrow(scene.metadata.GetText(u"SourceAsset_Generator")), "by hand");
}

TEST_F(ScenePlugin, GivesTexturePathsInTheToolkitsForm) {
    ASSERT_EQ(Read("roof/roof.obj", true), "");
    ASSERT_EQ(scene.GetTexturePaths().size(), 1U);
    EXPECT_EQ(Narrow(scene.GetTexturePaths()[0]), "..\\tex\\Wood grain.png");
    SceneMaterial const& tiles = scene.materials.back();
    EXPECT_EQ(tiles.diffuse, (std::array<float, 4>{0.5F, 0.25F, 0.125F, 1}));
    ASSERT_EQ(Read("tip.gltf", true), ""); // whose paths are addresses
    ASSERT_EQ(scene.GetTexturePaths().size(), 1U);
    EXPECT_EQ(Narrow(scene.GetTexturePaths()[0]), "wood grain.png");
}

TEST_F(ScenePlugin, WritesWhatItReadsBack) {
    struct Row {
        char const* file;
        bool keepsPolygons;
        char const* companion;
    } const rows[] = {{"a b.obj", true, "a b.mtl"}, {"a.ply", true, nullptr},  {"a.stl", false, nullptr},
                      {"a.gltf", false, "a.bin"},   {"a.glb", false, nullptr}, {"a.dae", true, nullptr},
                      {"a.3ds", false, nullptr},    {"a.x", true, nullptr},    {"a.fbx", true, nullptr},
                      {"a.assbin", true, nullptr},  {"a.3mf", false, nullptr}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.file);
        ASSERT_EQ(Read("pyramid.ply"), "");
        ASSERT_EQ(Write(row.file), "");
        EXPECT_TRUE(!row.companion || folder.Exists(row.companion));
        ASSERT_EQ(Read(row.file), "");
        EXPECT_EQ(scene.counts.faces, row.keepsPolygons ? 5U : 6U);
        // Some formats turn the axis that points up.
        SceneVector const& low = scene.boundingBox.lowest;
        SceneVector const& high = scene.boundingBox.highest;
        EXPECT_NEAR((high.x - low.x) * (high.y - low.y) * (high.z - low.z), 2 * 2 * 3, 1e-3);
    }
    EXPECT_FALSE(HasLeftovers());
}

TEST_F(ScenePlugin, WritesByTheOptionsAndRefusesWhatCannotBe) {
    EXPECT_EQ(Write("a.stl"), Narrow(CFileIo::GetIoErrorTxtFromCode(false, IoNothingToSave, nullptr)));
    ASSERT_EQ(Read("roof/roof.obj"), "");
    ASSERT_EQ(Write("a.stl", u"encoding", u"text"), "");
    EXPECT_EQ(folder.Read("a.stl").substr(0, 5), "solid");
    ASSERT_EQ(Write("plain.obj", u"materials", u"none"), "");
    EXPECT_FALSE(folder.Exists("plain.mtl"));
    EXPECT_NE(Write("a.zae"), ""); // the parser of .dae does not pack
    EXPECT_EQ(code, IoCannotSaveSo);
    EXPECT_NE(Write("missing/a.ply"), "");
    EXPECT_EQ(code, IoCannotOpen);
    scene.meshes[0].faceIndices[0] = 7; // there are vertices 0 to 6
    folder.Write("old.ply", "old");
    EXPECT_EQ(Write("old.ply"), "old.ply: mesh 0 refers to vertices or materials that are not there.");
    EXPECT_EQ(folder.Read("old.ply"), "old");
    EXPECT_FALSE(HasLeftovers());
}

TEST_F(ScenePlugin, TellsWhyAFileIsRefused) {
    folder.Write("empty.obj");
    folder.Write("text.ply", "this is no mesh");
    folder.Write("nan.obj", "v 0 0 nan\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    folder.Write("far.obj", "v 0 0 0\nv 1 0 0\nf 1 2 3\n");
    EXPECT_NE(Read("missing.obj"), "");
    EXPECT_EQ(code, IoCannotOpen);
    EXPECT_NE(Read("empty.obj"), "");
    EXPECT_EQ(code, IoEmptyFile);
    EXPECT_NE(Read("text.ply"), "");
    EXPECT_EQ(Read("nan.obj"), "nan.obj: mesh 0 has a vertex that is not a number.");
    EXPECT_NE(Read("far.obj"), "");
    limits.maxFaces = 4;
    EXPECT_EQ(Read("pyramid.ply", true), "pyramid.ply: 5 faces, where 4 are allowed.");
    limits.maxFaces = 5;
    limits.maxVertices = 4;
    EXPECT_EQ(Read("pyramid.ply"), "pyramid.ply: 5 vertices, where 4 are allowed.");
    limits.maxVertices = 5;
    EXPECT_EQ(Read("pyramid.ply"), "");
}

TEST_F(ScenePlugin, OpensCompanionsInTheScenesFolderOnly) {
    folder.Write("secret.mtl", "newmtl tiles\nKd 1 0 0\n");
    std::string content = RoofObj;
    folder.Write("roof/up.obj", content.replace(content.find("roof.mtl"), 8, "../secret.mtl"));
    std::filesystem::create_symlink("../secret.mtl", folder.Native() + "roof/link.mtl");
    folder.Write("roof/link.obj", content.replace(content.find("../secret.mtl"), 13, "link.mtl"));
    for (char const* file : {"roof/up.obj", "roof/link.obj"}) {
        ASSERT_EQ(Read(file, true), "");
        for (SceneMaterial const& material : scene.materials) {
            EXPECT_NE(material.diffuse, (std::array<float, 4>{1, 0, 0, 1})) << file;
        }
    }
}

TEST_F(ScenePlugin, SurvivesFilesThatAreCutAnywhere) {
    limits.timeMs = 1000; // some readers never end
    for (char const* file : {"cut.obj", "cut.ply", "cut.stl", "cut.glb", "cut.dae", "cut.3ds", "cut.x", "cut.fbx",
                             "cut.assbin", "cut.3mf"}) {
        SCOPED_TRACE(file);
        ASSERT_EQ(Read("pyramid.ply"), "");
        ASSERT_EQ(Write(file), "");
        std::string const whole = folder.Read(file);
        for (std::size_t part = 0; part < 24; ++part) {
            folder.Write(file, whole.substr(0, whole.size() * part / 24));
            std::string const error = Read(file);

            EXPECT_NE(error.empty(), scene.nodes.empty()); // an error and no scene, or a scene
        }
    }
    EXPECT_EQ(Read("pyramid.ply"), "") << "after all of them";
}

TEST_F(ScenePlugin, BlamesABreakdownOnTheFile) {
    // Nodes within nodes until the reader's stack is full.
    std::string deep = "xof 0303txt 0032\n";
    for (int i = 0; i < 300000; ++i) {
        deep += "Frame a {\n";
    }
    folder.Write("deep.x", deep);
    EXPECT_NE(Read("deep.x"), "");
    EXPECT_EQ(Read("pyramid.ply"), "");
}

TEST_F(ScenePlugin, StopsWithin100Milliseconds) {
    // What takes assimp seconds: half a million points of a text file.
    std::ofstream file(folder.Native() + "large.obj");
    for (int i = 0; i < 500000; ++i) {
        file << "v " << i << " 0 1\nf " << i + 1 << " 1 1 1\n";
    }
    file.close();
    CSceneIo io(CFileNameSpec(Path("large.obj")), IoFlagLoading | IoFlagSilent, nullptr);
    std::atomic<std::chrono::steady_clock::time_point> asked{};
    std::thread canceler([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        asked = std::chrono::steady_clock::now();
        io.SetFlag(IoFlagCancel, true);
    });
    EXPECT_FALSE(io.Read(scene));
    auto const ended = std::chrono::steady_clock::now();
    canceler.join();
    EXPECT_EQ(io.GetIoError(), IoCanceled);
    EXPECT_LT(ended - asked.load(), std::chrono::milliseconds(100));
    limits.timeMs = 50;
    std::string const error = Read("large.obj");
    EXPECT_TRUE(error.starts_with("large.obj: ") && error.ends_with(" ms, where 50 are allowed.")) << error;
}

TEST_F(ScenePlugin, ServesSeveralThreads) {
    std::atomic<int> right{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this, &right, i] {
            for (int k = 0; k < 20; ++k) {
                CSceneIo io(CFileNameSpec(Path(i % 2 == 0 ? "pyramid.ply" : "tip.gltf")), IoFlagLoading | IoFlagSilent,
                            nullptr);
                CSceneDocument own;
                right += io.ReadHeader(own) && own.counts.faces == (i % 2 == 0 ? 5U : 1U) ? 1 : 0;
            }
        });
    }
    threads.clear();
    EXPECT_EQ(right, 8 * 20);
}

} // namespace
