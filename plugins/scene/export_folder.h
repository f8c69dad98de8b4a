// SPDX-License-Identifier: MIT
// A folder beside a file that is to be written: a format's exporter writes the file and its companions (.mtl, .bin)
// there, and then each is renamed into place, so that a reader, a crash or a full disk meets whole files only. The
// file itself comes last: the old one never refers to companions that are not there yet.
//
//     ExportFolder folder("/home/ana/vase.obj");
//     if (folder.Create() && Export(folder.GetMainFile()) && folder.Commit())
//         ...      // vase.obj and vase.mtl are in place
//
// Companions that stand there already are replaced. Without Commit, the folder goes with what is in it. Threads: one at
// a time.

#pragma once

#include <zeltools/files/io_result.h>

#include <string>

class ExportFolder {
public:
    /// @param nativeName  Absolute. A symbolic link stays, and what it leads to is replaced.
    explicit ExportFolder(std::string const& nativeName);
    ~ExportFolder();
    ExportFolder(ExportFolder const&) = delete;
    ExportFolder& operator=(ExportFolder const&) = delete;

    [[nodiscard]] bool Create();
    /// Where the file is to be written, under its own name.
    std::string GetMainFile() const { return folder + '/' + name; }
    /// Flushes all files to the disk and puts them in place.
    [[nodiscard]] bool Commit();
    /// Why the last call failed.
    IO_FILE_RESULT GetError() const { return error; }

private:
    bool FailBySystem(int number);
    bool Place(std::string const& file);

    std::string target; ///< The folder of the file, ending in a slash.
    std::string name;
    std::string folder; ///< Empty before Create.
    IO_FILE_RESULT error = IoSuccess;
};
