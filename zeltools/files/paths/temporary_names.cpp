// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/temporary_names.h"

#include "zeltools/files/paths/directories.h"
#include "zeltools/files/paths/file_lock_private.h"
#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_numbering_private.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/application_data.h"
#include "zeltools/platform/known_folders.h"
#include "zeltools/platform/modules.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/process/xsingle_lock.h"

#include <algorithm>

namespace {

// Slash-terminated; the folder exists.
CXTString<char16_t> TemporaryFolder() {
    CXTString<char16_t> folder = detail::Text(platform::GetTempPathW());
    if (static_cast<std::size_t>(folder.GetLength()) < platform::MaxPath && fileDirectoryExists(folder, nullptr)) {
        return folder;
    }
    folder = fileStripName(detail::Text(platform::GetOwnModuleFileNameW()));
    folder += u"tmp\\";
    return fileCreateDirectory(folder, false) ? folder : GetUserApplicationDataPath(false, nullptr);
}

// Keeps ASCII letters and dots, so that any program can be given the name.
void ReduceToPlainLetters(CXTString<char16_t>& name) {
    char16_t* text = name.GetBuffer(0);
    char16_t* const end = std::remove_if(text, text + name.GetLength(), [](char16_t c) {
        return !(c >= u'a' && c <= u'z') && !(c >= u'A' && c <= u'Z') && c != u'.';
    });
    name.GetBufferSetLength(static_cast<int>(end - text));
    if (detail::View(name).starts_with(u'.')) {
        name = u"tmp" + name;
    }
}

} // namespace

CXTString<char16_t> fileCreateTmpName(CXTString<char16_t> const& name, bool keepName,
                                      CXTString<char16_t> const& folder) {
    CXTString<char16_t> component = fileStripPath(name, false);
    if (folder.IsEmpty() && !keepName) {
        ReduceToPlainLetters(component);
    }
    CXTString<char16_t> const path = (folder.IsEmpty() ? TemporaryFolder() : folder) + component;
    return !component.IsEmpty() && fileExists(path, nullptr) ? detail::NumberedName(path, false, 0, true) : path;
}

CXTString<char16_t> fileCreateTmpFolder(CXTString<char16_t> const& name, bool create) {
    CXSingleLock const hold(create ? &detail::FileLock() : nullptr, create);
    CXTString<char16_t> base = TemporaryFolder() + (fileIsPathRelative(name) ? name : fileStripPath(name, false));
    fileRemoveSlashTermination(base);
    CXTString<char16_t> folder = base;
    for (int counter = 1; fileExists(folder, nullptr); ++counter) {
        folder.Format(u"%s%d", static_cast<char16_t const*>(base), counter);
    }
    fileSlashTerminate(folder);
    if (create) {
        fileCreateDirectory(folder, true);
    }
    return folder;
}
