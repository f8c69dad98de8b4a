// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/current_directory.h"

#include "zeltools/files/paths/file_lock_private.h"
#include "zeltools/files/paths/guarded_call_private.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/platform/current_directory.h"
#include "zeltools/platform/modules.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/process/xsingle_lock.h"

#include <memory>

CCurrentDir gCurrentDir;

namespace {

/// Made by the first push and gone with the process; guarded by the file lock. It is no matter of the exit callbacks:
/// they run under the application lock, inside which the file lock must not be taken.
std::unique_ptr<CXArray<CXTString<char16_t>>> directoryStack;

} // namespace

CXTString<char16_t> fileGetCurrentDirectory() {
    std::u16string directory;
    if (!platform::GetCurrentDirectoryW(directory) || directory.size() >= platform::MaxPath) {
        return fileStripName(detail::Text(platform::GetOwnModuleFileNameW()));
    }
    if (directory.back() != u'\\') { // the root is one already
        directory += u'\\';
    }
    return detail::Text(directory);
}

bool filePushCurrentDirectory(CXTString<char16_t> const& directory, unsigned int* timeOut) {
    CXSingleLock const hold(&detail::FileLock(), true);
    if (directoryStack == nullptr) {
        directoryStack = std::make_unique<CXArray<CXTString<char16_t>>>();
    }
    directoryStack->Add(fileGetCurrentDirectory());
    detail::GuardedCall guard(directory, timeOut);
    return guard.Run([&] { return platform::SetCurrentDirectoryW(directory); });
}

bool filePopCurrentDirectory() {
    CXSingleLock const hold(&detail::FileLock(), true);
    if (directoryStack == nullptr || directoryStack->IsEmpty()) {
        return false;
    }
    int const top = directoryStack->GetSize() - 1;
    bool const isSet = platform::SetCurrentDirectoryW((*directoryStack)[top]);
    directoryStack->RemoveAt(top);
    return isSet;
}

CCurrentDir::~CCurrentDir() = default;

CXTString<char16_t> CCurrentDir::SetDirectory(CXTString<char16_t> const& directory, DirectoryType type) {
    CXTString<char16_t> before = GetDirectory(directory, type);
    directories.Insert(type, directory);
    return before;
}

CXTString<char16_t> CCurrentDir::GetDirectory(CXTString<char16_t> const& /*ignored*/, DirectoryType type) const {
    CXTString<char16_t> const* const found = directories.Find(type);
    return found == nullptr ? CXTString<char16_t>() : *found;
}
