// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/scene_writer.h"

#include "plugins/scene/scene_formats.h"
#include "plugins/scene/worker/scene_conversion.h"
#include "plugins/scene/worker/scene_files.h"
#include "plugins/scene/worker/texture_path.h"

#include <algorithm>
#include <assimp/Exporter.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <string_view>

namespace {

/// The folder that the scene and its companions are written to. It remembers a failure: assimp's exporters do not ask.
class ExportFiles final : public Assimp::IOSystem {
public:
    bool HasFailed() const { return failed; }

    bool Exists(char const* file) const override { return std::filesystem::exists(file); }
    char getOsSeparator() const override { return '/'; }
    Assimp::IOStream* Open(char const* file, char const* mode) override {
        bool const writes = std::string_view(mode).starts_with('w');
        auto opened =
            std::make_unique<SceneFile>(file,
                                        writes ? XFILE_OPEN_READWRITE | XFILE_SHARE_EXCLUSIVE | XFILE_OPEN_CREATE
                                               : XFILE_OPEN_READ | XFILE_SHARE_DENY_NONE,
                                        &failed);
        failed = failed || (writes && !opened->IsOpen());
        return opened->IsOpen() ? opened.release() : nullptr;
    }
    void Close(Assimp::IOStream* file) override { delete file; }

private:
    bool failed = false;
};

bool HasLine(std::string const& lines, std::string_view line) {
    return ("\n" + lines).find("\n" + std::string(line) + "\n") != std::string::npos;
}

/// The exporter of a format for a file's extension, with regard to the options. Null when there is none.
aiExportFormatDesc const* FindExporter(Assimp::Exporter const& exporter, SceneRequest const& request) {
    std::string extension = std::filesystem::path(request.file).extension().native();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    aiExportFormatDesc const* usual = nullptr;
    for (std::size_t i = 0; i < exporter.GetExportFormatCount(); ++i) {
        aiExportFormatDesc const& description = *exporter.GetExportFormatDescription(i);
        if (GetExportedFormat(description.id) != request.format ||
            extension != '.' + std::string(description.fileExtension)) {
            continue;
        }
        auto const known = GetSceneExporters();
        auto const row = std::find_if(known.begin(), known.end(),
                                      [&](SceneExporter const& other) { return other.id == description.id; });
        std::string_view const option = row == known.end() ? std::string_view() : row->option;
        if (option.empty()) {
            usual = &description;
        } else if (HasLine(request.options, option)) {
            return &description;
        }
    }
    return usual;
}

/// Whether a file that an exporter wrote past the streams above is whole: the directory of a package stands at its end.
bool IsWholePackage(std::string const& file) {
    constexpr std::streamoff endRecord = 22;
    char mark[4]{};
    std::ifstream package(file, std::ios::binary);
    package.seekg(-endRecord, std::ios::end);
    package.read(mark, sizeof mark);
    return package && std::string_view(mark, sizeof mark) == "PK\5\6";
}

SceneReply Export(SceneRequest const& request, CSceneDocument const& scene) {
    Assimp::Exporter exporter;
    aiExportFormatDesc const* const description = FindExporter(exporter, request);
    if (!description) {
        return {IoCannotSaveSo, SceneFault::None, 0, {}};
    }
    auto* const files = new ExportFiles;
    exporter.SetIOHandler(files); // which owns it
    // Of any other scene, assimp would leave out of a .3mf what does not stand right below the root, and of a polygon
    // what comes after the third corner.
    bool const isFlat = request.format == "3mf";
    std::unique_ptr<aiScene> const made =
        MakeAssimpScene(isFlat ? FlattenScene(scene) : scene, HasAddresses(request.format));
    aiReturn const result =
        exporter.Export(made.get(), description->id, request.file, isFlat ? aiProcess_Triangulate : 0U);
    if (files->HasFailed() || (request.format == "3mf" && !IsWholePackage(request.file))) {
        return {IoDiskFull, SceneFault::None, 0, {}};
    }
    if (result != aiReturn_SUCCESS) {
        return result == aiReturn_OUTOFMEMORY ? SceneReply{IoNoMemory, SceneFault::None, 0, {}}
                                              : SceneReply::InWords(exporter.GetErrorString(), IoCannotSaveSo);
    }
    return {};
}

} // namespace

SceneReply WriteScene(SceneRequest const& request, CSceneDocument const& scene) {
    try {
        return Export(request, scene);
    } catch (std::bad_alloc const&) {
        return {IoNoMemory, SceneFault::None, 0, {}};
    } catch (std::exception const& exception) {
        return SceneReply::InWords(exception.what(), IoCannotSaveSo);
    } catch (...) {
        return {IoCannotSaveSo, SceneFault::None, 0, {}};
    }
}
