// SPDX-License-Identifier: MIT
#include "zeltools/files/plugins_directory.h"

#include "zeltools/files/paths/absolute_paths.h"
#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/exit_callbacks.h"

namespace {

constexpr char16_t PluginsFolder[] = u"Plugins\\";

/// Null until a directory is set; deleted at the close.
CXTString<char16_t>* pluginsDirectory;

void ForgetPluginsDirectory() {
    delete pluginsDirectory;
    pluginsDirectory = nullptr;
}

CXTString<char16_t> WithPluginsFolder(CXTString<char16_t> directory) {
    if (directory.Find(PluginsFolder) < 0) {
        directory += PluginsFolder;
    }
    return directory;
}

} // namespace

void SetPluginsDirectory(CXTString<char16_t> const& directory, bool addPluginsFolder) {
    if (directory.IsEmpty()) {
        return;
    }
    CXTString<char16_t> const absolute =
        fileIsPathRelative(directory) ? fileMakeAbsolutePath(GetApplicationPath(true), directory, false) : directory;
    CXTString<char16_t> const stripped = fileStripName(absolute);
    if (!pluginsDirectory) {
        pluginsDirectory = new CXTString<char16_t>;
        AddApplicationExitCallback(&ForgetPluginsDirectory, 0);
    }
    *pluginsDirectory = addPluginsFolder ? WithPluginsFolder(stripped) : stripped;
}

CXTString<char16_t> GetPluginsDirectory() {
    return pluginsDirectory ? *pluginsDirectory : WithPluginsFolder(GetApplicationPath(true));
}
