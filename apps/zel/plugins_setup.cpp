// SPDX-License-Identifier: MIT
#include "plugins_setup.h"

#include "media/bitmap_io.h"
#include "media/scene_io.h"
#include <zeltools/files/io_plugins.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_slashes.h>
#include <zeltools/files/plugins_directory.h>
#include <zeltools/foundation/application_path.h>

#include <cstdlib>
#include <filesystem>

namespace zel {

void SetPluginsFolder() {
    namespace fs = std::filesystem;
    fs::path const host = static_cast<char const*>(fileGetNativeName(GetApplicationPath(true)));
    fs::path folder = host / ZEL_PLUGINS_FROM_HOST;
    std::error_code unknown;
    if (char const* const named = std::getenv("ZELTOOLS_PLUGINS"); named && *named) {
        folder = fs::absolute(named, unknown);
    } else if (fs::path const built = host / "../../plugins"; // of the build tree
               !fs::is_directory(folder, unknown) && fs::is_directory(built, unknown)) {
        folder = built;
    }
    CXTString<char16_t> path = fileFromNativeName(folder.lexically_normal().c_str());
    fileSlashTerminate(path);
    SetPluginsDirectory(path, false);
}

void RegisterPlugins() {
    static bool registered = false;
    if (!registered) {
        registered = true;
        CBitmapIo::Register();
        CSceneIo::Register();
        RegisterIOPlugins(FileKindBitmap, u"");
        RegisterIOPlugins(FileKind3D, u"");
    }
}

} // namespace zel
