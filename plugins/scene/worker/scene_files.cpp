// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/scene_files.h"

#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/xexception.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace {

/// CXFile moves at most 4 GiB less one byte in one call.
constexpr std::size_t MostAtOnce = 1 << 30;

} // namespace

SceneFile::SceneFile(std::string const& nativeName, unsigned int flags, bool* hasFailed)
    : file(false), isOpen(file.Open(fileFromNativeName(nativeName.c_str()), flags, nullptr)), failed(hasFailed) {}

std::size_t SceneFile::Read(void* buffer, std::size_t size, std::size_t count) {
    if (size == 0 || count > ~std::size_t{0} / size) {
        return 0;
    }
    auto* const bytes = static_cast<char*>(buffer);
    std::size_t done = 0;
    while (done < size * count) {
        std::size_t const got = file.Read(bytes + done, std::min(size * count - done, MostAtOnce));
        if (got == 0) {
            break;
        }
        done += got;
    }
    return done / size;
}

std::size_t SceneFile::Write(void const* buffer, std::size_t size, std::size_t count) {
    std::size_t done = 0;
    while (done < size * count) {
        std::size_t const now = std::min(size * count - done, MostAtOnce);
        unsigned long long const before = file.GetPosition();
        file.Write(static_cast<char const*>(buffer) + done, now);
        if (file.GetPosition() != before + now) {
            if (failed) {
                *failed = true;
            }
            return done / size;
        }
        done += now;
    }
    return count;
}

aiReturn SceneFile::Seek(std::size_t offset, aiOrigin origin) {
    // A place behind the end is one: a package's header is written last. assimp gives a negative offset as a huge one.
    auto const distance = static_cast<long long>(offset);
    CXFile::SeekPosition const from = origin == aiOrigin_SET   ? CXFile::begin
                                      : origin == aiOrigin_CUR ? CXFile::current
                                                               : CXFile::end;
    return file.Seek(distance, from) == CXFile::BadPosition ? aiReturn_FAILURE : aiReturn_SUCCESS;
}

std::size_t SceneFile::Tell() const {
    return file.GetPosition();
}

std::size_t SceneFile::FileSize() const {
    return file.GetLength();
}

void SceneFile::Flush() {
    file.Flush();
}

SceneFiles::SceneFiles(std::string const& sceneFile) : scene(sceneFile) {
    std::error_code missing;
    std::filesystem::path const path =
        std::filesystem::canonical(std::filesystem::path(sceneFile).parent_path(), missing);
    if (!missing) {
        folder = path.native() + (path.native() == "/" ? "" : "/");
    }
}

bool SceneFiles::MayRead(char const* file) const {
    if (scene == file) {
        return true;
    }
    std::error_code missing;
    // With the links followed, so that none leads out of the folder.
    std::filesystem::path const path = std::filesystem::canonical(file, missing);
    // A pipe or a device would never end.
    return !missing && !folder.empty() && path.native().starts_with(folder) &&
           std::filesystem::is_regular_file(path, missing);
}

bool SceneFiles::Exists(char const* file) const {
    return MayRead(file);
}

Assimp::IOStream* SceneFiles::Open(char const* file, char const* mode) {
    if (std::strpbrk(mode, "wa+") || !MayRead(file)) {
        return nullptr;
    }
    auto opened = std::make_unique<SceneFile>(file, XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE, nullptr);
    return opened->IsOpen() ? opened.release() : nullptr;
}
