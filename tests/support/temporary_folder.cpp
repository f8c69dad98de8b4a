// SPDX-License-Identifier: MIT
#include "tests/support/temporary_folder.h"

#include <zeltools/files/paths/native_names.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

TemporaryFolder::TemporaryFolder(std::string const& parent) {
    std::filesystem::path const above =
        parent.empty() ? std::filesystem::temp_directory_path() : std::filesystem::path{parent};
    std::string name = above / "zel-test-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder: " + name);
    }
    native = name + '/';
    path = fileFromNativeName(native.c_str());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored; // a test that took permissions away has failed already
    std::filesystem::remove_all(native, ignored);
}

std::u16string TemporaryFolder::Path(std::string_view nativeName) const {
    return path + static_cast<char16_t const*>(fileFromNativeName(std::string(nativeName).c_str()));
}

void TemporaryFolder::Write(std::string const& nativeName, std::string_view content) const {
    std::filesystem::path const file = native + nativeName;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream{file, std::ios::binary};
    stream << content;
}

std::string TemporaryFolder::Read(std::string const& nativeName) const {
    std::ifstream const stream{native + nativeName, std::ios::binary};
    std::ostringstream content;
    content << stream.rdbuf();
    return stream ? content.str() : "<missing>";
}

bool TemporaryFolder::Exists(std::string const& nativeName) const {
    return std::filesystem::exists(std::filesystem::symlink_status(native + nativeName));
}
