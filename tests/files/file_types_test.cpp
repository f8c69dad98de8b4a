// SPDX-License-Identifier: MIT
#include "zeltools/files/file_types.h"

#include "tests/support/printers.h"
#include "zeltools/files/file_info.h"
#include "zeltools/files/registered_file.h"
#include "zeltools/foundation/xexception.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

using Text = CXTString<char16_t>;

/// Each test has the registry for itself, with nothing but the built-in types.
class FileTypes : public testing::Test {
protected:
    FileTypes() { CRegisteredFile::Free(); }
    ~FileTypes() override { CRegisteredFile::Free(); }

    static CFileExt Register(char16_t const* extensions, unsigned int classId, unsigned int properties,
                             unsigned int loader = FileIdPlugin, unsigned int saver = FileIdUnknown) {
        CFileExt type(u"Test files", extensions, classId, properties, loader, saver, nullptr);
        fileRegisterFile(type);
        return type;
    }
};

TEST_F(FileTypes, BuiltInTypesKnowWhoLoadsAndSavesThem) {
    CFileExt type;
    ASSERT_TRUE(fileGetExtensionInfo(FourCC("ZFIL"), type));
    EXPECT_EQ(type.GetDescription(), u"ZEL - Z-Buffer files");
    EXPECT_EQ(type.GetProperties(), 0x1000Bu);
    EXPECT_EQ(type.GetLoader(), FileIdBuiltIn);
    EXPECT_EQ(type.GetSaver(), FileIdBuiltIn);
    EXPECT_EQ(fileGetLoader(u"a.rar"), FileIdUnknown);
    EXPECT_EQ(fileGetSaver(u"a.bmp"), FileIdUnknown);
    EXPECT_EQ(fileGetLoader(u"a.unheard"), 0u);
    EXPECT_EQ(fileGetClass(u""), 0u);
    EXPECT_EQ(fileGetMainExtension(FourCC("MPG4")), u".mpeg");
    // Two rows share the class: the later record counts, and both extensions lead to it.
    EXPECT_EQ(fileGetMainExtension(FourCC("MOV ")), u".flv");
    EXPECT_EQ(fileGetClass(u"a.mov"), FourCC("MOV "));
    EXPECT_EQ(fileGetMainExtension(Text(u"x\\a.mov")), u".flv");
    EXPECT_EQ(fileGetMainExtension(Text(u"x\\a.unheard")), u"x\\a.unheard");
}

TEST_F(FileTypes, RegistrationPutsTheRecordInOrder) {
    EXPECT_EQ(Register(u".JPG|.JPEG", FourCC("JPEG"), 0x10001).GetExtension(), u".jpg|.jpeg");
    CFileExt const type = Register(u".jpeg|.jpg", FourCC("JPG2"), 0x10001);
    EXPECT_EQ(type.GetExtension(), u".jpg|.jpeg");
    EXPECT_EQ(type.GetDescription(), u"JPG - Test files");
    EXPECT_EQ(Register(u".s3d", FourCC("S3D "), 0x40002).GetProperties(), 0x40082u);
    CFileExt found;
    EXPECT_TRUE(fileGetFileExt(u".JPEG", found));
    EXPECT_EQ(found.GetClass(), FourCC("JPEG"));
}

TEST_F(FileTypes, AnEmptyExtensionListThrowsAndLeavesTheRegistryUsable) {
    for (char16_t const* list : {u"", u"|"}) {
        try {
            Register(list, FourCC("EMPT"), 0x10001);
            FAIL();
        } catch (CXInvalidArgException* exception) {
            exception->Delete();
        }
    }
    EXPECT_EQ(fileGetProperties(FourCC("EMPT")), 0u);
    std::thread([] { EXPECT_EQ(fileGetClass(u"a.bmp"), FourCC("BMP ")); }).join(); // the lock is free
}

TEST_F(FileTypes, ATypeThatComesAgainKeepsWhatItCouldDo) {
    Register(u".bmp", FourCC("BMP "), 0x10002, FileIdUnknown, FileIdPlugin);
    EXPECT_EQ(fileGetLoader(u"a.bmp"), FileIdBuiltIn);
    EXPECT_EQ(fileGetSaver(u"a.bmp"), FileIdPlugin);
    EXPECT_EQ(fileGetProperties(FourCC("BMP ")), 0x10013u);
}

TEST_F(FileTypes, ParsersOfAnExtensionHaveAnOrder) {
    Register(u".bmp", FourCC("LAST"), 0x10001);
    Register(u".bmp", FourCC("FRST"), 0x10801);
    CFileExt type;
    unsigned int const order[] = {FourCC("FRST"), FourCC("BMP "), FourCC("LAST")};
    for (unsigned int i = 0; i < 3; ++i) {
        ASSERT_TRUE(CRegisteredFile::Instance().GetParser(u".bmp", i, type));
        EXPECT_EQ(type.GetClass(), order[i]);
    }
    EXPECT_FALSE(CRegisteredFile::Instance().GetParser(u".bmp", 3, type));
    EXPECT_EQ(fileFindParser(u"a.bmp", 0x10000, 0x10), FourCC("BMP "));
    EXPECT_EQ(fileFindParser(u"a.bmp", 0x40000, 0), 0u);
    EXPECT_EQ(fileFindParser(u"a.wmv", FileKindVideo, FilePropertyLoadOther), FourCC("MPG4"));
}

TEST_F(FileTypes, UnregisteringTakesAwayWhatItIsToldTo) {
    fileUnregisterFile(FourCC("ZIP "), 0);
    EXPECT_EQ(CRegisteredFile::Existing(), nullptr); // there was no registry yet, and none was made
    Register(u".zip", FourCC("ZIP3"), 0x400001);
    fileUnregisterFile(FourCC("ZIP "), 1);
    EXPECT_EQ(fileGetProperties(FourCC("ZIP ")), 0x400002u);
    fileUnregisterFile(FourCC("ZIP "), 2);
    EXPECT_EQ(fileGetProperties(FourCC("ZIP ")), 0x400000u);
    EXPECT_EQ(fileGetSaver(u"a.zip"), FileIdUnknown);
    fileUnregisterFile(FourCC("ZIP "), 3);
    EXPECT_EQ(fileGetClass(u"a.zip"), 0u); // the other type of the extension cannot be reached by it either
    EXPECT_EQ(fileGetMainExtension(FourCC("ZIP3")), u".zip");
}

TEST_F(FileTypes, ListsAreFilteredAndSortedWithoutCase) {
    unsigned int count = 0;
    CFileExt* const bitmaps = fileGetRegisteredFiles(count, 0x10001);
    ASSERT_GT(count, 5u);
    for (unsigned int i = 0; i < count; ++i) {
        EXPECT_TRUE(bitmaps[i].GetProperties() & 0x10000);
        EXPECT_TRUE(bitmaps[i].GetProperties() & 5);
        if (i > 0) {
            EXPECT_LE(bitmaps[i - 1].GetDescription().CompareNoCase(bitmaps[i].GetDescription()), 0);
        }
    }
    fileFreeRegisteredFiles(bitmaps, 0);
    EXPECT_EQ(fileGetRegisteredFiles(count, 0x40000000), nullptr);
    EXPECT_EQ(count, 0u);
    fileFreeRegisteredFiles(nullptr, 0);

    CXArray<Text> extensions(false);
    extensions.Add(u"kept");
    EXPECT_EQ(fileGetExtensionArrayByProperty(0x10040, extensions, true, false), 2);
    EXPECT_EQ(extensions[1], u"*.zpic");
    EXPECT_EQ(fileGetExtensionArray(FourCC("BMP "), extensions, false), 2);
    EXPECT_EQ(extensions[1], u".dib");
    EXPECT_EQ(fileGetExtensionArray(FourCC("none"), extensions, false), 0);
}

TEST_F(FileTypes, LookUpsByExtensionRunBesideRegistrations) {
    std::vector<std::thread> threads;
    for (unsigned int n = 0; n < 4; ++n) {
        threads.emplace_back([n] {
            for (int i = 0; i < 200; ++i) {
                if (n == 0) {
                    CRegisteredFile::Parser parser;
                    EXPECT_TRUE(CRegisteredFile::Instance().GetParserFacts(u".bmp", 0, parser));
                } else {
                    Text list;
                    list.Format(u".t%d_%d|.shared", n, i);
                    CFileExt type(u"", list, n << 16 | static_cast<unsigned int>(i), 1, FileIdPlugin, FileIdUnknown,
                                  nullptr);
                    fileRegisterFile(type);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(CRegisteredFile::Instance().GetParserCount(u".shared"), 600u);
}

} // namespace
