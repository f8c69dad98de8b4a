// SPDX-License-Identifier: MIT
// The template of a command: on the command line, or in a file.

#pragma once

#include "file_template.h"

#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace zel {

struct TemplateOptions;

/// Adds --template and --template-file.
void AddTemplateOptions(CLI::App& command, TemplateOptions& options);

/// The text of the template that was asked for. A failure is told on standard error.
/// @return false when there is none.
[[nodiscard]] bool ReadTemplate(TemplateOptions const& options, std::string& text);

/// What messages call the template: its file, or "template".
std::string TemplateSource(TemplateOptions const& options);

/// Prepares the template that was asked for, and tells its faults on standard error.
/// @param mayHaveFaults  Otherwise they are errors.
/// @return null when it cannot be used.
std::unique_ptr<FileTemplate> PrepareTemplate(TemplateOptions const& options, bool mayHaveFaults);

/// A text of the command line in which `\n`, `\t` and `\\` stand for a line feed, a tab and a backslash; any other
/// backslash stays.
std::string WithEscapes(std::string const& text);

} // namespace zel
