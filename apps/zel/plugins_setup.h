// SPDX-License-Identifier: MIT
// Where the program's plug-ins are, and taking them in.

#pragma once

namespace zel {

/// Says where the plug-ins are: the folder ZELTOOLS_PLUGINS names, otherwise the one that is installed with the
/// program, otherwise that of the build tree.
void SetPluginsFolder();

/// Takes the parsers of the plug-ins into the registry, once in the process. This opens each of their libraries, so it
/// is done no sooner than the first file asks for it; and before there are workers.
void RegisterPlugins();

} // namespace zel
