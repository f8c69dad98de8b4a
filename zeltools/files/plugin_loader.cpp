// SPDX-License-Identifier: MIT
#include "zeltools/files/plugin_loader.h"

#include "zeltools/files/plugin_report.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/library_check.h"
#include "zeltools/platform/modules.h"

namespace {

/// What a lock is for.
struct ProcNameInfo {
    HINSTANCE handle = nullptr;
    CXTString<char> entryName;
};

/// A lock, or several.
struct LockPluginInfo {
    int lockCount = 1;
    CXTString<char16_t> path;
    IoPluginCallback address = nullptr;
};

/// A library that is refused under an entry name.
struct BadPluginInfo {
    CXTString<char16_t> path;
    CXTString<char> entryName;
};

} // namespace

template <>
struct CHashMethods<ProcNameInfo> {
    static unsigned int Hash(ProcNameInfo const& key) {
        return CHashMethods<HINSTANCE>::Hash(key.handle) ^ CHashMethods<CXTString<char>>::Hash(key.entryName);
    }
    static bool IsEqual(ProcNameInfo const& a, ProcNameInfo const& b) {
        return a.handle == b.handle && a.entryName == b.entryName;
    }
};

template <>
struct CHashMethods<BadPluginInfo> {
    static unsigned int Hash(BadPluginInfo const& key) {
        CXTString<char16_t> path = key.path;
        path.MakeLower();
        return CHashMethods<CXTString<char16_t>>::Hash(path);
    }
    static bool IsEqual(BadPluginInfo const& a, BadPluginInfo const& b) {
        return a.path.CompareNoCase(b.path) == 0 && a.entryName.CompareNoCase(b.entryName) == 0;
    }
};

namespace {

using LockTable = CHashMap<ProcNameInfo, ProcNameInfo const&, LockPluginInfo>;
using BadSet = CHashTable<BadPluginInfo>;

LockTable* locks;
BadSet* badPlugins;

void DeleteTables() {
    delete locks;
    delete badPlugins;
    locks = nullptr;
    badPlugins = nullptr;
}

LockTable& Locks() {
    if (!locks) {
        locks = new LockTable;
        AddApplicationExitCallback(&DeleteTables, 0);
    }
    return *locks;
}

BadSet& BadPlugins() {
    if (!badPlugins) {
        badPlugins = new BadSet;
        AddApplicationExitCallback(&DeleteTables, 0);
    }
    return *badPlugins;
}

/// A library that is unloaded when it goes, unless it is kept.
class Library {
public:
    explicit Library(CXTString<char16_t> const& path) : handle(platform::LoadLibraryExW(path)) {}
    ~Library() {
        if (handle)
            platform::FreeLibrary(handle);
    }
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;

    bool IsLoaded() const { return handle != nullptr; }
    template <class Function>
    Function Find(char const* name) const {
        return name ? reinterpret_cast<Function>(platform::GetProcAddress(handle, name)) : nullptr;
    }
    HINSTANCE Keep() { return std::exchange(handle, nullptr); }

private:
    HINSTANCE handle;
};

PluginOutcome OutcomeOf(platform::LibraryDefect defect) {
    using enum platform::LibraryDefect;
    switch (defect) {
    case None: return PluginIsLoaded;
    case Missing: return PluginIsMissing;
    case Unreadable: return PluginIsUnreadable;
    case NotALibrary: return PluginIsNoLibrary;
    case CutShort: return PluginIsCutShort;
    case WritableByOthers: return PluginIsWritableByOthers;
    case InWritableDirectory: return PluginFolderIsWritable;
    }
    return PluginIsNoLibrary;
}

PluginOutcome CannotBeLoaded(PluginReport& report) {
    report.details = CXTString<char16_t>(platform::GetModuleErrorText().c_str());
    return PluginCannotBeLoaded;
}

/// Whether the plug-in is of this release and has the entry. The library runs here for the first time and is unloaded
/// again: what it holds is taken only from one that is to stay.
PluginOutcome Probe(PluginReport& report, char const* entryName) {
    PluginOutcome const file = OutcomeOf(platform::CheckLibraryFile(report.path));
    if (file != PluginIsLoaded) {
        return file;
    }
    Library const probe(report.path);
    if (!probe.IsLoaded()) {
        return CannotBeLoaded(report);
    }
    auto const getVersion = probe.Find<unsigned int (*)()>("QuenbyGetPluginVersion");
    if (!getVersion) {
        return PluginHasNoVersion;
    }
    report.release = getVersion();
    if (report.release != PluginRelease) {
        return PluginIsOfOtherRelease;
    }
    return probe.Find<IoPluginCallback>(entryName) ? PluginIsLoaded : PluginHasNoEntry;
}

PluginOutcome Load(PluginReport& report, char const* entryName, PluginInfo& info) {
    Library library(report.path);
    if (!library.IsLoaded()) {
        return CannotBeLoaded(report);
    }
    info.address = library.Find<IoPluginCallback>(entryName);
    if (!info.address) {
        return PluginHasNoEntry;
    }
    ProcNameInfo const key{.handle = library.Keep(), .entryName = report.entryName};
    info.handle = key.handle;
    if (LockPluginInfo* const lock = Locks().Find(key)) {
        ++lock->lockCount;
    } else {
        Locks().Insert(key, {.lockCount = 1, .path = report.path, .address = info.address});
    }
    return PluginIsLoaded;
}

/// Calls `visit(key, lock)` for each lock under an entry name; it may give the lock up.
template <class Visit>
void ForEachLock(char const* entryName, Visit const& visit) {
    if (!locks) {
        return;
    }
    CXTString<char> const name(entryName);
    ProcNameInfo key;
    LockPluginInfo lock;
    for (unsigned int position = locks->GetFirst(); locks->GetNext(position, key, lock);) {
        if (key.entryName == name) {
            visit(key, lock);
        }
    }
}

} // namespace

bool LoadPlugin(CXTString<char16_t> const& path, char const* entryName, PluginInfo& info) {
    info = {};
    BadPluginInfo const key{.path = path, .entryName = entryName};
    if (badPlugins && badPlugins->IsFound(key)) {
        return false;
    }
    PluginReport report;
    report.path = path;
    report.entryName = key.entryName;
    report.outcome = Probe(report, entryName);
    if (report.outcome == PluginIsLoaded) {
        report.outcome = Load(report, entryName, info);
    }
    detail::TellPluginOutcome(report);
    if (report.outcome != PluginIsLoaded) {
        BadPlugins().Insert(key);
    }
    return report.outcome == PluginIsLoaded;
}

void FreePlugin(HINSTANCE handle, char const* entryName, bool markBad) {
    ProcNameInfo const key{.handle = handle, .entryName = entryName};
    LockPluginInfo* const lock = handle && locks ? locks->Find(key) : nullptr;
    if (!lock) {
        return;
    }
    platform::FreeLibrary(handle);
    if (markBad) {
        BadPlugins().Insert({.path = lock->path, .entryName = key.entryName});
    }
    if (--lock->lockCount == 0) {
        locks->Remove(key);
    }
}

void FreePlugins(char const* entryName) {
    ForEachLock(entryName,
                [&](ProcNameInfo const& key, LockPluginInfo const&) { FreePlugin(key.handle, entryName, false); });
}

void detail::ReleasePlugins(char const* entryName) {
    ForEachLock(entryName, [&](ProcNameInfo const& key, LockPluginInfo const& lock) {
        if (lock.lockCount == 1 && lock.address) {
            IoPluginReleaseInfo release{.handle = key.handle};
            lock.address(IoPluginRelease, &release);
        }
        FreePlugin(key.handle, entryName, false);
    });
}
