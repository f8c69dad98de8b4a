// SPDX-License-Identifier: MIT
#include "plugins/scene/worker/scene_reader.h"

#include "plugins/scene/scene_formats.h"
#include "plugins/scene/worker/scene_conversion.h"
#include "plugins/scene/worker/scene_files.h"
#include <zeltools/files/paths/native_names.h>

#include <algorithm>
#include <assimp/BaseImporter.h>
#include <assimp/Importer.hpp>
#include <assimp/importerdesc.h>
#include <assimp/scene.h>
#include <exception>
#include <memory>
#include <new>
#include <vector>

namespace {

/// Leaves an importer object with the one reader of a format.
/// @return null when there is none, as for a format that is only written.
Assimp::BaseImporter* KeepReader(Assimp::Importer& importer, std::string const& format) {
    Assimp::BaseImporter* kept = nullptr;
    std::vector<Assimp::BaseImporter*> others;
    for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
        aiImporterDesc const& description = *importer.GetImporterInfo(i);
        bool const wanted = GetSceneFormat(description.mName, description.mFileExtensions).word == format;
        (wanted ? kept : others.emplace_back()) = importer.GetImporter(i);
    }
    for (Assimp::BaseImporter* const other : others) {
        importer.UnregisterLoader(other);
        delete other; // who takes it out owns it
    }
    return kept;
}

/// Whether the file can be opened at all, which assimp would tell in its own words.
IO_FILE_RESULT Probe(std::string const& file) {
    CXFileException failure;
    CXFile probe(false);
    if (!probe.Open(fileFromNativeName(file.c_str()), XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE, &failure)) {
        return IoCannotOpen;
    }
    return probe.GetLength() == 0 ? IoEmptyFile : IoSuccess;
}

/// Whether the beginning of a file suits its format, where assimp's reader does not ask.
bool HasPlausibleHead(SceneFiles& files, SceneRequest const& request) {
    constexpr std::size_t longest = 1 << 20; // a hundred times what scanners write of themselves
    if (request.format != "ply" && request.format != "obj") {
        return true;
    }
    std::unique_ptr<Assimp::IOStream> const file(files.Open(request.file.c_str(), "rb"));
    std::string head(file ? std::min(file->FileSize(), longest) : 0, ' ');
    head.resize(file ? file->Read(head.data(), 1, head.size()) : 0);
    if (request.format == "ply") {
        return head.find("end_header") != std::string::npos; // which assimp would look for for ever
    }
    // Any bytes are a scene of nothing to the reader of .obj. No text has a zero in it.
    return head.find('\0') == std::string::npos;
}

SceneReply CheckLimits(SceneRequest const& request, aiScene const& scene) {
    unsigned long long faces = 0;
    unsigned long long vertices = 0;
    for (unsigned int i = 0; i < scene.mNumMeshes; ++i) {
        faces += scene.mMeshes[i]->mNumFaces;
        vertices += scene.mMeshes[i]->mNumVertices;
    }
    if (faces > request.maxFaces) {
        return {IoOwnText, SceneFault::TooManyFaces, faces, {}};
    }
    if (vertices > request.maxVertices) {
        return {IoOwnText, SceneFault::TooManyVertices, vertices, {}};
    }
    return {};
}

SceneReply Import(SceneRequest const& request, CSceneDocument& scene) {
    Assimp::Importer importer;
    Assimp::BaseImporter* const reader = KeepReader(importer, request.format);
    if (!reader) {
        return {IoUnknownType, SceneFault::None, 0, {}};
    }
    auto* const files = new SceneFiles(request.file);
    importer.SetIOHandler(files); // which owns it
    if (IO_FILE_RESULT const code = Probe(request.file); code != IoSuccess) {
        return {code, SceneFault::None, 0, {}};
    }
    if (!HasPlausibleHead(*files, request)) {
        return {IoBadFormat, SceneFault::None, 0, {}};
    }
    aiScene const* const imported = importer.ReadFile(request.file, 0);
    if (!imported || !imported->mRootNode) {
        return SceneReply::InWords(importer.GetErrorString(), IoBadFormat);
    }
    // assimp marks what has no mesh as incomplete, also motion alone, which is what some files hold. A text reader
    // takes any bytes for a scene of nothing, with a material of its own.
    bool const isEmpty = imported->mNumMeshes + imported->mNumAnimations + imported->mNumCameras +
                             imported->mNumLights + imported->mRootNode->mNumChildren ==
                         0;
    if ((imported->mFlags & AI_SCENE_FLAGS_INCOMPLETE) != 0 && isEmpty) {
        return {IoEmptyFile, SceneFault::None, 0, {}};
    }
    SceneReply reply = CheckLimits(request, *imported);
    if (reply.code == IoSuccess) {
        scene.format = CXTString<char16_t>(request.format.c_str());
        reply = ConvertScene(*imported, request.task == SceneTask::Read, scene);
    }
    return reply;
}

} // namespace

SceneReply ReadScene(SceneRequest const& request, CSceneDocument& scene) {
    try {
        return Import(request, scene);
    } catch (std::bad_alloc const&) {
        return {IoNoMemory, SceneFault::None, 0, {}};
    } catch (std::exception const& exception) {
        return SceneReply::InWords(exception.what(), IoBadFormat);
    } catch (...) {
        return {IoBadFormat, SceneFault::None, 0, {}};
    }
}
