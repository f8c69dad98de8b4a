// SPDX-License-Identifier: MIT
// The shell of the plug-in for images. It knows its types from a table and opens the backend at the first parse.
#include "media/bitmap_parser.h"
#include "plugins/common/lazy_parser.h"
#include "plugins/common/plugin_types.h"
#include <zeltools/files/plugin_loader.h>

namespace {

constexpr PluginType types[] = {
#include "bitmap_types.inc"
};

BackendLibrary backend("bitmap_backend.so");

} // namespace

extern "C" __attribute__((visibility("default"))) unsigned int QuenbyGetPluginVersion() {
    return PluginRelease;
}

extern "C" __attribute__((visibility("default"))) bool InitBitmapParser(IoPluginMode mode, void* argument) {
    return AnswerPluginCall(types, mode, argument, [](IoPluginParserInfo const& record, PluginType const& type) {
        // A host that keeps its own managers has no documents of this kind to fill.
        auto* const manager = dynamic_cast<CMediaIo*>(record.io);
        return manager ? new LazyParser<CBitmapParser, CImageDocument>(manager, backend, type.format) : nullptr;
    });
}
