// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/shell_type.h"

#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/platform/shell_type.h"

namespace {

constexpr unsigned int plainFile = 5740;
constexpr unsigned int folder = 5741;

} // namespace

CXTString<char16_t> ShellGetType(CXTString<char16_t> const& path) {
    bool const isDirectory = fileIsDirectory(path, false) || fileIsDirectory(path, true);
    std::u16string_view address = detail::View(path);
    if (platform::PathIsURLW(address))
        address = address.substr(0, address.find(u'?'));
    CXTString<char16_t> const name = fileStripPath(detail::Text(address), false);
    std::u16string const description = platform::DescribeFileType(detail::View(name), isDirectory);
    if (!description.empty())
        return {description.c_str(), static_cast<int>(description.size())};
    CXTString<char16_t> extension = isDirectory ? CXTString<char16_t>() : fileGetExtension(path);
    extension.Delete(0); // the dot
    return extension.IsEmpty() ? xLoadString(isDirectory ? folder : plainFile) : extension.MakeUpper();
}
