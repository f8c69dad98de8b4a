// SPDX-License-Identifier: MIT
// The shell of the plug-in for scenes. It knows its types from a table, and has worker processes do the work.
#include "plugins/common/plugin_types.h"
#include "plugins/scene/remote_scene_parser.h"
#include <zeltools/files/plugin_loader.h>

#include <media/media_io.h>

namespace {

constexpr PluginType types[] = {
#include "scene_types.inc"
};

SceneWorkers& Workers() {
    static SceneWorkers workers("scene_worker");
    return workers;
}

} // namespace

extern "C" __attribute__((visibility("default"))) unsigned int QuenbyGetPluginVersion() {
    return PluginRelease;
}

extern "C" __attribute__((visibility("default"))) bool Init3DParser(IoPluginMode mode, void* argument) {
    return AnswerPluginCall(types, mode, argument, [](IoPluginParserInfo const& record, PluginType const& type) {
        // A host that keeps its own managers has no documents of this kind to fill.
        auto* const manager = dynamic_cast<CMediaIo*>(record.io);
        return manager ? new RemoteSceneParser(manager, Workers(), type.format) : nullptr;
    });
}
