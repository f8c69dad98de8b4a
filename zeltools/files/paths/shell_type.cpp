// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/shell_type.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/platform/shell_type.h"

namespace {

constexpr unsigned int plainFile = 5740;
constexpr unsigned int folder = 5741;

} // namespace

CXTString<char16_t> ShellGetType(CXTString<char16_t> const& path) {
    bool const isDirectory = !path.IsEmpty() && fileIsDirectory(path, true);
    CXTString<char16_t> const name = fileStripPath(path, false);
    std::u16string const description =
        platform::DescribeFileType({name, static_cast<std::size_t>(name.GetLength())}, isDirectory);
    if (!description.empty())
        return {description.c_str(), static_cast<int>(description.size())};
    CXTString<char16_t> extension = isDirectory ? CXTString<char16_t>() : fileGetExtension(path);
    extension.Delete(0); // the dot
    return extension.IsEmpty() ? xLoadString(isDirectory ? folder : plainFile) : extension.MakeUpper();
}
