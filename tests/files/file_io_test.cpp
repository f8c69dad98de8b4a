// SPDX-License-Identifier: MIT
// The manager of a load or save: which parser it takes, what it tells, and what it finds and keeps.

#include "zeltools/files/file_io.h"

#include "tests/support/noting_desktop.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/file_types.h"
#include "zeltools/files/io_options.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/process/thread_registry.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

using Wide = CXTString<char16_t>;

constexpr unsigned int ReaderClass = FourCC("RDER"); ///< Reads .zel1, as the first of two parsers.
constexpr unsigned int WriterClass = FourCC("WRTR"); ///< Reads and writes .zel1.
constexpr unsigned int AloneClass = FourCC("ALNE");  ///< Reads .zel2, one at a time.
constexpr unsigned int FailingClass = FourCC("FAIL");

std::atomic<int> parsersAlive = 0;

class SampleParser final : public CFileParser {
public:
    SampleParser(CFileIo* io, unsigned int parserClass) : CFileParser(io), classId(parserClass) { ++parsersAlive; }
    ~SampleParser() override { --parsersAlive; }
    bool IsSingleThreaded() const override { return classId == AloneClass; }

    unsigned int classId;
};

bool MakeParser(IoPluginMode mode, void* argument) {
    auto& info = *static_cast<IoPluginParserInfo*>(argument);
    if (mode != IoPluginCreateParser || info.classId == FailingClass) {
        return mode == IoPluginCreateParser; // true without a parser is no parser either
    }
    info.parser = new SampleParser(info.io, info.classId);
    return true;
}

class Manager final : public CFileIo {
public:
    using CFileIo::CanTryAnotherParser;
    using CFileIo::CFileIo;
    using CFileIo::CloseParser;
    using CFileIo::InitParser;
    using CFileIo::TryNextParser;
};

class FileIo : public testing::Test {
protected:
    FileIo() {
        EnablePreferencesSaving(false); // the user's own stay out of the tests
        Register(u".zel1", ReaderClass, FilePropertyLoad | FileKindBitmap);
        Register(u".zel1", WriterClass,
                 FilePropertyLoad | FilePropertySave | FilePropertySaveDialogAlways | FileKindBitmap);
        Register(u".zel2", AloneClass, FilePropertyLoad | FilePropertyLoadDialog | FileKind3D);
        Register(u".zel3", FailingClass, FilePropertyLoad);
    }
    ~FileIo() override {
        for (unsigned int const classId : {ReaderClass, WriterClass, AloneClass, FailingClass})
            fileUnregisterFile(classId, 0);
        EnablePreferencesSaving(true);
        EXPECT_EQ(parsersAlive, 0);
    }
    static void Register(char16_t const* extension, unsigned int classId, unsigned int properties) {
        unsigned int const id = classId == AloneClass ? FileIdCallback : FileIdPlugin; // both make their parser
        CFileExt type(u"Samples", extension, classId, properties, id, id, &MakeParser);
        fileRegisterFile(type);
    }

    TemporaryFolder folder;
};

TEST_F(FileIo, TakesTheParserOfTheNameAndDirection) {
    struct {
        CFileNameSpec name;
        unsigned int flags;
        unsigned int parser; ///< 0: none.
        int error;
    } const rows[] = {
        {u"C:\\a.zel1", IoFlagLoading, ReaderClass, IoSuccess},
        {u"C:\\a.zel1", 0, WriterClass, IoSuccess},                // the first cannot save
        {{u"C:\\a.zel1", ReaderClass}, 0, ReaderClass, IoSuccess}, // chosen: stays, and the save fails later
        {u"C:\\a.zel3", IoFlagLoading, 0, IoUnknownType},
        {u"C:\\a.nobody", IoFlagLoading, 0, IoUnknownType},
        {u"C:\\a.bmp", IoFlagLoading, 0, IoSuccess}, // the host's own
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.name.GetFileName()));
        Manager io(row.name, row.flags, nullptr);
        auto const* const parser = static_cast<SampleParser*>(io.InitParser());
        EXPECT_EQ(parser ? parser->classId : 0, row.parser);
        EXPECT_EQ(io.GetIoError(), row.error);
        if (parser) {
            EXPECT_EQ(parser->GetIoMgr(), &io);
            EXPECT_EQ(parser->MustShowDialog(), row.parser == WriterClass ? IoDialogAlways : IoDialogNone);
        }
        io.InitParser(); // closes the one before
        EXPECT_LE(parsersAlive, 1);
    }
    EXPECT_TRUE(CFileIo::IsSingleThreaded(u"C:\\a.zel2", IoFlagLoading));
    EXPECT_FALSE(CFileIo::IsSingleThreaded(u"C:\\a.zel1", IoFlagLoading));
    EXPECT_FALSE(CFileIo::IsSingleThreaded(u"C:\\a.nobody", IoFlagLoading));
    EXPECT_EQ(CFileIo::HasDialog(AloneClass, true), IoDialogOptional);
    EXPECT_EQ(CFileIo::HasDialog(WriterClass, false), IoDialogAlways);
    EXPECT_EQ(CFileIo::HasDialog(FourCC("none"), true), IoDialogNone);
    Manager const ofClass(WriterClass, IoFlagLoading, nullptr);
    EXPECT_EQ(ofClass.GetName(), u".zel1");
    EXPECT_EQ(ofClass.GetClass(), WriterClass); // though another reads the extension first
}

TEST_F(FileIo, IsMadeByWhoeverServesTheKind) {
    static int made = 0;
    auto const make = [](CFileNameSpec const& name, unsigned int flags, CWnd* parent) -> CFileIo* {
        ++made;
        return new Manager(name, flags, parent);
    };
    CFileIo::RegisterFileIoCreationCallback(FileKind3D, make);
    EXPECT_TRUE(CFileIo::IsSingleThreaded(u"C:\\a.zel2", IoFlagLoading));
    delete CFileIo::CreateFileIoFromPath({u"C:\\a.zel1", AloneClass}, IoFlagLoading); // the kind is the class's
    EXPECT_EQ(made, 2);
    delete CFileIo::CreateFileIoFromPath(u"C:\\a.zel1", IoFlagLoading);
    CFileIo::RegisterFileIoCreationCallback(FileKind3D, nullptr);
    delete CFileIo::CreateFileIoFromPath(u"C:\\a.zel2", IoFlagLoading);
    EXPECT_EQ(made, 2);
}

TEST_F(FileIo, AnotherNameKeepsWhatWasTold) {
    Manager io(u"C:\\a.zel1", IoFlagLoading, nullptr);
    CFileParser const* const parser = io.InitParser();
    io.SetIoError(u"line 3: no colour", nullptr, IoLogInfo::Error);
    io.SetNewFileName(u"D:\\b\\100%s.nobody");
    EXPECT_EQ(io.GetCurrentShortFileName(), u"100%s.nobody");
    EXPECT_EQ(io.GetCurrentFilePath(), u"D:\\b\\");
    EXPECT_EQ(parsersAlive, parser ? 1 : 0);
    EXPECT_EQ(io.GetIoErrorTxt(), u"line 3: no colour");
    io.InitParser(); // for that name there is none
    EXPECT_EQ(io.GetIoErrorTxt(), u"Unknown file type");
    io.SetNewFileName(u"C:\\a.zel1");
    EXPECT_NE(io.InitParser(), nullptr);
    EXPECT_EQ(io.GetIoError(), IoUnknownType); // a new try is the host's to clear
    NotingDesktop desktop;
    io.SetNewFileName(u"D:\\b\\100%s.zel1");
    io.SetIoError(IoCannotOpen, nullptr, IoLogInfo::Error);
    io.ReportIoError(nullptr, 0);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text.Find(u"File access failed 100%s.zel1\nCan't open the file 100%s.zel1."), 0);
}

TEST_F(FileIo, FallsThroughToTheNextParserOfANameOnly) {
    Manager io(u"C:\\a.zel1", IoFlagLoading, nullptr);
    EXPECT_TRUE(io.IsMultiParserExtension());
    ASSERT_TRUE(io.CanTryAnotherParser());
    io.TryNextParser();
    EXPECT_EQ(io.GetClass(), WriterClass);
    EXPECT_FALSE(io.CanTryAnotherParser());
    EXPECT_FALSE(Manager({u"C:\\a.zel1", ReaderClass}, IoFlagLoading, nullptr).CanTryAnotherParser());
}

TEST_F(FileIo, TellsTheUserOnceAndNobodyWhenSilent) {
    NotingDesktop desktop;
    desktop.mainWindow = reinterpret_cast<CWnd*>(&desktop);
    CIoOptions options(false);
    Manager io(u"C:\\a\\b.zel1", IoFlagLoading, nullptr);
    EXPECT_EQ(io.GetParentWnd(), desktop.mainWindow);
    EXPECT_TRUE(io.ReportIoError(&options, 0));
    EXPECT_TRUE(desktop.boxes.empty()); // nothing failed
    EXPECT_EQ(io.GetIoErrorTxt(), u"File successfully loaded");

    io.SetIoError(IoCannotOpen, &options, IoLogInfo::Error);
    io.ReportIoError(&options, 0);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text.Find(u"File access failed b.zel1\nCan't open the file b.zel1."), 0);
    io.SetIoError(u"line 3: no colour", &options, IoLogInfo::Error);
    EXPECT_EQ(io.GetIoError(), IoOwnText);
    EXPECT_EQ(io.GetIoErrorTxt(), u"line 3: no colour");

    Manager(u"C:\\a\\b.zel1", 0, nullptr).SetIoError(IoSuccess, &options, IoLogInfo::Information);

    SetSilentThread(true, 0);
    EXPECT_TRUE(io.ReportIoError(&options, 0));
    SetSilentThread(false, 0);
    io.SetSilentMode(true);
    EXPECT_TRUE(io.ReportIoError(u"seen by nobody"));
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(io.GetIoErrorTxt(), u"seen by nobody");

    io.SetSilentMode(false);
    options.SetFlag(IoOptionsShowLog, true);
    io.ReportIoError(&options, 0);
    ASSERT_EQ(desktop.boxes.size(), 2u);
    EXPECT_GE(desktop.boxes[1].text.Find(u"\nline 3: no colour\nFile successfully saved"), 0); // the log, not the box
    EXPECT_EQ(CFileIo::GetIoErrorTxtFromCode(false, IoSuccess, nullptr), u"File successfully saved");
    std::pair<int, char16_t const*> const texts[] = {
        {-3, u"Bad file format"},
        {-8, u"There is nothing to save.\nFile saving is canceled."},
        {IoOwnText, u""},
        {99, u"An unknown error occurs during file access"},
    };
    for (auto const& [code, text] : texts)
        EXPECT_EQ(CFileIo::GetIoErrorTxtFromCode(true, code, u"a"), text) << code;
}

TEST_F(FileIo, CancelReachesTheManagersOfAClassOnTheirThreads) {
    Manager other(u"C:\\a.zel2", IoFlagLoading, nullptr);
    std::atomic<int> ready = 0;
    std::atomic<int> cancelled = 0;
    std::vector<std::jthread> workers;
    for (int i = 0; i < 4; ++i) {
        workers.emplace_back([&] {
            Manager io(u"C:\\a.zel1", IoFlagLoading, nullptr);
            CFileParser const* const parser = io.InitParser();
            for (++ready; !parser->ShouldCancelParser();)
                std::this_thread::yield();
            io.CloseParser();
            cancelled += io.ShouldCancelParser() ? 0 : 1; // the next parser starts anew
            io.TryNextParser();
        });
    }
    while (ready < 4)
        std::this_thread::yield();
    SetFileClassCancel(ReaderClass);
    workers.clear(); // waits for each
    EXPECT_EQ(cancelled, 4);
    EXPECT_FALSE(other.ShouldCancelParser());
    EXPECT_FALSE(SampleParser(nullptr, 0).ShouldCancelParser());
}

TEST_F(FileIo, FindsTheFilesOfASequence) {
    for (char const* const name : {"shot2.tga", "SHOT10.TGA", "shot0001.tga", "shot.tga", "shot3.png", "shots4.tga",
                                   "2shot.tga", "shot5.tga/x"}) {
        folder.Write(name);
    }
    auto const names = [&](CXArray<Wide> const& files) {
        std::u16string all;
        for (Wide const& file : files)
            all += support::Whole(file).substr(folder.Path().size()) + u" ";
        return all;
    };
    Manager const io(folder.Path("shot2.tga").c_str(), IoFlagLoading, nullptr);
    CXArray<Wide> files;
    EXPECT_EQ(io.GetFileList(files, nullptr, nullptr, true), 3);
    EXPECT_EQ(names(files), u"shot0001.tga shot2.tga SHOT10.TGA ");
    io.GetFileList(
        files,
        [](char16_t const* path, void* context) { return Wide(path).Find(static_cast<char16_t*>(context)) >= 0; },
        const_cast<char16_t*>(u"10"), true);
    EXPECT_EQ(names(files), u"SHOT10.TGA ");

    Wide found = u"untouched";
    EXPECT_FALSE(CFileIo::FindMatchingFile(found, (folder.Path() + u"shot*.tga").c_str(), 7));
    EXPECT_FALSE(CFileIo::FindMatchingFile(found, folder.Path("none.tga").c_str(), 0));
    EXPECT_FALSE(CFileIo::FindMatchingFile(found, (folder.Path() + u"shot*.tga").c_str(), 5)); // a folder
    EXPECT_EQ(found, u"untouched");
    EXPECT_TRUE(CFileIo::FindMatchingFile(found, (folder.Path() + u"shot*.tga").c_str(), 1));
    EXPECT_EQ(found, folder.Path("shot0001.tga").c_str());
    EXPECT_TRUE(CFileIo::FindMatchingFile(found, folder.Path("shot.tga").c_str(), 7)); // no `*`: the file itself
    EXPECT_EQ(found, folder.Path("shot.tga").c_str());
}

TEST_F(FileIo, KeepsParametersUnlessPreferencesAreOff) {
    SetUserPreferencesPath(folder.Path().c_str());
    Manager io(u"C:\\a.zel1", IoFlagLoading, nullptr);
    CCustomData data;
    data.SetInt(1, 85);
    CCustomData read;
    EXPECT_FALSE(io.SaveIoParameters(true, data, ReaderClass));
    EnablePreferencesSaving(true);
    io.SetFlag(IoFlagNoParameters, true);
    EXPECT_FALSE(io.SaveIoParameters(true, data, ReaderClass));
    io.SetFlag(IoFlagNoParameters, false);
    EXPECT_FALSE(io.LoadIoParameters(true, read, ReaderClass));
    EXPECT_TRUE(io.SaveIoParameters(true, data, ReaderClass));
    EXPECT_TRUE(io.LoadIoParameters(true, read, ReaderClass));
    unsigned int id = 0;
    EXPECT_TRUE(read.GetUInt(0x494F434C, id));
    EXPECT_EQ(id, ReaderClass);
    EXPECT_TRUE(read.RemoveCustom(0x494F434C) && read.IsEqual(data));
    EXPECT_FALSE(io.LoadIoParameters(false, read, ReaderClass)); // those for saving are others
    detail::ForgetPreferencesPaths();
}

} // namespace
