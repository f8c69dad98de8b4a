// SPDX-License-Identifier: MIT
// The options that the commands which open files have in common.

#pragma once

struct MediaLimits;

namespace CLI {
class App;
}

namespace zel {

struct ConvertOptions;

/// Adds --max-pixels, --max-memory, --max-faces and --max-seconds.
void AddLimits(CLI::App& command, MediaLimits& limits);

/// Adds what `zel convert` takes.
void AddConvertOptions(CLI::App& command, ConvertOptions& options);

} // namespace zel
