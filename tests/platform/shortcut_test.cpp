// SPDX-License-Identifier: MIT
#include "zeltools/platform/shortcut.h"

#include "tests/support/temporary_folder.h"
#include "zeltools/platform/shell_link.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

using namespace std::string_literals;

std::string U16(unsigned int value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string U32(unsigned int value) {
    return U16(value & 0xFFFF) + U16(value >> 16);
}

std::string Wide(std::u16string_view text) {
    std::string bytes;
    for (char16_t const unit : text) {
        bytes += U16(unit);
    }
    return bytes;
}

std::string Header(unsigned int flags) {
    return U32(0x4C) +                                        // size of the header
           "\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46"s +    // class of shell links
           U32(flags) + U32(0x20) +                           // what follows; attribute archive
           std::string(24, '\0') + U32(0) + U32(0) + U32(1) + // three times; size; icon; show normally
           std::string(12, '\0');                             // hot key and reserved
}

std::string TargetIdList() {
    return U16(7) + U16(5) + "abc" + U16(0); // size of the list; one item of 5 bytes with its size; end
}

std::string LocalInfo() {
    std::string const path = "C:\\Textures\0"s;  // offset 0x1C
    std::string const suffix = "Wood.png\0"s;    // behind it
    return U32(0x1C + 12 + 9) + U32(0x1C) +      // size of all; size of its header
           U32(0x1) + U32(0) +                   // there is a local path; no volume
           U32(0x1C) + U32(0) + U32(0x1C + 12) + // local path; no network link; suffix
           path + suffix;
}

std::string WideLocalInfo() {
    std::string const texts = "?\0\0"s + Wide(u"C:\\\u6F22\\"s) + U16(0) + Wide(u"\u00E9.png"s) + U16(0);
    return U32(0x24 + static_cast<unsigned int>(texts.size())) + U32(0x24) + // a header with wide offsets
           U32(0x1) + U32(0) + U32(0x24) + U32(0) + U32(0x25) +              // narrow path "?" and empty suffix
           U32(0x27) + U32(0x27 + 12) +                                      // wide path, wide suffix
           texts;
}

std::string NetworkInfo() {
    std::string const share = "\\\\srv\\share\0"s;
    std::string const link = U32(0x14 + 12) + U32(0) +            // size; flags
                             U32(0x14) + U32(0) + U32(0) + share; // name; no device; no provider
    std::string const suffix = "a\\b.png\0"s;
    return U32(0x1C + 0x20 + 8) + U32(0x1C) + U32(0x2) + U32(0) + U32(0) + // there is a network link
           U32(0x1C) + U32(0x1C + 0x20) + link + suffix;
}

std::string EnvironmentBlock() {
    std::string const narrow = "%ZT_LINK%\\x"s;
    std::string const wide = Wide(u"%ZT_LINK%\\wide.png");
    return U32(0x314) + U32(0xA0000001) + narrow + std::string(260 - narrow.size(), '\0') + wide +
           std::string(520 - wide.size(), '\0') + U32(0); // the last number ends the list of blocks
}

std::string Counted(std::u16string_view text) {
    return U16(static_cast<unsigned int>(text.size())) + Wide(text);
}

std::string const Complete = Header(0x1 | 0x2 | 0x4 | 0x8 | 0x10 | 0x80) + TargetIdList() + LocalInfo() +
                             Counted(u"a name") + Counted(u"..\\x.png") + Counted(u"C:\\work") + EnvironmentBlock();

bool Parse(std::string const& bytes, ShellLink& link) {
    return ParseShellLink(std::as_bytes(std::span(bytes)), link);
}

TEST(ShellLink, ReadsEveryPart) {
    ShellLink link;
    ASSERT_TRUE(Parse(Complete, link));
    EXPECT_EQ(link.localPath, u"C:\\Textures\\Wood.png");
    EXPECT_EQ(link.relativePath, u"..\\x.png");
    EXPECT_EQ(link.workingDirectory, u"C:\\work");
    EXPECT_EQ(link.environmentPath, u"%ZT_LINK%\\wide.png");
    ASSERT_TRUE(Parse(Header(0x2) + WideLocalInfo(), link));
    EXPECT_EQ(link.localPath, u"C:\\\u6F22\\\u00E9.png");
    ASSERT_TRUE(Parse(Header(0x2) + NetworkInfo(), link));
    EXPECT_EQ(link.networkPath, u"\\\\srv\\share\\a\\b.png");
    ASSERT_TRUE(Parse(Header(0x8) + U16(5) + "a.png", link)); // narrow strings
    EXPECT_EQ(link.relativePath, u"a.png");
    ASSERT_TRUE(Parse(Header(0x102) + LocalInfo(), link)); // the flag that says to pass the link info over
    EXPECT_EQ(link.localPath, u"");
}

// Only the four bytes that end the block list may be missing.
TEST(ShellLink, RefusesWhatIsCutOffAnywhere) {
    std::size_t const blocks = Complete.size() - 0x314 - 4;
    for (std::size_t size = 0; size < Complete.size(); ++size) {
        ShellLink link;
        link.localPath = u"untouched";
        bool const mayEnd = (size >= blocks && size < blocks + 4) || size >= Complete.size() - 4;
        EXPECT_EQ(Parse(Complete.substr(0, size), link), mayEnd) << size;
        EXPECT_EQ(link.localPath == u"untouched", !mayEnd);
    }
}

TEST(ShellLink, RefusesOffsetsAndSizesThatPointOutside) {
    std::pair<std::size_t, char const*> const fields[] = {
        {0x4C + 7 + 2, "size of the link info"},
        {0x4C + 7 + 2 + 0x10, "offset of the local path"},
        {0x4C + 7 + 2 + 0x18, "offset of the suffix"},
    };
    for (auto const& [offset, what] : fields) {
        for (unsigned int const value : {0x7FFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFF0U, 100000U}) {
            std::string bytes = Complete;
            bytes.replace(offset, 4, U32(value));
            ShellLink link;
            EXPECT_FALSE(Parse(bytes, link)) << what << ' ' << value;
        }
    }
}

TEST(Shortcut, GivesTheFirstTargetOfALinkOfEitherKind) {
    TemporaryFolder const folder;
    setenv("ZT_LINK", "\\opt", 1);
    folder.Write("local.lnk", Complete);
    folder.Write("net.lnk", Header(0x2) + NetworkInfo());
    folder.Write("environment.lnk", Header(0x88) + Counted(u"x") + EnvironmentBlock());
    folder.Write("sub/relative.lnk", Header(0x88) + Counted(u"..\\x.png"));
    folder.Write("nowhere.lnk", Header(0x0));
    folder.Write("text.lnk", "not a link");
    ASSERT_EQ(mkfifo((folder.Native() + "fifo.lnk").c_str(), 0600), 0);
    folder.Write("sub/file.txt");
    ASSERT_EQ(symlink("../sub/file.txt", (folder.Native() + "sub/near").c_str()), 0);
    ASSERT_EQ(symlink("/etc/no such", (folder.Native() + "far").c_str()), 0);
    std::pair<char const*, std::u16string> const rows[] = {
        {"local.lnk", u"C:\\Textures\\Wood.png"},  {"net.lnk", u"\\\\srv\\share\\a\\b.png"},
        {"environment.lnk", u"\\opt\\wide.png"},   {"sub/relative.lnk", folder.Path("x.png")},
        {"sub/near", folder.Path("sub/file.txt")}, {"far", u"\\etc\\no such"},
    };
    std::u16string target;
    for (auto const& [name, expected] : rows) {
        EXPECT_TRUE(ReadShortcut(folder.Path(name), target)) << name;
        EXPECT_EQ(target, expected);
    }
    // A pipe does not make it wait for a writer.
    for (char const* const name : {"nowhere.lnk", "text.lnk", "missing.lnk", "", "fifo.lnk", "sub/file.txt"}) {
        EXPECT_FALSE(ReadShortcut(folder.Path(name), target)) << name;
    }
    EXPECT_EQ(target, u"\\etc\\no such"); // untouched
}

} // namespace
} // namespace platform
