// SPDX-License-Identifier: MIT
// The loader against real libraries: those of plugin_zoo, copied into a folder of the test's own, and files that only
// look like some.
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/files/file_types.h"
#include "zeltools/files/io_plugins.h"
#include "zeltools/files/plugin_loader.h"
#include "zeltools/files/plugin_report.h"
#include "zeltools/files/plugins_directory.h"
#include "zeltools/files/registered_file.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/log_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

using Text = CXTString<char16_t>;

constexpr char const* Entry = "InitBitmapParser";

class Plugins : public testing::Test {
protected:
    Plugins() {
        CRegisteredFile::Free();
        chmod(folder.Native().c_str(), 0755);
    }
    ~Plugins() override { CRegisteredFile::Free(); }

    /// A plug-in of the zoo in the test's folder.
    Text Copy(std::string const& name, std::string const& as) const {
        std::filesystem::copy_file(std::string(ZEL_PLUGIN_ZOO "/") + name + ".so", folder.Native() + as);
        chmod((folder.Native() + as).c_str(), 0755);
        return Path(as);
    }
    Text Path(std::string const& name) const { return folder.Path(name).c_str(); }

    static bool Load(Text const& path) {
        PluginInfo info;
        bool const loaded = LoadPlugin(path, Entry, info);
        EXPECT_EQ(loaded, info.handle != nullptr);
        EXPECT_EQ(loaded, info.address != nullptr);
        return loaded;
    }

    /// The report on a file; of no path when there is none.
    static PluginReport ReportOf(Text const& path) {
        for (PluginReport const& report : GetPluginReports())
            if (report.path == path)
                return report;
        return {};
    }

    TemporaryFolder folder;
};

TEST(PluginsDirectory, IsMadeOfTheDirectoryPart) {
    Text const application = GetApplicationPath(true);
    EXPECT_EQ(GetPluginsDirectory(), application + u"Plugins\\");
    SetPluginsDirectory(u"C:\\Quarry\\tool.exe", true);
    EXPECT_EQ(GetPluginsDirectory(), Text(u"C:\\Quarry\\Plugins\\"));
    SetPluginsDirectory(u"", true);
    SetPluginsDirectory(u"C:\\Plugins\\more\\", true);
    EXPECT_EQ(GetPluginsDirectory(), Text(u"C:\\Plugins\\more\\"));
    SetPluginsDirectory(u"parsers\\", false);
    EXPECT_EQ(GetPluginsDirectory(), application + u"parsers\\");
}

TEST_F(Plugins, RefusesWhatIsNoneAndSaysWhy) {
    Copy("good", "cut.so");
    std::filesystem::resize_file(folder.Native() + "cut.so", 4096); // its head, but not all that is to be loaded
    Copy("good", "head.so");
    std::filesystem::resize_file(folder.Native() + "head.so", 64);
    Copy("good", "shared.so");
    chmod((folder.Native() + "shared.so").c_str(), 0777);
    folder.Write("text.so", "#!/bin/sh\n%s%n\n");
    folder.Write("empty.so");
    std::filesystem::create_directory(folder.Native() + "folder.so");
    std::filesystem::create_symlink("nowhere", folder.Native() + "dangling.so");

    struct Row {
        Text path;
        PluginOutcome outcome;
    } const rows[] = {
        {Path("cut.so"), PluginIsCutShort},
        {Path("head.so"), PluginIsCutShort},
        {Path("shared.so"), PluginIsWritableByOthers},
        {Path("text.so"), PluginIsNoLibrary},
        {Path("empty.so"), PluginIsNoLibrary},
        {Path("folder.so"), PluginIsNoLibrary},
        {Path("dangling.so"), PluginIsMissing},
        {Path("absent.so"), PluginIsMissing},
        {u"", PluginIsMissing}, // the empty name would be the running program
        {Copy("other_release", "other_release.so"), PluginIsOfOtherRelease},
        {Copy("no_version", "no_version.so"), PluginHasNoVersion},
        {Copy("no_entry", "no_entry.so"), PluginHasNoEntry},
        {Copy("unresolved", "unresolved.so"), PluginCannotBeLoaded},
    };
    for (Row const& row : rows) {
        EXPECT_FALSE(Load(row.path));
        PluginReport const report = ReportOf(row.path);
        EXPECT_EQ(report.path, row.path);
        EXPECT_EQ(report.outcome, row.outcome) << testing::PrintToString(report.path);
        EXPECT_FALSE(GetPluginOutcomeText(report).IsEmpty());
    }
    EXPECT_EQ(ReportOf(Path("other_release.so")).release, 0x50001u);
    EXPECT_GE(ReportOf(Path("unresolved.so")).details.Find(u"NobodyHasThisFunction"), 0);

    // What was refused once stays refused, in whatever case and though the file is well now.
    std::filesystem::remove(folder.Native() + "text.so");
    Copy("good", "text.so");
    EXPECT_FALSE(Load(Path("text.so")));
    EXPECT_FALSE(Load(Path("TEXT.so")));
}

TEST_F(Plugins, RefusesAFolderThatOthersCanWrite) {
    Copy("good", "good.so");
    std::filesystem::create_directory(folder.Native() + "links");
    std::filesystem::create_symlink("../good.so", folder.Native() + "links/good.so");
    chmod((folder.Native() + "links").c_str(), 0777);
    EXPECT_FALSE(Load(Path("links/good.so")));
    EXPECT_EQ(ReportOf(Path("links/good.so")).outcome, PluginFolderIsWritable);
    chmod(folder.Native().c_str(), 0777);
    EXPECT_FALSE(Load(Path("good.so")));
    EXPECT_EQ(ReportOf(Path("good.so")).outcome, PluginFolderIsWritable);
}

/// A library is in memory as long as one lock is left, and the probe leaves none behind.
TEST_F(Plugins, LocksAreCounted) {
    Text const path = Copy("good", "locked.so");
    auto const isInMemory = [] {
        std::ifstream maps("/proc/self/maps");
        return std::string(std::istreambuf_iterator<char>(maps), {}).find("locked.so") != std::string::npos;
    };
    PluginInfo info;
    ASSERT_TRUE(LoadPlugin(path, Entry, info));
    ASSERT_TRUE(LoadPlugin(path, Entry, info));
    FreePlugin(info.handle, "Init3DParser", false); // not locked under this name
    FreePlugin(info.handle, Entry, false);
    EXPECT_TRUE(isInMemory());
    FreePlugins("initbitmapparser");
    EXPECT_TRUE(isInMemory());
    FreePlugins(Entry);
    EXPECT_FALSE(isInMemory());
    FreePlugin(info.handle, Entry, true); // no lock is left, so this marks nothing
    EXPECT_TRUE(LoadPlugin(path, Entry, info));
    FreePlugin(info.handle, Entry, true);
    EXPECT_FALSE(LoadPlugin(path, Entry, info));
}

/// Neither a name that looks like a format nor a log that cannot be written stands in the way of a plug-in.
TEST_F(Plugins, IsLoadedWhateverTheLogDoes) {
    static std::u16string logged;
    SetLogCallback(
        [](unsigned int, Text text, bool, void*) {
            logged += text.GetConstBuffer();
            detail::ThrowInvalidArg();
        },
        nullptr);
    Text const path = Copy("good", "%s%n.so");
    EXPECT_TRUE(Load(path));
    SetLogCallback(nullptr, nullptr);
    EXPECT_EQ(logged, support::Whole(u"Plug-in " + path + u": In use.\n"));
    FreePlugins(Entry);
}

TEST_F(Plugins, RegistersTheTypesOfOneKindAndGoesOnAfterBadOnes) {
    Copy("answers_false", "a.so");
    Copy("answers_nothing", "b.so");
    folder.Write("c.so", "not a library");
    Copy("good", "d.so");
    Copy("good", "not_by_name.bin");
    SetPluginsDirectory(folder.Path().c_str(), false);

    RegisterIOPlugins(FileKindVideo, u""); // no such entry point: nothing is touched
    EXPECT_EQ(fileGetProperties(FourCC("ZOO1")), 0u);
    RegisterIOPlugins(FileKindBitmap, u"");

    CFileExt type;
    ASSERT_TRUE(fileGetExtensionInfo(FourCC("ZOO1"), type));
    EXPECT_NE(type.GetInitIoCallback(), nullptr);
    EXPECT_EQ(fileGetClass(u"x.ZO2"), FourCC("ZOO1"));
    EXPECT_EQ(fileGetProperties(FourCC("ZOO0")), 0u); // no extension
    EXPECT_EQ(fileGetProperties(FourCC("ZOO3")), 0u); // another kind
    EXPECT_EQ(ReportOf(Path("a.so")).outcome, PluginRefused);
    EXPECT_EQ(ReportOf(Path("b.so")).outcome, PluginHasNoTypes);
    EXPECT_EQ(ReportOf(Path("c.so")).outcome, PluginIsNoLibrary);
    EXPECT_EQ(ReportOf(Path("d.so")).classes.GetSize(), 1);
    EXPECT_TRUE(ReportOf(Path("not_by_name.bin")).path.IsEmpty());
    EXPECT_TRUE(Load(Path("d.so"))); // another lock changes nothing in what is told
    EXPECT_EQ(ReportOf(Path("d.so")).classes.GetSize(), 1);
    FreePlugins(Entry);

    FreeIOPlugins(FileKindBitmap);
    EXPECT_NE(std::getenv("ZOO_RELEASED"), nullptr);
    EXPECT_NE(fileGetProperties(FourCC("ZOO1")), 0u); // the record is the host's to remove
}

/// The filter holds for the rest of the process, as the bad plug-ins do, so this comes in a test of its own.
TEST_F(Plugins, TheFilterTakesOnlyItsClasses) {
    Text const path = Copy("good", "good.so");
    std::filesystem::create_directory(folder.Native() + "backends");
    EXPECT_EQ(FilterPlugins(FourCC("NONE")), 1);
    EXPECT_EQ(FilterPlugins(FourCC("NONE")), 1);
    RegisterIOPlugins(FileKindBitmap, folder.Path().c_str());
    EXPECT_EQ(ReportOf(path).outcome, PluginHasNoSuitableTypes);
    EXPECT_TRUE(ReportOf(Path("backends\\")).path.IsEmpty()); // what a plug-in brings along is none
    EXPECT_NE(std::getenv("ZOO_RELEASED"), nullptr);
    EXPECT_FALSE(Load(path));
}

} // namespace
