// SPDX-License-Identifier: MIT
// The files of tests/data/hostile, read whole through the plug-ins. defects.tsv says what is wrong with each, and what
// must come of it. A file that takes the process down is the last one that was named on standard error.
#include "media/bitmap_io.h"
#include "media/scene_io.h"
#include <zeltools/zeltools.h>

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace {

std::string Narrow(CXTString<char16_t> const& text) {
    return fileGetNativeName(text).GetConstBuffer();
}

class HostileFiles : public testing::Test {
protected:
    HostileFiles() {
        InitZelTools(0);
        CBitmapIo::Register();
        CSceneIo::Register();
        SetPluginsDirectory(fileFromNativeName(ZELTOOLS_BUILT_PLUGINS "/"), false);
        RegisterIOPlugins(FileKindBitmap, u"");
        RegisterIOPlugins(FileKind3D, u"");
    }
    ~HostileFiles() override {
        CRegisteredFile::Free();
        CloseZelTools(0);
    }

    /// Reads the files of a kind that a plug-in reads.
    /// @return how many there were.
    template <class Io, class Document>
    static int ReadAll(unsigned int kind) {
        int count = 0;
        std::ifstream table(ZELTOOLS_HOSTILE_FILES "/defects.tsv");
        std::string line;
        for (std::getline(table, line); std::getline(table, line);) {
            std::istringstream cells(line);
            std::string file;
            std::string expect;
            std::string defect;
            std::getline(std::getline(std::getline(cells, file, '\t'), expect, '\t'), defect);
            CXTString<char16_t> const path = fileFromNativeName((ZELTOOLS_HOSTILE_FILES "/" + file).c_str());
            CFileInfo const info{CFileNameSpec(path)};
            if ((info.GetKindOf() & kind) == 0 || info.GetLoader() != FileIdPlugin) {
                continue;
            }
            ++count;
            std::fprintf(stderr, "%s\n", file.c_str());
            Io io(CFileNameSpec(path), IoFlagLoading | IoFlagSilent, nullptr);
            // Small, so that a file that lies is refused by the limit and not by the machine.
            io.limits.maxPixels = io.limits.maxFaces = io.limits.maxVertices = 1'000'000;
            io.limits.maxImageBytes = 64 << 20;
            io.limits.timeMs = 5'000;
            Document document;
            bool const headerIsRead = io.ReadHeader(document);
            std::string error = headerIsRead ? "" : Narrow(io.GetIoErrorTxt());
            bool const isRead = io.Read(document);
            error = isRead || !error.empty() ? error : Narrow(io.GetIoErrorTxt());
            std::string const about = file + ", " + defect + ": " + error;
            EXPECT_TRUE(isRead || !error.empty()) << about;
            if (expect != "any") {
                EXPECT_EQ(headerIsRead, expect == "pixels") << about;
                EXPECT_FALSE(isRead) << about;
            }
            if (expect == "limit") {
                EXPECT_NE(error.find("where 1000000 are allowed"), std::string::npos) << about;
                EXPECT_NE(error.find(file), std::string::npos) << about;
            }
        }
        return count;
    }
};

TEST_F(HostileFiles, AreRefusedByTheParsersOfImages) {
    if (!ZELTOOLS_HAS_BITMAP_PLUGIN) {
        GTEST_SKIP() << "built without the plug-in for images";
    }
    EXPECT_GT((ReadAll<CBitmapIo, CImageDocument>(FileKindBitmap)), 40);
}

TEST_F(HostileFiles, AreRefusedByTheParsersOfScenes) {
    if (!ZELTOOLS_HAS_SCENE_PLUGIN) {
        GTEST_SKIP() << "built without the plug-in for scenes";
    }
    EXPECT_GT((ReadAll<CSceneIo, CSceneDocument>(FileKind3D)), 40);
}

} // namespace
