// SPDX-License-Identifier: MIT
#include "zeltools/files/file_types.h"

#include "tests/support/printers.h"
#include "tests/support/thrown.h"
#include "zeltools/files/file_info.h"
#include "zeltools/files/registered_file.h"

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

TEST_F(FileTypes, AnEmptyExtensionListThrowsAndLeavesTheRegistryUsable) {
    for (char16_t const* list : {u"", u"|"})
        EXPECT_EQ(support::Thrown([&] { Register(list, FourCC("EMPT"), 0x10001); }), "argument");
    EXPECT_EQ(fileGetProperties(FourCC("EMPT")), 0u);
    std::thread([] { EXPECT_EQ(fileGetClass(u"a.bmp"), FourCC("BMP ")); }).join(); // the lock is free
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

TEST_F(FileTypes, LookUpsByExtensionRunBesideRegistrations) {
    std::vector<std::jthread> threads;
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
    threads.clear(); // waits for each
    EXPECT_EQ(CRegisteredFile::Instance().GetParserCount(u".shared"), 600u);
}

} // namespace
