// SPDX-License-Identifier: MIT
#include "template_options.h"

#include "commands.h"
#include "output.h"
#include "terminal.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <unistd.h>

namespace zel {

namespace {

/// A report of a thousand pages has less; a device that never ends has more.
constexpr std::size_t MaxTemplateBytes = std::size_t(1) << 20;

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

} // namespace

void AddTemplateOptions(CLI::App& command, TemplateOptions& options) {
    CLI::Option* const text = command
                                  .add_option("--template", options.text,
                                              "The text, in which <width> and other tags stand for what is known of a "
                                              "file; \\n, \\t and \\\\ for a line feed, a tab and a backslash")
                                  ->option_text("T");
    CLI::Option* const file =
        command.add_option("--template-file", options.file, "The same from a file, as it stands")->option_text("FILE");
    text->excludes(file);
}

bool ReadTemplate(TemplateOptions const& options, std::string& text) {
    if (options.text) {
        text = WithEscapes(*options.text);
        return true;
    }
    errno = 0;
    std::ifstream file(*options.file, std::ios::binary);
    text.resize(MaxTemplateBytes + 1);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.is_open() || file.bad()) {
        Print(stderr, "zel: {}: the template cannot be read: {}\n",
              ShownName(*options.file, isatty(STDERR_FILENO) != 0), std::strerror(errno ? errno : EIO));
        return false;
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > MaxTemplateBytes) {
        Print(stderr, "zel: {}: a template may have {} bytes, and this one has more\n",
              ShownName(*options.file, isatty(STDERR_FILENO) != 0), MaxTemplateBytes);
        return false;
    }
    if (text.starts_with(Utf8Mark)) {
        text.erase(0, Utf8Mark.size());
    }
    return true;
}

std::string TemplateSource(TemplateOptions const& options) {
    return options.file.value_or("template");
}

std::unique_ptr<FileTemplate> PrepareTemplate(TemplateOptions const& options, bool mayHaveFaults) {
    std::string text;
    if (!ReadTemplate(options, text)) {
        return nullptr;
    }
    auto prepared = std::make_unique<FileTemplate>(text);
    PrintFaults(prepared->GetFaults(), TemplateSource(options));
    return mayHaveFaults || prepared->GetFaults().empty() ? std::move(prepared) : nullptr;
}

std::string WithEscapes(std::string const& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 'n' || next == 't' || next == '\\') {
            plain += next == 'n' ? '\n' : next == 't' ? '\t' : '\\';
            ++i;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace zel
