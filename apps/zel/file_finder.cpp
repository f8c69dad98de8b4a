// SPDX-License-Identifier: MIT
#include "file_finder.h"

#include "absolute_name.h"
#include "plugins_setup.h"
#include "terminal.h"
#include "trace.h"
#include <zeltools/files/paths/file_dates.h>
#include <zeltools/files/paths/folder_walk.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_queries.h>
#include <zeltools/files/paths/path_slashes.h>

#include <utility>

namespace zel {

namespace {

/// The native name of an entry, seen from the folder that was asked for.
std::string NativeBelow(CXTString<char16_t> const& folder, int rootLength, CXTString<char16_t> const& name) {
    return static_cast<char const*>(fileGetNativeName(folder.Mid(rootLength, -1) + name));
}

/// A line for each folder that is entered. `traced` is the one before.
void TraceFolder(CXTString<char16_t> const& folder, CXTString<char16_t>& traced) {
    if (IsLogFileEnabled() && !(folder == traced)) {
        traced = folder;
        std::string const native = static_cast<char const*>(fileGetNativeName(folder));
        Trace(TraceFolders, "\t%s\n", ShownName(native, true).c_str());
    }
}

} // namespace

FileFinder::FileFinder(ListOptions const& listOptions, RowQueue& rowQueue, std::function<bool()> mustStopNow)
    : options(listOptions), queue(rowQueue), mustStop(std::move(mustStopNow)) {}

void FileFinder::Find(std::string const& nativePath) {
    Trace(TraceAlways, "zel list: %s\n", ShownName(nativePath, true).c_str());
    CXTString<char16_t> path = fileFromNativeName(AbsoluteName(nativePath).c_str());
    if (fileIsDirectory(path, true, nullptr)) {
        fileSlashTerminate(path);
        FindInFolder(path, nativePath);
    } else {
        FindFile(path, nativePath);
    }
    queue.AddEndOfPath();
}

void FileFinder::FindFile(CXTString<char16_t> const& path, std::string const& nativePath) {
    FileFacts facts;
    unsigned long long const size = fileGetSize(path);
    if (size == ~0ULL || !fileGetLastWriteDate(path, facts.lastWrite)) {
        CXFileException failure;
        CXFileException::ThrowOsError(CXFileException::fileNotFound, path, &failure);
        queue.AddFailure(nativePath, failure.cause, CXTString<char16_t>());
        return;
    }
    facts.name = nativePath;
    facts.sizeBytes = size;
    AddRow(path, false, std::move(facts), nativePath, CXTString<char16_t>());
}

void FileFinder::FindInFolder(CXTString<char16_t> const& folder, std::string const& nativeFolder) {
    CFolderWalk walk(folder, options.recursive ? CFolderWalk::BelowToo : CFolderWalk::ThisFolder);
    CXTString<char16_t> traced;
    for (CFolderWalk::Entry entry; !mustStop() && walk.Next(entry);) {
        TraceFolder(walk.GetFolder(), traced);
        std::string const below = NativeBelow(walk.GetFolder(), folder.GetLength(), entry.name);
        std::string const whole = nativeFolder + (nativeFolder.ends_with('/') || below.empty() ? "" : "/") + below;
        if (entry.error != CXFileException::none) {
            queue.AddFailure(whole, entry.error, walk.GetFolder());
            continue;
        }
        FileFacts facts;
        facts.name = below;
        facts.sizeBytes = entry.sizeBytes;
        facts.lastWrite = entry.lastWrite;
        AddRow(walk.GetFolder() + entry.name + (entry.isDirectory ? u"\\" : u""), entry.isDirectory, std::move(facts),
               whole, walk.GetFolder());
    }
}

void FileFinder::AddRow(CXTString<char16_t> const& path, bool isFolder, FileFacts&& facts,
                        std::string const& nativeName, CXTString<char16_t> const& folder) {
    RegisterPlugins();
    AddTypeFacts(path, isFolder, facts);
    facts.nativePath = nativeName;
    facts.openable = facts.openable && options.open && (!mustOpen || mustOpen(facts));
    queue.AddRow(std::move(facts), path, nativeName, folder);
}

} // namespace zel
