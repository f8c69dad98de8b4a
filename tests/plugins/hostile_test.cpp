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
#include <vector>

namespace {

struct Row {
    std::string file;
    std::string expect;
    std::string defect;
};

std::vector<Row> ReadDefects() {
    std::ifstream table(ZELTOOLS_HOSTILE_FILES "/defects.tsv");
    std::vector<Row> rows;
    std::string line;
    for (std::getline(table, line); std::getline(table, line);) {
        std::istringstream cells(line);
        Row& row = rows.emplace_back();
        std::getline(cells, row.file, '\t');
        std::getline(cells, row.expect, '\t');
        std::getline(cells, row.defect);
    }
    return rows;
}

/// Small, so that a file that lies is refused by the limit and not by the machine.
void SetLimits(MediaLimits& limits) {
    limits.maxPixels = 1'000'000;
    limits.maxImageBytes = 64 << 20;
    limits.maxFaces = 1'000'000;
    limits.maxVertices = 1'000'000;
    limits.timeMs = 5'000;
}

struct Answer {
    bool headerIsRead = false;
    bool isRead = false;
    std::string error;
};

std::string Narrow(CXTString<char16_t> const& text) {
    return fileGetNativeName(text).GetConstBuffer();
}

template <class Io, class Document>
Answer ReadWith(CXTString<char16_t> const& path) {
    Io io(CFileNameSpec(path), IoFlagLoading | IoFlagSilent, nullptr);
    SetLimits(io.limits);
    Document document;
    Answer answer;
    answer.headerIsRead = io.ReadHeader(document);
    answer.error = answer.headerIsRead ? "" : Narrow(io.GetIoErrorTxt());
    answer.isRead = io.Read(document);
    if (!answer.isRead && answer.error.empty()) {
        answer.error = Narrow(io.GetIoErrorTxt());
    }
    return answer;
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
        for (Row const& row : ReadDefects()) {
            CXTString<char16_t> const path = fileFromNativeName((ZELTOOLS_HOSTILE_FILES "/" + row.file).c_str());
            CFileInfo const info{CFileNameSpec(path)};
            if ((info.GetKindOf() & kind) == 0 || info.GetLoader() != FileIdPlugin) {
                continue;
            }
            ++count;
            std::fprintf(stderr, "%s\n", row.file.c_str());
            Answer const answer = ReadWith<Io, Document>(path);
            std::string const about = row.file + ", " + row.defect + ": " + answer.error;
            EXPECT_TRUE(answer.isRead || !answer.error.empty()) << about;
            if (row.expect != "any") {
                EXPECT_EQ(answer.headerIsRead, row.expect == "pixels") << about;
                EXPECT_FALSE(answer.isRead) << about;
            }
            if (row.expect == "limit") {
                EXPECT_NE(answer.error.find("where 1000000 are allowed"), std::string::npos) << about;
                EXPECT_NE(answer.error.find(row.file), std::string::npos) << about;
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
