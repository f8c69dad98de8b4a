// SPDX-License-Identifier: MIT
#include "media_options.h"

#include "commands.h"
#include "media/media_limits.h"

#include <CLI/CLI.hpp>
#include <cmath>

namespace zel {

void AddLimits(CLI::App& command, MediaLimits& limits) {
    constexpr double maxSeconds = 4'000'000; // in milliseconds an unsigned int holds it
    command.add_option("--max-pixels", limits.maxPixels, "Refuse images with more pixels")
        ->check(CLI::PositiveNumber)
        ->option_text("N");
    command.add_option("--max-memory", limits.maxImageBytes, "Refuse images whose pixels take more; 512M and 16G too")
        ->transform(CLI::AsSizeValue(false))
        ->option_text("BYTES");
    command.add_option("--max-faces", limits.maxFaces, "Refuse scenes with more faces")
        ->check(CLI::PositiveNumber)
        ->option_text("N");
    command
        .add_option_function<double>(
            "--max-seconds",
            [&limits](double seconds) { limits.timeMs = static_cast<unsigned int>(std::ceil(seconds * 1000)); },
            "Give a file up that takes longer; 0 for any time")
        ->check(CLI::Range(0.0, maxSeconds))
        ->option_text("SECONDS");
}

void AddConvertOptions(CLI::App& command, ConvertOptions& options) {
    command.add_option("IN", options.from, "An image or a scene")->required();
    command.add_option("OUT", options.to, "The file to write; its name tells the format")->required();
    command
        .add_option("--option", options.options,
                    "An option of OUT's format, remembered for the next file of this format; an empty value forgets it")
        ->option_text("NAME=VALUE")
        ->expected(1)
        ->take_all();
    command.add_flag("--overwrite", options.overwrite, "Replace what has OUT's name");
    command.add_flag("!--no-preferences", options.preferences,
                     "Neither use nor change the options that are remembered");
    AddLimits(command, options.limits);
}

} // namespace zel
