// SPDX-License-Identifier: MIT
// What a list tells of an image's or a scene's content: what its header says.

#pragma once

#include "media/media_limits.h"
#include "media/metadata.h"
#include "media/scene_document.h"
#include "worker_pool.h"
#include <zeltools/foundation/xstring.h>

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

class CImageDocument;
class CMediaIo;

namespace zel {

/// Why a parser could not read a file.
struct ParserFailure {
    std::string parser; ///< Its class.
    std::string reason;
};

/// How an operation on a file ended.
struct MediaAnswer {
    bool answered = false;
    bool cancelled = false;              ///< Neither answered nor failed: the user wanted to stop.
    std::string parser;                  ///< The class of who answered.
    std::vector<ParserFailure> failures; ///< Of the parsers that were tried before, or of all.

    /// All failures, each with its parser.
    std::string Reasons() const;
    /// Who answered, and what the others said, as members of a JSON object.
    void AddTo(nlohmann::ordered_json& object) const;
};

/// Takes the answer out of a manager after its operation.
/// @param limits  Where the file took too long, the reason tells how long it might have taken.
MediaAnswer TakeAnswer(CMediaIo const& io, bool success, MediaLimits const& limits);

struct MediaFacts {
    MediaAnswer answer;
    bool isScene = false;

    // An image's first picture.
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 1;
    std::vector<std::string> channels;
    char const* pixelType = "";
    std::string colorSpace;
    std::size_t subImages = 0;

    SceneCounts counts;
    SceneBox box;
    std::vector<std::string> missingTextures; ///< Native names, as the scene has them.

    /// Of the first picture or of the scene; empty where OpenWork was not told to keep it.
    CMetadata metadata;

    void TakeImage(CImageDocument const& image);
    /// @param path  The scene's own, where its textures are looked for.
    void TakeScene(CSceneDocument const& scene, CXTString<char16_t> const& path);

    /// The facts in a few words for a person.
    std::string Text() const;
    /// The facts as members of a JSON object.
    void AddTo(nlohmann::ordered_json& object) const;
};

/// A box's size along the axes: "1.2 x 1.77 x 1.2".
std::string BoxText(SceneBox const& box);

/// Reads a file's header.
class OpenWork : public Work {
public:
    /// @param keep  Whether the facts keep the metadata, of which a file may have much.
    OpenWork(CXTString<char16_t> filePath, MediaLimits const& mediaLimits, bool keep)
        : path(std::move(filePath)), limits(mediaLimits), keepMetadata(keep) {}

    bool RunsAlone() override;
    void Do() override;

    MediaFacts facts; ///< To be looked at when the work is done.

private:
    CXTString<char16_t> path;
    MediaLimits limits;
    bool keepMetadata;
};

/// The texture files of a scene that are not there, as the scene names them. Relative ones start from the scene's
/// folder.
std::vector<std::string> FindMissingTextures(CSceneDocument const& scene, CXTString<char16_t> const& scenePath);

/// Whether any parser of a name's extension must run alone.
bool MustRunAlone(CXTString<char16_t> const& path);

} // namespace zel
