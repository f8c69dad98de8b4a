// SPDX-License-Identifier: MIT
#include "plugins/scene/remote_scene_parser.h"

#include "media/media_io.h"
#include "media/named_options.h"
#include "plugins/scene/export_folder.h"
#include "plugins/scene/quick/quick_file.h"
#include "plugins/scene/quick/quick_header.h"
#include "plugins/scene/scene_check.h"
#include <zeltools/files/io_options.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/string_conversion.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace {

using Text = CXTString<char16_t>;

constexpr unsigned int BrokeDownText = 5640;
constexpr unsigned int NoNumberText = 5641;
constexpr unsigned int UnsoundMeshText = 5642;
constexpr unsigned int CannotStartText = 5643;

/// Thrown out of the waiting for a worker.
struct Stopped {};

/// Broken files send some of assimp's readers round in circles. So a reader must keep up a pace that the slowest one of
/// them, on a busy machine, exceeds a hundred times.
constexpr unsigned long long PatienceMs = 10'000;
constexpr unsigned long long LeastBytesPerMs = 50;

/// Absolute, since a worker may have been started in another folder than the one that is current now.
std::string NativeName(Text const& path) {
    std::error_code error;
    std::filesystem::path const absolute =
        std::filesystem::absolute(static_cast<char const*>(fileGetNativeName(path)), error);
    return absolute.native();
}

std::string OptionLines(CIoOptions const* options) {
    std::string lines;
    if (options) {
        for (NamedOption const& option : GetNamedOptions(options->GetParserOptions())) {
            Text const line = option.name + u"=" + option.value;
            lines += static_cast<char const*>(XCW2A(line, xEncodingUtf8));
            lines += '\n';
        }
    }
    return lines;
}

/// How long the reading of a file may last.
unsigned long long LongestMs(std::string const& file, MediaLimits const& limits) {
    std::error_code missing;
    std::uintmax_t const size = std::filesystem::file_size(file, missing);
    unsigned long long const longest = PatienceMs + (missing ? 0 : size / LeastBytesPerMs);
    return limits.timeMs == 0 ? longest : std::min<unsigned long long>(longest, limits.timeMs);
}

/// Milliseconds since `start`.
unsigned long long ElapsedMs(std::chrono::steady_clock::time_point start) {
    using namespace std::chrono;
    return static_cast<unsigned long long>(duration_cast<milliseconds>(steady_clock::now() - start).count());
}

} // namespace

SceneRequest RemoteSceneParser::MakeRequest(SceneTask task, MediaLimits const& limits) const {
    SceneRequest request;
    request.task = task;
    request.format = format;
    request.file = NativeName(GetIoMgr()->GetCompleteName());
    request.maxFaces = limits.maxFaces;
    request.maxVertices = limits.maxVertices;
    return request;
}

bool RemoteSceneParser::ReadHeader(CSceneDocument& scene, MediaLimits const& limits, CIoOptions*) {
    try {
        QuickFile file(NativeName(GetIoMgr()->GetCompleteName()), [this] {
            if (ShouldCancelParser()) {
                throw Stopped();
            }
        });
        if (file.IsOpen() && ReadQuickHeader(format, file, scene)) {
            return CheckCounts(scene, limits);
        }
    } catch (Stopped const&) {
        // The worker's reading begins with the same question, and tells what stopped it.
    }
    scene.Clear();
    return Load(SceneTask::ReadHeader, scene, limits);
}

bool RemoteSceneParser::CheckCounts(CSceneDocument& scene, MediaLimits const& limits) const {
    unsigned long long const faces = *scene.counts.faces;
    unsigned long long const vertices = *scene.counts.vertices;
    if (faces <= limits.maxFaces && vertices <= limits.maxVertices) {
        return true;
    }
    scene.Clear();
    return faces > limits.maxFaces ? FailBeyondLimit(MediaLimit::Faces, faces, limits.maxFaces)
                                   : FailBeyondLimit(MediaLimit::Vertices, vertices, limits.maxVertices);
}

bool RemoteSceneParser::Read(CSceneDocument& scene, MediaLimits const& limits, CIoOptions*) {
    return Load(SceneTask::Read, scene, limits);
}

bool RemoteSceneParser::Load(SceneTask task, CSceneDocument& scene, MediaLimits const& limits) {
    SceneRequest const request = MakeRequest(task, limits);
    bool const filled = Ask(
        limits, LongestMs(request.file, limits),
        [&request](Wire& wire) {
            WireWriter out(wire);
            TransferRequest(out, request);
        },
        [&scene](Wire& wire) {
            scene.Clear();
            WireReader in(wire);
            TransferScene(in, scene);
        });
    std::size_t mesh = 0;
    // A reader that overran its memory may have sent anything.
    if (filled && task == SceneTask::Read && !IsSoundScene(scene, mesh)) {
        scene.Clear();
        return FailWithNumber(UnsoundMeshText, mesh);
    }
    return filled;
}

bool RemoteSceneParser::Write(CSceneDocument const& scene, CIoOptions* options) {
    if (scene.meshes.empty()) {
        return Fail(IoNothingToSave);
    }
    std::size_t mesh = 0;
    if (!IsSoundScene(scene, mesh)) {
        return FailWithNumber(UnsoundMeshText, mesh);
    }
    MediaLimits const limits = GetMediaIo() ? GetMediaIo()->limits : MediaLimits();
    SceneRequest request = MakeRequest(SceneTask::Write, limits);
    request.options = OptionLines(options);
    ExportFolder folder(request.file);
    if (!folder.Create()) {
        return Fail(folder.GetError());
    }
    request.file = folder.GetMainFile();
    return Ask(
               limits, limits.timeMs,
               [&](Wire& wire) {
                   WireWriter out(wire);
                   TransferRequest(out, request);
                   TransferScene(out, scene);
               },
               [](Wire&) {}) &&
           (folder.Commit() || Fail(folder.GetError()));
}

bool RemoteSceneParser::Ask(MediaLimits const& limits, unsigned long long longestMs,
                            std::function<void(Wire&)> const& send, std::function<void(Wire&)> const& receive) {
    auto const start = std::chrono::steady_clock::now();
    std::string error;
    std::unique_ptr<SceneWorker> worker = workers.Borrow(error);
    while (worker) {
        Wire wire(worker->GetSocket(), [&] {
            if (ShouldCancelParser() || (longestMs != 0 && ElapsedMs(start) > longestMs)) {
                throw Stopped();
            }
        });
        try {
            send(wire);
            wire.Flush();
            WireReader in(wire);
            SceneReply reply;
            TransferReply(in, reply);
            if (reply.code != IoSuccess) {
                return FailByReply(reply, limits); // and without the worker, whose memory the file may have spoilt
            }
            receive(wire);
            workers.Return(std::move(worker));
            return true;
        } catch (Stopped const&) {
            return CFileParser::ShouldCancelParser() ? Fail(IoCanceled)
                                                     : FailBeyondLimit(MediaLimit::Time, ElapsedMs(start), longestMs);
        } catch (WireLost const&) {
            // A worker that has served others may have died of them: a fresh one tells.
            if (worker->IsFresh()) {
                return FailWithNumber(BrokeDownText, static_cast<unsigned int>(worker->WaitForEnd()));
            }
            worker = workers.Start(error);
        }
    }
    Text text;
    text.Format(CannotStartText, static_cast<char16_t const*>(GetIoMgr()->GetName()), error.c_str());
    return Fail(text);
}

bool RemoteSceneParser::FailByReply(SceneReply const& reply, MediaLimits const& limits) const {
    switch (reply.fault) {
    case SceneFault::TooManyFaces: return FailBeyondLimit(MediaLimit::Faces, reply.number, limits.maxFaces);
    case SceneFault::TooManyVertices: return FailBeyondLimit(MediaLimit::Vertices, reply.number, limits.maxVertices);
    case SceneFault::NoNumber: return FailWithNumber(NoNumberText, reply.number);
    case SceneFault::UnsoundMesh: return FailWithNumber(UnsoundMeshText, reply.number);
    case SceneFault::None: break;
    }
    return reply.code == IoOwnText ? Fail(Text(XCA2W(reply.text.c_str(), xEncodingUtf8)))
                                   : Fail(static_cast<IO_FILE_RESULT>(reply.code));
}

bool RemoteSceneParser::FailWithNumber(unsigned int textId, unsigned long long number) const {
    Text text;
    text.Format(textId, static_cast<char16_t const*>(GetIoMgr()->GetName()), number);
    return Fail(text);
}
