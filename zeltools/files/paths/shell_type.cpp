// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/shell_type.h"

#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/xload_string.h"

CXTString<char16_t> ShellGetType(CXTString<char16_t> const& path) {
    constexpr unsigned int plainFile = 5740;
    CXTString<char16_t> extension = fileGetExtension(path);
    extension.Delete(0);
    return extension.IsEmpty() ? xLoadString(plainFile) : extension.MakeUpper();
}
