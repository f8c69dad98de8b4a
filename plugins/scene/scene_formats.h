// SPDX-License-Identifier: MIT
// The project's own words for the formats of assimp: what a format is called, the letters of its class, and which of
// assimp's exporters writes it. A format that stands in no row, as one of a newer assimp, gets a name of its own
// making.

#pragma once

#include <span>
#include <string>
#include <string_view>

/// A format that assimp reads.
struct SceneFormat {
    std::string word;         ///< "obj"
    std::string classLetters; ///< "OBJ "
    std::string description;  ///< "Wavefront objects"
    unsigned int rank = 0;    ///< Its place among the formats; the parsers of one extension are tried in this order.
};

/// @param importer    assimp's name of an importer.
/// @param extensions  assimp's list: "3ds prj".
SceneFormat GetSceneFormat(std::string_view importer, std::string_view extensions);

/// An exporter of assimp.
struct SceneExporter {
    std::string_view id;     ///< assimp's.
    std::string_view word;   ///< The format that it writes.
    std::string_view option; ///< The option of the format, as name=value, that asks for it; empty for the usual one.
};

/// Those that are known. One that is not writes a format of its own, whose word is its id.
std::span<SceneExporter const> GetSceneExporters();

/// The format that an exporter writes.
std::string GetExportedFormat(std::string_view exporterId);
