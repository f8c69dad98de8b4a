// SPDX-License-Identifier: MIT
#include "plugins/scene/quick/quick_file.h"

#include <zeltools/files/paths/native_names.h>

#include <utility>

QuickFile::QuickFile(std::filesystem::path nativeName, std::function<void()> poll)
    : path(std::move(nativeName)), whileReading(std::move(poll)), file(false) {
    std::error_code missing;
    isOpen = std::filesystem::is_regular_file(path, missing) &&
             file.Open(fileFromNativeName(path.c_str()), XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE, nullptr);
}

std::size_t QuickFile::Read(char* data, std::size_t size) {
    whileReading();
    return file.Read(data, size);
}

QuickSource::Beside QuickFile::OpenBeside(std::string const& name, std::unique_ptr<QuickSource>& opened) {
    std::filesystem::path const other = path.parent_path() / name;
    std::error_code error;
    switch (std::filesystem::symlink_status(other, error).type()) {
    case std::filesystem::file_type::not_found: return Beside::Missing;
    case std::filesystem::file_type::regular: break;
    default: return Beside::Unknown; // a link may lead out of the folder
    }
    auto next = std::make_unique<QuickFile>(other, whileReading);
    if (!next->IsOpen()) {
        return Beside::Unknown;
    }
    opened = std::move(next);
    return Beside::There;
}
