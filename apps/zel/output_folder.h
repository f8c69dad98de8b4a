// SPDX-License-Identifier: MIT
// A folder beside a file that is to be written, in which it is made first: a scene's format may add files of its own,
// whose names the scene then holds, and none of them may be seen half-written.
//
//     OutputFolder folder("/home/ana/b.obj");
//     ... the parser writes folder.Inside(), and b.mtl beside it ...
//     folder.MoveOut(false);        // b.mtl, then b.obj

#pragma once

#include <filesystem>
#include <string>

namespace zel {

class OutputFolder {
public:
    /// @param target  The file; where that is a link, what it leads to is replaced.
    explicit OutputFolder(std::filesystem::path const& target);
    /// Takes the folder away with all that is still in it.
    ~OutputFolder();
    OutputFolder(OutputFolder const&) = delete;
    OutputFolder& operator=(OutputFolder const&) = delete;

    /// What went wrong; empty when nothing did.
    std::string const& Error() const { return error; }

    /// The file inside, under its own name.
    std::filesystem::path Inside() const { return folder / target.filename(); }

    /// Moves everything out, the file itself last.
    /// @param overwrite  Replaces what has one of the names; otherwise that is an error, and nothing is moved.
    bool MoveOut(bool overwrite);

private:
    std::filesystem::path target;
    std::filesystem::path folder; ///< Empty when it could not be made.
    std::string error;
};

} // namespace zel
