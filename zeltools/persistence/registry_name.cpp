// SPDX-License-Identifier: MIT
#include "zeltools/persistence/registry_name.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_slashes.h"
#include "zeltools/platform/environment.h"
#include "zeltools/platform/native_path.h"
#include "zeltools/platform/shell_path.h"

#include <string>

namespace {

using WideString = CXTString<char16_t>;

/// The name by which the disk knows a path; the path itself when the disk knows none.
WideString NameOnDisk(WideString const& path) {
    std::string native;
    if (path.IsEmpty() || path.Find(u"\\\\") == 0 || !fileExists(path) ||
        !platform::ToNativePath(path.GetConstBuffer(), native)) {
        return path;
    }
    // A drive's letter stays, since the program was named by it.
    WideString name = path.GetAt(1) == u':' ? path : WideString(platform::FromNativePath(native).c_str());
    if (fileIsDirectory(name, true)) {
        fileSlashTerminate(name);
    }
    return name;
}

} // namespace

int GetNameFromRegistry(CXTString<char16_t> const& value, unsigned int type, CXTString<char16_t>& result) {
    WideString name(value); // `result` may be the same string
    result.Empty();
    if (type == RegExpandString) {
        char16_t expanded[platform::MaxPath] = {};
        if (platform::ExpandEnvironmentStringsW(name.GetConstBuffer(), expanded, platform::MaxPath) >
            platform::MaxPath) {
            return 0;
        }
        name = expanded;
    } else if (type != RegString && type != RegMultiString) {
        return 0;
    }
    name.MakeLower();
    int const end = name.FindEndPos(u".exe");
    if (end < 0) {
        return 0;
    }
    name = name.Left(end);
    int const quote = name.Find(u'"');
    if (quote >= 0) {
        name = name.Mid(quote + 1);
    }
    result = NameOnDisk(name);
    result.MakeLower();
    return result.IsEmpty() ? 0 : 1;
}
