// SPDX-License-Identifier: MIT
#include "commands.h"
#include "file_template.h"
#include "json_text.h"
#include "output.h"
#include "template_options.h"
#include "utf8_text.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace zel {

CLI::App* AddTemplateCommand(CLI::App& app, TemplateCheckOptions& options) {
    CLI::App* const command = app.add_subcommand("template", "Look after templates");
    command->require_subcommand(1);
    CLI::App* const check = command->add_subcommand("check", "Name what is wrong with a template");
    CLI::Option* const text =
        check->add_option("T", options.wording.text, "The template, as it is given to --template");
    check->add_option("--template-file", options.wording.file, "The template from a file")
        ->option_text("FILE")
        ->excludes(text);
    check->add_flag("--strict", options.wording.strict, "Answer 1 where there is a fault");
    check->add_flag("--json", options.json, "Print JSON");
    check->callback([&options] {
        if (!options.wording.IsGiven()) {
            throw CLI::RequiredError("T or --template-file");
        }
    });
    return command;
}

int RunTemplateCheck(TemplateCheckOptions const& options) {
    std::string text;
    if (!ReadTemplate(options.wording, text)) {
        return ExitSomeFailed;
    }
    FileTemplate const prepared(text);
    std::string const source = TemplateSource(options.wording);
    bool const terminal = isatty(STDOUT_FILENO) != 0;
    nlohmann::ordered_json faults = nlohmann::ordered_json::array();
    for (TemplateFault const& fault : prepared.GetFaults()) {
        if (options.json) {
            faults.push_back({{"line", fault.line},
                              {"column", fault.column},
                              {"kind", fault.kind},
                              {"text", ShownUtf8(fault.text)},
                              {"nearest", fault.nearest.empty() ? nullptr : nlohmann::ordered_json(fault.nearest)},
                              {"message", ShownUtf8(fault.message)}});
        } else {
            Print("{}\n", ShownFault(fault, source, terminal));
        }
    }
    if (options.json) {
        Print("{}\n", nlohmann::ordered_json{{"faults", faults}}.dump(2));
    }
    return EndOutput(options.wording.strict && !prepared.GetFaults().empty() ? ExitSomeFailed : ExitAllWell);
}

} // namespace zel
