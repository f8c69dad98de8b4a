// SPDX-License-Identifier: MIT
// Stores as the records of a preferences file.
//
// A save writes the whole file anew beside the old one and then puts it in its place, so that a crash, a full disk or a
// refused rename leaves the old file or the new one. docs/formats/prefs.md has the bytes.

#include "zeltools/files/io_file.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/log_file_private.h"
#include "zeltools/foundation/xfile_exception.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/platform/file_names.h"

#include <new>

namespace {

using WideString = CXTString<char16_t>;

/// Settings are a few kilobytes, so both files live in memory: one read, one write. Every failure throws.
constexpr unsigned int PreferencesFileFlags = IoFileSilent | IoFileThrow | IoFileMemory;

struct RecordKeys {
    unsigned int first = 0;
    unsigned int second = 0;

    bool operator==(RecordKeys const&) const = default;
};

CXArchive& operator>>(CXArchive& archive, RecordKeys& keys) {
    return archive >> keys.first >> keys.second;
}

void Log(char16_t const* format, WideString const& path) {
    detail::TraceToLog(format, static_cast<char16_t const*>(path));
}

/// Does some work on a preferences file; false when it failed.
template <class Work>
bool Succeeds(Work work) {
    try {
        return work();
    } catch (CXException* exception) {
        exception->Delete();
    } catch (std::bad_alloc const&) {
    }
    return false;
}

/// Calls `take` with the keys of each record and the archive that stands in front of its store, until it answers false.
template <class Take>
void ForEachRecord(IoFile& file, Take take) {
    CXArchive archive(file.GetCFile(), CXArchive::Loading | CXArchive::NoFlushOnDelete);
    unsigned int count = 0;
    archive >> count;
    for (unsigned int i = 0; i < count; ++i) { // a count beyond the file ends in the archive's exception
        RecordKeys keys;
        archive >> keys;
        CCustomData store;
        store.Serialize(archive);
        if (!take(keys, store)) {
            return;
        }
    }
}

/// Writes a file with the records of an old one, save those of one pair of keys, and a record of that pair at the end.
class PreferencesWriter {
public:
    explicit PreferencesWriter(IoFile& newFile)
        : file(newFile), archive(newFile.GetCFile(), CXArchive::Storing | CXArchive::NoFlushOnDelete) {
        archive << count; // the place for it
    }

    void Add(RecordKeys keys, CCustomData& store) {
        archive << keys.first << keys.second;
        store.Serialize(archive);
        ++count;
    }

    void Finish() {
        archive.Flush(true);
        file.Flush();
        file.FileSeek(0, CXFile::begin);
        file.WriteUInt(count);
        file.CloseFile(false); // where a full disk shows
    }

private:
    IoFile& file;
    CXArchive archive;
    unsigned int count = 0;
};

/// Gets a file that a failed save takes away out of the way, so that a person can get its records back. It is renamed
/// and not copied: a full disk has no room for a copy.
void SetAside(WideString const& path) {
    WideString const lost = path + u".lost";
    if (platform::MoveFileExW(path, lost, platform::MoveReplaceExisting)) {
        Log(u"Preferences: a save failed, and the file was kept as %s\n", lost);
    } else if (platform::GetFileAttributesW(path) != platform::InvalidFileAttributes) {
        Log(u"Preferences: a save failed, and %s stays, since it could not be kept under another name\n", path);
    }
}

} // namespace

bool CCustomData::SaveToPrefs(CXTString<char16_t> const& path, unsigned int key1, unsigned int key2) const {
    if (fileStripName(path).IsEmpty()) {
        return false;
    }
    WideString const temporary = path + u".tmp";
    platform::DeleteFileW(temporary);
    IoFile newFile(PreferencesFileFlags);
    if (!Succeeds([&] { return newFile.OpenFile(temporary, false, nullptr); })) {
        return false;
    }
    IoFile oldFile(PreferencesFileFlags);
    CXFileException openError;
    bool const hasOldFile = Succeeds([&] { return oldFile.OpenFile(path, true, &openError); });
    if (!hasOldFile && openError.cause != CXFileException::fileNotFound) {
        // The other records are there and cannot be had now (no right, in use, no descriptor left): to go on would
        // lose them.
        Log(u"Preferences: %s cannot be opened, and nothing was saved\n", path);
        newFile.CloseAndDeleteFile(true);
        return false;
    }
    if (hasOldFile) {
        platform::CopyPermissions(path, temporary); // before there is anything to read; some disks know of none
    }
    bool const isWritten = Succeeds([&] {
        RecordKeys const own{key1, key2};
        PreferencesWriter writer(newFile);
        if (hasOldFile) {
            ForEachRecord(oldFile, [&](RecordKeys keys, CCustomData& store) {
                if (keys != own) {
                    writer.Add(keys, store);
                }
                return true;
            });
        }
        writer.Add(own, const_cast<CCustomData&>(*this)); // storing changes no value
        writer.Finish();
        return true;
    });
    newFile.DeleteFiles();
    oldFile.DeleteFiles();
    if (!isWritten) {
        SetAside(path);
    }
    bool const isSaved = isWritten && platform::CopyFileW(temporary, path, false);
    platform::DeleteFileW(temporary);
    return isSaved;
}

bool CCustomData::LoadFromPrefs(CXTString<char16_t> path, unsigned int key1, unsigned int key2,
                                bool tryPreviousVersion) {
    RemoveAll();
    if (fileStripName(path).IsEmpty()) {
        return false;
    }
    IoFile file(PreferencesFileFlags);
    CXFileException openError;
    auto const open = [&] { return file.OpenFile(path, true, &openError); };
    auto const bringOver = [&] { return CopyFileFromPreviousVersionIfMissing(path); };
    if (!Succeeds(open) && !(tryPreviousVersion && Succeeds(bringOver) && Succeeds(open))) {
        if (openError.cause != CXFileException::fileNotFound && openError.cause != CXFileException::badPath) {
            Log(u"Preferences: %s cannot be opened\n", path);
        }
        return false;
    }
    bool isFound = false;
    bool const isRead = Succeeds([&] {
        RecordKeys const wanted{key1, key2};
        ForEachRecord(file, [&](RecordKeys keys, CCustomData& store) {
            isFound = keys == wanted;
            if (isFound) {
                *this = store;
            }
            return !isFound;
        });
        return true;
    });
    if (!isRead) {
        RemoveAll();
        Log(u"Preferences: %s cannot be read, and stays as it is\n", path);
    }
    return isRead && isFound;
}
