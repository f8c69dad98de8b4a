// SPDX-License-Identifier: MIT
// A parser that has a scene worker do the work.

#pragma once

#include "media/scene_parser.h"
#include "plugins/scene/scene_wire.h"
#include "plugins/scene/scene_workers.h"

#include <functional>

class RemoteSceneParser final : public CSceneParser {
public:
    /// @param formatWord  Must outlive the parser.
    RemoteSceneParser(CMediaIo* owner, SceneWorkers& pool, char const* formatWord)
        : CSceneParser(owner), workers(pool), format(formatWord) {}

    /// Goes through the plain forms of a few formats here (quick/quick_header.h). assimp reads a file whole or not at
    /// all; for the rest the worker does so, and sends all but the geometry. Either way the bounding box, the
    /// materials, the metadata and nearly all counts are known; nodes, cameras and lights only where the worker was
    /// asked.
    bool ReadHeader(CSceneDocument& scene, MediaLimits const& limits, CIoOptions* options) override;
    bool Read(CSceneDocument& scene, MediaLimits const& limits, CIoOptions* options) override;
    /// The options, as name=value: "encoding" is "binary" or "text" (stl and ply: binary; fbx: text), "materials" may
    /// be "none" (obj). A format of several files (.obj with .mtl, .gltf with .bin) puts the companions in place first
    /// and the file itself last, each whole.
    bool Write(CSceneDocument const& scene, CIoOptions* options) override;

private:
    SceneRequest MakeRequest(SceneTask task, MediaLimits const& limits) const;
    bool CheckCounts(CSceneDocument& scene, MediaLimits const& limits) const;
    bool Load(SceneTask task, CSceneDocument& scene, MediaLimits const& limits);
    /// Sends a request by `send`, and takes what follows a successful reply by `receive`. False with the error told.
    /// @param longestMs  After which the worker is stopped; 0 for never.
    bool Ask(MediaLimits const& limits, unsigned long long longestMs, std::function<void(Wire&)> const& send,
             std::function<void(Wire&)> const& receive);
    bool FailByReply(SceneReply const& reply, MediaLimits const& limits) const;
    bool FailWithNumber(unsigned int textId, unsigned long long number) const;

    SceneWorkers& workers;
    char const* format;
};
