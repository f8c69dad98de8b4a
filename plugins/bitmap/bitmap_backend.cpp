// SPDX-License-Identifier: MIT
// The half of the plug-in that knows OpenImageIO. Opened by the shell at the first parse.
#include "plugins/bitmap/oiio_parser.h"

#include <OpenImageIO/imageio.h>
#include <mutex>

namespace {

/// The library's settings for the whole process, which are this plug-in's alone: nobody else sees its symbols.
void SetUpLibrary() {
    OIIO::attribute("threads", 1); // the host has threads of its own
    OIIO::attribute("exr_threads", -1);
    OIIO::attribute("debug", 0);              // what it prints belongs into no host's output
    OIIO::attribute("plugin_searchpath", ""); // the formats are those of the shell's table
}

} // namespace

extern "C" __attribute__((visibility("default"))) CBitmapParser* ZelCreateParser(CMediaIo* manager,
                                                                                 char const* format) {
    static std::once_flag once;
    std::call_once(once, SetUpLibrary);
    return new OiioParser(manager, format);
}
