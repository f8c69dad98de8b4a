// SPDX-License-Identifier: MIT
// What one row of a list tells of a file.

#pragma once

#include <zeltools/files/paths/folder_walk.h>
#include <zeltools/foundation/xstring.h>
#include <zeltools/foundation/xtime.h>

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace zel {

struct MediaFacts;

struct FileFacts {
    std::string name;         ///< Native name, below the folder that was asked for.
    std::string nativePath;   ///< What a person calls it: as it was asked for, with what is below.
    CXTString<char16_t> path; ///< The whole one, from the root on.
    std::string classCode;    ///< Four characters; empty when no type claims the extension.
    char const* kind = "";    ///< One of KindName's words.
    std::string description;  ///< The type's description; empty when there is none.
    unsigned int parsers = 0;
    bool loadable = false;
    bool savable = false;
    bool isFolder = false;
    bool openable = false; ///< An image or a scene with a parser that can be asked for its content.
    unsigned long long sizeBytes = 0;
    CXTime lastWrite;
    std::shared_ptr<MediaFacts const> media; ///< The content; null where the file was not opened.

    /// The name and what is known by it, as members of a JSON object.
    void AddTypeTo(nlohmann::ordered_json& object) const;
};

/// The word for a kind of data: "bitmap", "3d", "audio", ..., "other" for none of them.
char const* KindName(unsigned int properties);

/// Adds the path and what the file type registry knows by it; size and date are left alone.
void AddTypeFacts(CXTString<char16_t> const& path, bool isFolder, FileFacts& facts);

} // namespace zel
