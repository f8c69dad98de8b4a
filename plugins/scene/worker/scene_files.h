// SPDX-License-Identifier: MIT
// The files that assimp may see while it reads a scene: the scene itself, and companions (.mtl, .bin, skeletons) in its
// folder or below. A scene from elsewhere can name any file of this machine as its companion, so nothing else is
// opened, and nothing is ever written.

#pragma once

#include <zeltools/persistence/xfile.h>

#include <assimp/IOStream.hpp>
#include <assimp/IOSystem.hpp>
#include <string>

/// A file of the toolkit in assimp's eyes.
class SceneFile final : public Assimp::IOStream {
public:
    /// @param flags     XFILE_OPEN. IsOpen tells whether it went well.
    /// @param hasFailed  Set when a write fails, for which assimp does not ask; must outlive the file. Null for one
    /// that
    ///                  is read.
    SceneFile(std::string const& nativeName, unsigned int flags, bool* hasFailed);

    bool IsOpen() const { return isOpen; }

    std::size_t Read(void* buffer, std::size_t size, std::size_t count) override;
    std::size_t Write(void const* buffer, std::size_t size, std::size_t count) override;
    aiReturn Seek(std::size_t offset, aiOrigin origin) override;
    std::size_t Tell() const override;
    std::size_t FileSize() const override;
    void Flush() override;

private:
    CXFile file;
    bool isOpen;
    bool* failed;
};

class SceneFiles final : public Assimp::IOSystem {
public:
    /// @param sceneFile  Native and absolute.
    explicit SceneFiles(std::string const& sceneFile);

    bool Exists(char const* file) const override;
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(char const* file, char const* mode) override;
    void Close(Assimp::IOStream* file) override { delete file; }

private:
    bool MayRead(char const* file) const;

    std::string scene;
    std::string folder; ///< Without links, ending in a slash; empty when it cannot be told.
};
