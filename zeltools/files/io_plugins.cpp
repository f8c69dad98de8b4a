// SPDX-License-Identifier: MIT
#include "zeltools/files/io_plugins.h"

#include "zeltools/files/file_types.h"
#include "zeltools/files/io_file.h"
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

bool IsAccepted(CFileExt const& type, unsigned int kind) {
    return (type.GetProperties() & FileKindMask & kind) != 0 && !type.GetExtension().IsEmpty() &&
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
    char const* const entryName = EntryNameOf(kind);
    if (!entryName) {
        return;
    }
    // The names first: a plug-in may change the folder or the search while it is asked.
    IoFile finder;
    CXArray<CXTString<char16_t>> names;
    bool const isOwnFolder = path.IsEmpty();
    CXTString<char16_t> const pattern = isOwnFolder ? platform::LibraryPattern : u"";
    if (finder.FindFileOpen(isOwnFolder ? GetPluginsDirectory() : path, pattern, FileNameTypeAuto)) {
        CXTString<char16_t> name;
        for (bool filterless = false; finder.FindFileNext(name, filterless, isOwnFolder);) {
            names.Add(name);
        }
        finder.FindFileClose();
    }
    for (int i = 0; i < names.GetSize(); ++i) {
        RegisterPlugin(names[i], entryName, kind);
    }
}

void FreeIOPlugins(unsigned int kind) {
    if (char const* const entryName = EntryNameOf(kind)) {
        detail::ReleasePlugins(entryName);
    }
}
