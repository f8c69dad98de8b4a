// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xfile.h"

#include "tests/persistence/file_kinds.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/persistence/file_hook.h"
#include "zeltools/persistence/framework_file.h"
#include "zeltools/persistence/xstdio_file.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/files.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <utility>
#include <vector>

using support::OpenDescriptors;
using support::Thrown;

namespace {

constexpr unsigned int ReadWriteAlways = XFILE_OPEN_READWRITE | XFILE_OPEN_CREATE | XFILE_OPEN_NO_TRUNCATE;

int OpenCause(std::u16string const& path, unsigned int flags) {
    CXFile file;
    CXFileException failure;
    return file.Open(path.c_str(), flags, &failure) ? 0 : failure.cause;
}

TEST(CXFile, FlagsSayWhatIsUsedAndWhatIsShared) {
    TemporaryFolder const folder;
    folder.Write("file", "content");
    std::u16string const path = folder.Path(std::string_view("file"));
    unsigned int const uses[] = {1, 2, 3, 1}; // of the four values of access: 1 reading, 2 writing
    std::pair<unsigned int, unsigned int> const shares[] = {{XFILE_SHARE_EXCLUSIVE, 0},
                                                            {XFILE_SHARE_DENY_WRITE, 1},
                                                            {XFILE_SHARE_DENY_READ, 2},
                                                            {XFILE_SHARE_DENY_NONE, 3},
                                                            {0, 0},
                                                            {0x70, 0}};
    for (unsigned int first = 0; first < 4; ++first) {
        for (auto const& [firstFlag, firstShares] : shares) {
            CXFile const holder(path.c_str(), first | firstFlag);
            for (unsigned int second = 0; second < 4; ++second) {
                for (auto const& [flag, secondShares] : shares) {
                    bool const isLetIn = (uses[first] & ~secondShares) == 0 && (uses[second] & ~firstShares) == 0;
                    EXPECT_EQ(OpenCause(path, second | flag), isLetIn ? 0 : CXFileException::sharingViolation)
                        << first << ' ' << firstFlag << ' ' << second << ' ' << flag;
                }
            }
            EXPECT_EQ(OpenCause(path, XFILE_OPEN_CREATE | XFILE_OPEN_WRITE), CXFileException::sharingViolation);
        }
    }
    EXPECT_EQ(folder.Read("file"), "content"); // a refused create has cut nothing
}

TEST(CXFile, OpensOrSaysWhyNot) {
    TemporaryFolder const folder;
    std::string const deep = std::string(120, 'd') + "/" + std::string(60, 'e') + "/";
    folder.Write("file", "old");
    folder.Write(deep + "x");
    auto const in = [&](std::string_view name) { return folder.Path(name); };
    auto const ofLength = [&](std::size_t length) { return in(deep) + std::u16string(length - in(deep).size(), u'n'); };
    struct {
        std::u16string path;
        unsigned int flags;
        int cause;
    } const rows[] = {{u"", XFILE_OPEN_READ, CXFileException::badPath},
                      {folder.Path(), XFILE_OPEN_READ, CXFileException::accessDenied},
                      {in("none"), XFILE_OPEN_READ, CXFileException::fileNotFound},
                      {in("none"), XFILE_OPEN_NO_TRUNCATE, CXFileException::fileNotFound},
                      {in("none/a"), ReadWriteAlways, CXFileException::badPath},
                      {ofLength(259), ReadWriteAlways, 0},
                      {ofLength(260), ReadWriteAlways, CXFileException::badPath},
                      {in("file"), ReadWriteAlways, 0},
                      {in("new"), XFILE_OPEN_CREATE | XFILE_OPEN_WRITE, 0}};
    for (auto const& row : rows)
        EXPECT_EQ(OpenCause(row.path, row.flags), row.cause) << testing::PrintToString(row.path);
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_FALSE(CXFile().Open(nullptr, 0, nullptr));
    EXPECT_EQ(Thrown([&] { CXFile(folder.Path().c_str(), XFILE_OPEN_READ); }), "cause 5");
}

TEST(CXFile, ReadsWritesSeeksAndCuts) {
    TemporaryFolder const folder;
    std::u16string const path = folder.Path(std::string_view("file"));
    CXFile file(path.c_str(), ReadWriteAlways);
    EXPECT_EQ(file.GetFilePath(), path.c_str());
    file.Write("0123456789", 10);
    file.Write("ignored", 0x100000000); // the low 32 bits are 0
    char text[8]{};
    EXPECT_EQ(file.Seek(-4, CXFile::end), 6U);
    EXPECT_EQ(file.Read(text, 0x100000003), 3U);
    EXPECT_STREQ(text, "678");
    EXPECT_EQ(file.Read(text, 8), 1U);
    EXPECT_EQ(file.Read(nullptr, 0), 0U);
    EXPECT_EQ(file.Seek(-1, CXFile::begin), CXFile::BadPosition);
    EXPECT_EQ(file.Seek(0, static_cast<CXFile::SeekPosition>(3)), CXFile::BadPosition);
    EXPECT_EQ(file.GetPosition(), 10U);
    EXPECT_TRUE(file.SetLength(4));
    EXPECT_EQ(file.GetPosition(), 4U);
    file.Flush();
    EXPECT_TRUE(file.Open(file.GetFilePath(), XFILE_OPEN_READ, nullptr)); // its own path, and the exclusive one before
    EXPECT_EQ(Thrown([&] { file.Write("x", 1); }), "cause 5");
    EXPECT_EQ(Thrown([&] { file.Read(nullptr, 1); }), "cause 1");
    EXPECT_EQ(Thrown([&] { file.SetLength(1); }), "cause 5");
    file.Close();
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
    file.SetFilePath(u"C:\\dir\\name.ext");
    EXPECT_EQ(file.GetFileName(), u"name.ext");
}

TEST(CXFile, AClosedFileFailsAsItWasToldTo) {
    platform::SetLastError(platform::ErrorDiskFull); // of an earlier call; nobody may take it for theirs
    char byte = 0;
    for (bool const throws : {true, false}) {
        CXFile file(throws);
        auto const expected = [&](char const* name) { return std::string(throws ? name : "nothing"); };
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.Read(&byte, 1), 0U); }), expected("cause 1"));
        EXPECT_EQ(Thrown([&] { file.Write(&byte, 1); }), expected("cause 1"));
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.GetLength(), 0U); }), expected("cause 5"));
        EXPECT_EQ(Thrown([&] { EXPECT_FALSE(file.SetLength(1)); }), expected("cause 13"));
        EXPECT_EQ(Thrown([&] { EXPECT_EQ(file.GetPosition(), CXFile::BadPosition); }), expected("cause 6"));
        EXPECT_EQ(file.SeekToBegin(), CXFile::BadPosition);
        file.Flush();
        file.Close();
        file.Abort();
    }
}

TEST(CXFile, HandlesOfOthersAreNeverClosed) {
    struct HostFile : CFile {
        void* handle = nullptr;
        CXTString<char16_t> GetFilePath() const override { return u"\\host\\file"; }
        void* GetFileHandle() const override { return handle; }
    };
    TemporaryFolder const folder;
    CXFile original(folder.Path(std::string_view("file")).c_str(), ReadWriteAlways);
    std::ptrdiff_t const before = OpenDescriptors();
    {
        CXFile over(original.GetHandle(), true);
        over.Write("by hand", 7);
        over.Close();
        CXFile again(original.GetHandle(), false);
        again.Init(original.GetHandle());
        EXPECT_EQ(Thrown([&] { again.Read(nullptr, 1); }), "cause 1"); // Init made it throw
        HostFile host;
        host.handle = original.GetHandle();
        static int heard = 0;
        xSetFileHook([](void*, int) { ++heard; });
        CXFile(&host, false).Close();
        xSetFileHook(nullptr);
        EXPECT_EQ(heard, 2); // of the opening too
        CXFile copy(&host, false);
        EXPECT_EQ(OpenDescriptors(), before + 1);
        EXPECT_EQ(copy.GetFilePath(), u"\\host\\file");
        EXPECT_EQ(copy.GetPosition(), 7U);
        host.handle = nullptr;
        CXFile closed(&host, false);
        EXPECT_EQ(Thrown([&] { closed.GetLength(); }), "cause 5"); // made to throw, too
    }
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_EQ(original.GetLength(), 7U);
    void* const given = original.GetHandle();
    original.Init(given); // given away, and open still
    EXPECT_FALSE(original.GetFilePath().IsEmpty());
    original.Close();
    EXPECT_TRUE(platform::CloseFile(given));
    CXStdioFile stream(folder.Path(std::string_view("file")).c_str(), XFILE_OPEN_READ);
    stream.Init(nullptr); // closes what was open, stream and all
    EXPECT_EQ(stream.GetStream(), nullptr);
    EXPECT_EQ(OpenDescriptors(), before - 1);
}

TEST(CXFile, TheHookHearsOfEveryOpeningAndClosing) {
    static std::vector<void*> heard;
    EXPECT_EQ(xSetFileHook([](void* object, int value) { heard.insert(heard.end(), value == 1 ? object : nullptr); }),
              nullptr);
    TemporaryFolder const folder;
    std::u16string const path = folder.Path(std::string_view("file"));
    CXFile file(path.c_str(), ReadWriteAlways);
    void* const handle = file.GetHandle();
    file.Open(path.c_str(), XFILE_OPEN_READ, nullptr); // closes the first one
    void* const second = file.GetHandle();
    file.Close();
    file.Close();
    CXStdioFile text(path.c_str(), XFILE_OPEN_READ);
    void* const stream = text.GetStream();
    text.Close();
    text.Open(folder.Path().c_str(), XFILE_OPEN_READ, nullptr);
    EXPECT_NE(xSetFileHook(nullptr), nullptr);
    text.Open(path.c_str(), XFILE_OPEN_READ, nullptr);
    EXPECT_EQ(heard, (std::vector<void*>{handle, handle, second, second, stream, stream}));
}

/// The message of an exception, which only derived classes see.
struct Message : CXFileException {
    static CXTString<char16_t> Of(CXFileException const& exception) {
        return exception.*static_cast<CXTString<char16_t> CXException::*>(&Message::message);
    }
};

TEST(CXFile, AFullDiskIsTold) {
    CXFile full(u"\\dev\\full", XFILE_OPEN_WRITE | XFILE_SHARE_DENY_NONE);
    EXPECT_EQ(Thrown([&] { full.Write("x", 1); }), "cause 13");

    TemporaryFolder const folder;
    // In a view of its own on the disks, so that nothing stays mounted whatever happens.
    if (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", folder.Native().c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "only root can mount a small disk";
    }
    {
        std::u16string const path = folder.Path(std::string_view("file"));
        CXFile file(path.c_str(), ReadWriteAlways);
        std::vector<char> const data(100'000);
        try {
            file.Write(data.data(), data.size());
            ADD_FAILURE() << "100000 bytes on a disk of 65536";
        } catch (CXFileException* e) { // a part was taken
            EXPECT_EQ(e->cause, CXFileException::diskFull);
            EXPECT_EQ(e->fileName, CXTString<char16_t>(u'\xFFFF', 1));
            EXPECT_EQ(Message::Of(*e), path.c_str());
            e->Delete();
        }
        EXPECT_EQ(Thrown([&] { file.Write(data.data(), 1); }), "cause 13");
    }
    umount(folder.Native().c_str());
}

TEST(CXFile, RunsOutOfDescriptorsAndIntoReadOnlyFolders) {
    TemporaryFolder const folder;
    folder.Write("file");
    std::u16string const path = folder.Path(std::string_view("file"));
    // A sanitizer that meets a class for the first time looks at it through a pipe, for which there will be no room.
    EXPECT_EQ(OpenCause(path, XFILE_OPEN_READ), CXFileException::none);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit const none{3, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(OpenCause(path, XFILE_OPEN_READ), CXFileException::tooManyOpenFiles);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(OpenCause(u"\\sys\\zel", ReadWriteAlways), CXFileException::accessDenied);
}

} // namespace
