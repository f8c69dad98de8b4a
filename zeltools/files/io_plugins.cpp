// SPDX-License-Identifier: MIT
#include "zeltools/files/io_plugins.h"

#include "zeltools/files/file_types.h"
#include "zeltools/files/io_file.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/plugin_loader.h"
#include "zeltools/files/plugin_report.h"
#include "zeltools/files/plugins_directory.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/modules.h"

namespace {

CHashTable<unsigned int>* acceptedClasses;

void DeleteFilter() {
    delete acceptedClasses;
    acceptedClasses = nullptr;
}

/// Null for a kind without plug-ins.
char const* EntryNameOf(unsigned int kind) {
    switch (kind) {
    case FileKindBitmap: return "InitBitmapParser";
    case FileKind3D: return "Init3DParser";
    default: return nullptr;
    }
}

/// A list of nothing but separators has no extension either, and the registry throws for it.
bool HasExtension(CFileExt const& type) {
    int position = 0;
    return !type.GetExtension().Tokenize(u"|", position).IsEmpty();
}

bool IsAccepted(CFileExt const& type, unsigned int kind) {
    return (type.GetProperties() & FileKindMask & kind) != 0 && HasExtension(type) &&
           (!acceptedClasses || acceptedClasses->IsEmpty() || acceptedClasses->IsFound(type.GetClass()));
}

/// Registers what suits of a plug-in's types and notes their classes in the report.
PluginOutcome RegisterTypes(PluginInfo const& plugin, unsigned int kind, PluginReport& report) {
    CXArray<CFileExt> types;
    if (!plugin.address(IoPluginEnumerate, &types)) {
        return PluginRefused;
    }
    if (types.GetSize() == 0) {
        return PluginHasNoTypes;
    }
    for (int i = 0; i < types.GetSize(); ++i) {
        CFileExt& type = types[i];
        if (IsAccepted(type, kind)) {
            type.SetInitIoCallback(plugin.address);
            fileRegisterFile(type);
            report.classes.Add(type.GetClass());
        }
    }
    return report.classes.GetSize() == 0 ? PluginHasNoSuitableTypes : PluginIsLoaded;
}

void RegisterPlugin(CXTString<char16_t> const& path, char const* entryName, unsigned int kind) {
    PluginInfo plugin;
    if (!LoadPlugin(path, entryName, plugin)) {
        return;
    }
    PluginReport report;
    report.path = path;
    report.entryName = entryName;
    report.release = PluginRelease;
    report.outcome = RegisterTypes(plugin, kind, report);
    if (report.outcome == PluginHasNoSuitableTypes) {
        IoPluginReleaseInfo release{.handle = plugin.handle};
        plugin.address(IoPluginRelease, &release);
    }
    if (report.outcome != PluginIsLoaded) {
        FreePlugin(plugin.handle, entryName, true);
    }
    detail::TellPluginOutcome(report);
}

/// The files to try, all of them before the first is tried: a plug-in may change the folder while it is asked.
CXArray<CXTString<char16_t>> FindPlugins(CXTString<char16_t> const& path) {
    CXArray<CXTString<char16_t>> files;
    bool const isOwnFolder = path.IsEmpty();
    IoFile finder;
    finder.FindFileOpen(isOwnFolder ? GetPluginsDirectory() : path, isOwnFolder ? platform::LibraryPattern : u"",
                        FileNameTypeAuto);
    CXTString<char16_t> entry;
    for (bool filterless = false; finder.FindFileNext(entry, filterless, isOwnFolder);) {
        if (!fileIsSlashTerminated(entry)) { // a folder holds what a plug-in brings along
            files.Add(entry);
        }
    }
    return files;
}

} // namespace

int FilterPlugins(unsigned int classId) {
    if (!acceptedClasses) {
        acceptedClasses = new CHashTable<unsigned int>;
        AddApplicationExitCallback(&DeleteFilter, 0);
    }
    acceptedClasses->Insert(classId);
    return static_cast<int>(acceptedClasses->GetCount());
}

void RegisterIOPlugins(unsigned int kind, CXTString<char16_t> const& path) {
    if (char const* const entryName = EntryNameOf(kind)) {
        for (CXTString<char16_t> const& file : FindPlugins(path)) {
            RegisterPlugin(file, entryName, kind);
        }
    }
}

void FreeIOPlugins(unsigned int kind) {
    if (char const* const entryName = EntryNameOf(kind)) {
        detail::ReleasePlugins(entryName);
    }
}
