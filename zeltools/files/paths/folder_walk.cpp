// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/folder_walk.h"

#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/find_files.h"

namespace {

/// The stamp counts from 1601, in steps of 100 ns; a calendar time from 1970. No local time stands in between, so the
/// hour that a change of daylight saving repeats keeps its two meanings.
CXTime TimeOf(FILETIME const& stamp) {
    long long const ticks = static_cast<long long>(stamp.dwHighDateTime) << 32 | stamp.dwLowDateTime;
    return CXTime(ticks / 10'000'000 - 11'644'473'600);
}

/// A search gives a link that leads nowhere as an entry with the link's own facts; for a walk it is unreadable.
unsigned int ErrorOfTarget(CXTString<char16_t> const& folder, platform::FindData const& link) {
    if (link.error || link.attributes & platform::FileAttributeDirectory) {
        return link.error;
    }
    platform::FileAttributeData target;
    return platform::GetFileAttributesExW(folder + link.name.c_str(), target) ? 0 : platform::GetLastError();
}

bool IsDots(std::u16string const& name) {
    return name == u"." || name == u"..";
}

} // namespace

CFolderWalk::CFolderWalk(CXTString<char16_t> const& start, Depth howDeep)
    : toEnter(false), found(false), depth(howDeep) {
    CXTString<char16_t> terminated = start;
    fileSlashTerminate(terminated);
    toEnter.Add(terminated);
}

CFolderWalk::~CFolderWalk() {
    if (search) {
        platform::FindClose(search);
    }
}

bool CFolderWalk::Next(Entry& entry) {
    for (;;) {
        bool isNew = false;
        if (!search) {
            // A folder's own folders are entered next, in their order, before the ones that its parents still have.
            for (int i = found.GetSize() - 1; i >= 0; --i) {
                toEnter.Add(found[i]);
            }
            found.RemoveAll(false);
            int const last = toEnter.GetSize() - 1;
            if (last < 0) {
                return false;
            }
            folder = toEnter[last];
            toEnter.SetSize(last);
            isNew = true;
        }

        platform::FindData data;
        bool more = true;
        if (isNew) {
            search = platform::FindFirstFileW(folder + u"*", data);
            more = search != platform::InvalidHandle;
            if (!more) {
                search = nullptr;
            }
        } else {
            more = platform::FindNextFileW(search, data);
        }
        if (!more) {
            unsigned int const error = platform::GetLastError();
            if (search) {
                platform::FindClose(search);
                search = nullptr;
            }
            // An empty root has no entry at all, not even the two dots.
            if (error == platform::ErrorNoMoreFiles || (isNew && error == platform::ErrorFileNotFound)) {
                continue;
            }
            entry = Entry();
            entry.error = CXFileException::OsErrorToException(error);
            return true;
        }
        if (IsDots(data.name)) {
            continue;
        }

        entry.name = CXTString<char16_t>(data.name.c_str(), static_cast<int>(data.name.size()));
        entry.isLink = data.attributes & platform::FileAttributeReparsePoint;
        entry.isDirectory = data.attributes & platform::FileAttributeDirectory;
        entry.sizeBytes = data.sizeBytes;
        entry.error = CXFileException::OsErrorToException(entry.isLink ? ErrorOfTarget(folder, data) : data.error);
        entry.lastWrite = CXTime();
        if (!data.error) {
            entry.lastWrite = TimeOf(data.lastWrite);
        }
        if (entry.isDirectory && !entry.isLink && depth == BelowToo) {
            found.Add(folder + entry.name + u"\\");
        }
        return true;
    }
}
