// SPDX-License-Identifier: MIT
// Headers that are read without assimp, beside what the plug-in tells of the same files after reading everything.
#include "plugins/scene/quick/quick_header.h"

#include "media/scene_io.h"
#include "plugins/scene/quick/quick_file.h"
#include "tests/support/temporary_folder.h"
#include <zeltools/files/file_types.h>
#include <zeltools/files/io_plugins.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/string_conversion.h>

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace {

template <class... Values>
std::string Bytes(Values... values) {
    std::string bytes;
    (bytes.append(reinterpret_cast<char const*>(&values), sizeof values), ...);
    return bytes;
}

std::string Replaced(std::string text, std::string const& from, std::string const& to) {
    return text.replace(text.find(from), from.size(), to);
}

std::string const points = "v 0 0 0\nv 4 0 0\nv 4 2.5 1e-1\nv -3 2 1 0.5 0.5 0.5\nv 99 99 99\n";
std::string const obj = "# a roof\nmtllib roof.mtl\no roof\n" + points +
                        "vt 0 0\nvt 1 +1 0\nvn 0 0 1\ns off\ng a\nusemtl tiles\nf 1/1/1 2/2/1 3/1/1 \n"
                        "usemtl gold\nf -5//1 -4//-1 3//1 4//1\nf 1/1  2/2\t3/-2\nf 1 2 3\n";
std::string const mtl = "# made\r\nnewmtl tiles\r\n\tKd 0.5 0.25 0.125\r\n\td 0.5\r\nillum 2\r\nmap_d holes.png\r\n"
                        "map_Kd ..\\tex\\wood.png\r\nmap_Bump tex/wood.png\r\n\r\nnewmtl unused\r\nTr 0.25\r\n"
                        "bump ../tex/wood.png\r\nmap_Ks shine.png\r\n";
std::string const facet = Bytes(0.F, 0.F, 1.F, 0.F, 0.F, 0.F, 7.F, 0.F, 0.F, 0.F, 9.F, -1.F, short{0x7FFF});
std::string const stl = std::string(80, ' ') + Bytes(2U) + facet + facet;
std::string const plyHead =
    "ply\nformat binary_little_endian 1.0\ncomment by hand\nelement vertex 4\nproperty uchar red\n"
    "property float z\nproperty float y\nproperty float x\nelement face 2\n"
    "property list uchar int vertex_indices\nend_header\n";
std::string const plyPoints = "\1" + Bytes(0.F, 0.F, 0.F) + "\2" + Bytes(1.F, 2.F, 3.F) + "\3" + Bytes(0.F, -2.F, 0.F) +
                              "\4" + Bytes(0.F, 0.F, 8.F);
std::string const ply = plyHead + plyPoints + "\3" + Bytes(0, 1, 2) + "\4" + Bytes(0, 1, 2, 3);

struct Row {
    char const* what;
    char const* file;
    std::string content;
    bool isPlain = false;
};

Row const rows[] = {
    {"groups, materials, every kind of corner", "roof.obj", obj, true},
    {"CR LF", "roof.obj", Replaced(obj, "o roof\n", "o roof\r\n"), true},
    {"no materials", "roof.obj", points + "f 1 2 3\n", true},
    {"materials that are missing", "lost.obj", "mtllib none.mtl\n" + points + "usemtl a\nf 1 2 3\n", true},
    {"materials named as the scene", "roof.obj", "mtllib none.mtl\n" + points + "f 1 2 3\n"},
    {"materials in another folder", "roof.obj", "mtllib sub/roof.mtl\n" + points + "f 1 2 3\n"},
    {"blanks in a name", "roof.obj", Replaced(obj, "usemtl gold", "usemtl gold leaf")},
    {"a point that is not there", "roof.obj", points + "f 1 2 6\n"},
    {"point 0", "roof.obj", points + "f 0 1 2\n"},
    {"a point before the first", "roof.obj", points + "f -6 1 2\n"},
    {"a texture coordinate that is not there", "roof.obj", points + "f 1/1 2/1 3/1\n"},
    {"lines", "roof.obj", points + "l 1 2 3\nf 1 2 3\n"},
    {"two corners", "roof.obj", points + "f 1 2\n"},
    {"a joined line", "roof.obj", points + "f 1 2 \\\n3\n"},
    {"no line feed at the end", "roof.obj", points + "f 1 2 3"},
    {"four coordinates", "roof.obj", "v 1 1 1 2\n" + points + "f 1 2 3\n"},
    {"a number without its digit", "roof.obj", "v .5 1 1\n" + points + "f 1 2 3\n"},
    {"no number", "roof.obj", "v nan 1 1\n" + points + "f 1 2 3\n"},
    {"too large a number", "roof.obj", "v 1e99 1 1\n" + points + "f 1 2 3\n"},
    {"a comment behind a face", "roof.obj", points + "f 1 2 3 # roof\n"},
    {"a zero", "roof.obj", points + std::string("g a\0b\n", 6) + "f 1 2 3\n"},
    {"no face", "roof.obj", points},
    {"next to nothing", "roof.obj", "v 0 0 0\nf 1 1 1"},
    {"triangles", "sail.stl", stl, true},
    {"a material's colour", "sail.stl", Replaced(stl, "          ", "COLOR=abcd")},
    {"a text's beginning", "sail.stl", Replaced(stl, "     ", "solid")},
    {"no triangle", "sail.stl", std::string(80, ' ') + Bytes(0U)},
    {"a byte too many", "sail.stl", stl + 'x'},
    {"a lying count", "sail.stl", std::string(80, ' ') + Bytes(0xFFFFFFFFU) + facet},
    {"no number", "sail.stl", Replaced(stl, Bytes(7.F), Bytes(std::numeric_limits<float>::quiet_NaN()))},
    {"properties in any order", "tent.ply", ply, true},
    {"a texture", "tent.ply", Replaced(ply, "by hand", "TextureFile a.png")},
    {"text", "tent.ply", Replaced(ply, "binary_little_endian", "ascii")},
    {"double points", "tent.ply", Replaced(ply, "float z", "double z")},
    {"a property of faces", "tent.ply", Replaced(ply, "end_header", "property uchar flags\nend_header")},
    {"edges", "tent.ply", Replaced(ply, "end_header", "element edge 1\nproperty int vertex1\nend_header")},
    {"no x", "tent.ply", Replaced(ply, "float x", "float w")},
    {"x twice", "tent.ply", Replaced(ply, "float z", "float x")},
    {"a point that is not there", "tent.ply", Replaced(ply, "\3" + Bytes(0, 1, 2), "\3" + Bytes(0, 1, 4))},
    {"a byte too many", "tent.ply", ply + 'x'},
    {"a lying count", "tent.ply", Replaced(ply, "face 2", "face 4294967295")},
    {"no number", "tent.ply", Replaced(ply, Bytes(8.F), Bytes(std::numeric_limits<float>::infinity()))},
};

class QuickHeader : public testing::Test {
protected:
    QuickHeader() {
        static bool const registered = [] {
            RegisterIOPlugins(FileKind3D, fileFromNativeName(ZEL_SCENE_PLUGIN));
            return true;
        }();
        (void)registered;
        folder.Write("roof.mtl", mtl);
    }

    bool IsQuick(std::string const& name, CSceneDocument& scene) const {
        std::filesystem::path const path = std::filesystem::path(folder.Native()) / name;
        QuickFile file(path, [] {});
        return file.IsOpen() && ReadQuickHeader(path.extension().native().substr(1), file, scene);
    }

    /// Everything as the plug-in tells it, without what only a list does without. Empty for a failure.
    std::string Facts(std::string const& name, bool headerOnly, MediaLimits const& limits = {}) const {
        CSceneIo io(CFileNameSpec(CXTString<char16_t>(folder.Path(name).c_str())), IoFlagLoading | IoFlagSilent,
                    nullptr);
        io.limits = limits;
        CSceneDocument scene;
        bool const read = headerOnly ? io.ReadHeader(scene) : io.Read(scene);
        return read ? Text(scene) : std::string(XCW2A(io.GetIoErrorTxt(), xEncodingUtf8));
    }

    static std::string Text(CSceneDocument const& scene) {
        std::ostringstream text;
        auto const& counts = scene.counts;
        for (auto const& count :
             {counts.vertices, counts.faces, counts.materials, counts.cameras, counts.lights, counts.animations}) {
            text << count.value_or(~0ULL) << ' ';
        }
        // assimp's numbers may be off by the last bit.
        text.precision(5);
        SceneBox const& box = scene.boundingBox;
        for (float const number :
             {box.lowest.x, box.lowest.y, box.lowest.z, box.highest.x, box.highest.y, box.highest.z}) {
            text << number << ' ';
        }
        for (SceneMaterial const& material : scene.materials) {
            text << '\n' << XCW2A(material.name, xEncodingUtf8);
            for (float const part : material.diffuse) {
                text << ' ' << part;
            }
            for (auto const& path : material.texturePaths) {
                text << ' ' << XCW2A(path, xEncodingUtf8);
            }
        }
        text << '\n'
             << XCW2A(scene.format, xEncodingUtf8) << ' ' << scene.metadata.GetCount() << ' '
             << XCW2A(scene.metadata.GetText(u"SourceAsset_Format"), xEncodingUtf8);
        return text.str();
    }

    TemporaryFolder folder;
};

TEST_F(QuickHeader, TellsWhatTheWholeFileTellsOrLeavesItToIt) {
    for (Row const& row : rows) {
        SCOPED_TRACE(std::string(row.file) + ": " + row.what);
        folder.Write(row.file, row.content);
        CSceneDocument scene;
        EXPECT_EQ(IsQuick(row.file, scene), row.isPlain);
        EXPECT_EQ(Facts(row.file, true), Facts(row.file, false));
    }
}

TEST_F(QuickHeader, LeavesUnusualMaterialsToTheWholeFile) {
    folder.Write("roof.obj", obj);
    for (std::string const line :
         {"map_Kd -s 1 1 1 wood.png", "map_Kd fine wood.png", "map_Kd *0", "newmtl tiles", "newmtl", "Kd 1",
          "Kd spectral a.rfl", "refl sky.png", "norm flat.png", "Pr 0.5", "map_Ks other.png"}) {
        SCOPED_TRACE(line);
        folder.Write("roof.mtl", mtl + line + "\r\n");
        CSceneDocument scene;
        EXPECT_FALSE(IsQuick("roof.obj", scene));
        EXPECT_EQ(Facts("roof.obj", true), Facts("roof.obj", false));
    }
}

TEST_F(QuickHeader, SurvivesFilesThatAreCutAnywhere) {
    for (Row const& row : {rows[0], Row{"", "sail.stl", stl}, Row{"", "tent.ply", ply}}) {
        std::string const name = row.file;
        for (std::size_t size = 0; size < row.content.size(); ++size) {
            folder.Write(name, row.content.substr(0, size));
            CSceneDocument scene;
            // Of a text, whole lines may be left.
            if (IsQuick(name, scene) && (!name.ends_with(".obj") || Facts(name, true) != Facts(name, false))) {
                ADD_FAILURE() << name << " cut at " << size;
            }
        }
    }
}

TEST_F(QuickHeader, ReadsPastItsBufferAndKeepsToTheLimits) {
    std::string large = points;
    while (large.size() < (1 << 20)) {
        large += "f 1 2 3\n";
    }
    folder.Write("roof.obj", large);
    CSceneDocument scene;
    ASSERT_TRUE(IsQuick("roof.obj", scene));
    unsigned long long const faces = ((1 << 20) - points.size() + 7) / 8;
    EXPECT_EQ(scene.counts.faces, faces);
    MediaLimits const limits[] = {
        {.maxFaces = faces, .maxVertices = 3 * faces}, {.maxFaces = faces - 1}, {.maxVertices = 3 * faces - 1}};
    for (MediaLimits const& limit : limits) {
        EXPECT_EQ(Facts("roof.obj", true, limit), Facts("roof.obj", false, limit));
    }
    EXPECT_NE(Facts("roof.obj", true, limits[2]).find(std::to_string(3 * faces)), std::string::npos);
}

} // namespace
