// SPDX-License-Identifier: MIT
#include "media_facts.h"

#include "json_text.h"
#include "media/bitmap_io.h"
#include "media/scene_io.h"
#include "utf8_text.h"
#include <zeltools/files/file_info.h>
#include <zeltools/files/paths/absolute_paths.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_queries.h>
#include <zeltools/files/paths/path_split.h>
#include <zeltools/foundation/thread_exceptions.h>
#include <zeltools/foundation/xexception.h>

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <mutex>
#include <nlohmann/json.hpp>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned int ListFlags = IoFlagLoading | IoFlagSilent | IoFlagNoParameters;

/// A parser is asked once in a process: asking makes one, which can be dear.
bool ClassRunsAlone(CXTString<char16_t> const& path, unsigned int classId) {
    static std::mutex lock;
    static std::map<unsigned int, bool> known; // guarded by lock
    {
        std::lock_guard const hold(lock);
        if (auto const found = known.find(classId); found != known.end()) {
            return found->second;
        }
    }
    bool const alone = fileClassIsSingleThreaded(CFileNameSpec(path, classId), ListFlags);
    std::lock_guard const hold(lock);
    return known.emplace(classId, alone).first->second;
}

std::string Count(std::optional<unsigned long long> const& count, char const* one, char const* many) {
    return count ? fmt::format("{} {}", *count, *count == 1 ? one : many) : std::string();
}

std::string Channels(std::vector<std::string> const& names) {
    bool const areShort = std::all_of(names.begin(), names.end(), [](std::string const& n) { return n.size() == 1; });
    if (!names.empty() && names.size() <= 5 && areShort) {
        return fmt::format("{}", fmt::join(names, ""));
    }
    return fmt::format("{} channel{}", names.size(), names.size() == 1 ? "" : "s");
}

void AddCount(Json& object, char const* key, std::optional<unsigned long long> const& count) {
    object[key] = count ? Json(*count) : Json(nullptr);
}

} // namespace

std::string BoxText(SceneBox const& box) {
    return fmt::format("{:.6g} x {:.6g} x {:.6g}", box.highest.x - box.lowest.x, box.highest.y - box.lowest.y,
                       box.highest.z - box.lowest.z);
}

std::string MediaAnswer::Reasons() const {
    std::string text;
    for (ParserFailure const& failure : failures) {
        text += text.empty() ? "" : "; ";
        if (!failure.parser.empty()) {
            text += failure.parser.substr(0, failure.parser.find_last_not_of(' ') + 1) + ": ";
        }
        text += failure.reason;
    }
    return text;
}

void MediaAnswer::AddTo(Json& object) const {
    if (answered) {
        object["parser"] = parser;
        object["firstChoice"] = failures.empty();
    } else {
        object["error"] = ShownUtf8(Reasons());
    }
    if (!failures.empty()) {
        Json errors = Json::array();
        for (ParserFailure const& failure : failures) {
            errors.push_back({{"parser", failure.parser}, {"reason", ShownUtf8(failure.reason)}});
        }
        object["parserErrors"] = errors;
    }
}

MediaAnswer TakeAnswer(CMediaIo const& io, bool success, MediaLimits const& limits) {
    MediaAnswer answer;
    answer.answered = success;
    answer.parser = success ? ClassText(io.GetAnsweringClass()) : std::string();
    for (ParserError const& error : io.GetParserErrors()) {
        std::string reason = Utf8(error.text);
        if (error.code == IoCanceled) {
            answer.cancelled = !io.IsOutOfTime();
            if (io.IsOutOfTime()) {
                reason = fmt::format("it takes longer than the {} seconds that are allowed", limits.timeMs / 1000.0);
            }
        }
        std::replace(reason.begin(), reason.end(), '\n', ' '); // one line a file
        answer.failures.push_back({ClassText(error.classId), reason});
    }
    if (!success && answer.failures.empty()) {
        answer.failures.push_back({"", Utf8(io.GetIoErrorTxt())});
    }
    return answer;
}

void MediaFacts::TakeImage(CImageDocument const& image) {
    subImages = image.GetSubImageCount();
    if (subImages != 0) {
        CSubImage const& first = image.GetSubImage(0);
        width = first.width;
        height = first.height;
        depth = first.depth;
        pixelType = GetPixelTypeName(first.pixelType);
        colorSpace = Utf8(first.colorSpace);
        for (CXTString<char16_t> const& channel : first.channels) {
            channels.push_back(Utf8(channel));
        }
    }
}

void MediaFacts::TakeScene(CSceneDocument const& scene, CXTString<char16_t> const& path) {
    isScene = true;
    counts = scene.counts;
    box = scene.boundingBox;
    missingTextures = FindMissingTextures(scene, path);
}

std::string MediaFacts::Text() const {
    if (!answer.answered) {
        return "cannot be read";
    }
    std::vector<std::string> words;
    if (isScene) {
        words = {Count(counts.vertices, "vertex", "vertices"), Count(counts.faces, "face", "faces"),
                 Count(counts.materials, "material", "materials"), box.IsEmpty() ? std::string() : BoxText(box),
                 Count(counts.animations, "animation", "animations")};
        if (counts.animations == 0ULL) {
            words.back().clear();
        }
        if (!missingTextures.empty()) {
            words.push_back(fmt::format("missing: {}", fmt::join(missingTextures, " ")));
        }
    } else if (subImages != 0) {
        words = {fmt::format("{} x {}{}", width, height, depth > 1 ? fmt::format(" x {}", depth) : std::string()),
                 Channels(channels), pixelType, colorSpace};
        if (subImages > 1) {
            words.push_back(fmt::format("{} subimages", subImages));
        }
    }
    if (!answer.failures.empty()) {
        words.push_back(fmt::format("read by {}, not the first choice", answer.parser));
    }
    std::erase(words, std::string());
    return fmt::format("{}", fmt::join(words, ", "));
}

void MediaFacts::AddTo(Json& object) const {
    if (answer.answered && isScene) {
        AddCount(object, "vertices", counts.vertices);
        AddCount(object, "faces", counts.faces);
        AddCount(object, "materials", counts.materials);
        object["boundingBox"] = box.IsEmpty() ? Json(nullptr)
                                              : Json{{"min", {box.lowest.x, box.lowest.y, box.lowest.z}},
                                                     {"max", {box.highest.x, box.highest.y, box.highest.z}}};
        AddCount(object, "animations", counts.animations);
        Json missing = Json::array();
        for (std::string const& name : missingTextures) {
            missing.push_back(ShownUtf8(name));
        }
        object["missingTextures"] = missing;
    } else if (answer.answered) {
        object["width"] = width;
        object["height"] = height;
        if (depth > 1) {
            object["depth"] = depth;
        }
        object["channels"] = channels.size();
        object["channelNames"] = channels;
        object["pixelType"] = pixelType;
        object["colorSpace"] = colorSpace.empty() ? Json(nullptr) : Json(colorSpace);
        object["subimages"] = subImages;
    }
    answer.AddTo(object);
}

std::vector<std::string> FindMissingTextures(CSceneDocument const& scene, CXTString<char16_t> const& scenePath) {
    std::vector<std::string> missing;
    CXTString<char16_t> const folder = fileStripName(scenePath);
    for (CXTString<char16_t> const& texture : scene.GetTexturePaths()) {
        if (!fileExists(fileMakeAbsolutePath(folder, texture, false))) {
            missing.emplace_back(static_cast<char const*>(fileGetNativeName(texture)));
        }
    }
    return missing;
}

bool MustRunAlone(CXTString<char16_t> const& path) {
    CFileInfo const info{CFileNameSpec(path)};
    CHashTable<unsigned int> classes;
    info.GetClass(classes);
    unsigned int classId = 0;
    for (unsigned int position = classes.GetFirst(); classes.GetNext(position, classId);) {
        if (ClassRunsAlone(path, classId)) {
            return true;
        }
    }
    return false;
}

bool OpenWork::RunsAlone() {
    return MustRunAlone(path);
}

void OpenWork::Do() {
    std::unique_ptr<CFileIo> const io(CFileIo::CreateFileIoFromPath(CFileNameSpec(path), ListFlags));
    if (auto* const bitmap = dynamic_cast<CBitmapIo*>(io.get())) {
        bitmap->limits = limits;
        CImageDocument image;
        facts.answer = TakeAnswer(*bitmap, bitmap->ReadHeader(image), limits);
        facts.TakeImage(image);
        if (keepMetadata && image.GetSubImageCount() != 0) {
            facts.metadata = image.GetSubImage(0).metadata;
        }
    } else if (auto* const sceneIo = dynamic_cast<CSceneIo*>(io.get())) {
        sceneIo->limits = limits;
        CSceneDocument scene;
        facts.answer = TakeAnswer(*sceneIo, sceneIo->ReadHeader(scene), limits);
        facts.TakeScene(scene, path);
        if (keepMetadata) {
            facts.metadata = scene.metadata;
        }
    }
}

} // namespace zel
