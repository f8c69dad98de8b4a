// SPDX-License-Identifier: MIT
// zel: catalogues folders of image and scene files through the toolkit.

#include "commands.h"
#include "list_settings.h"
#include "registry_command.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/application_product_name.h>
#include <zeltools/foundation/log_file.h>
#include <zeltools/foundation/start_and_close.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <csignal>
#include <filesystem>
#include <fmt/format.h>

namespace {

/// The toolkit stands for as long as this object.
class Toolkit {
public:
    /// @param log  Native name of the log file; empty for none.
    explicit Toolkit(std::string const& log) {
        SetInternalProductName(u"zel", 0, true);
        // A bare name means this folder; the toolkit would put it into the user's data.
        CXTString<char16_t> const path =
            log.empty() ? CXTString<char16_t>() : fileFromNativeName(std::filesystem::absolute(log).c_str());
        InitQuenbyApplication(nullptr, nullptr, AppInitFileTypes, log.empty() ? nullptr : path.GetConstBuffer());
    }
    ~Toolkit() {
        BeforeCloseQuenbyApplication();
        CloseQuenbyApplication(AppCloseFileTypes | AppCloseFreeTables);
    }
    Toolkit(Toolkit const&) = delete;
    Toolkit& operator=(Toolkit const&) = delete;
};

} // namespace

int main(int argc, char** argv) {
    // Names are counted in UTF-8 columns whatever the user's locale is; numbers stay in the C locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");

    CLI::App app("Catalogues folders of image and scene files.", "zel");
    app.require_subcommand(1);
    app.set_version_flag("--version", "zel " ZEL_VERSION);
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.footer("Exit status: 0 all well, 1 something could not be read, 2 wrong usage.");

    zel::ListOptions list;
    CLI::App* const listCommand =
        app.add_subcommand("list", "List files with what their names tell, and totals by kind");
    listCommand->add_option("PATH", list.paths, "Files and folders")->required();
    zel::ListChoices choices;
    zel::AddListChoices(*listCommand, choices);
    std::string log;
    listCommand->add_option("--log", log, "Write a log of the work into FILE, in place of what it holds")
        ->option_text("FILE");

    std::string dumpFile;
    CLI::App* const dumpCommand =
        app.add_subcommand("dump", "Print the values of a custom data stream or of a preferences file");
    dumpCommand->add_option("FILE", dumpFile, "A file of any generation")->required();

    zel::PrefsOptions prefs;
    CLI::App* const prefsCommand = zel::AddPrefsCommand(app, prefs);

    bool json = false;
    CLI::App* const typesCommand = app.add_subcommand("types", "List the file types that are known");
    typesCommand->add_flag("--json", json, "Print JSON");
    CLI::App* const whereCommand = app.add_subcommand("where", "Tell where the program keeps its data");
    whereCommand->add_flag("--json", json, "Print JSON");

    zel::RegistryOptions registry;
    CLI::App* const registryCommand = zel::AddRegistryCommand(app, registry);

    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        return app.exit(error) == 0 ? zel::ExitAllWell : zel::ExitWrongUsage;
    }

    int status = zel::ExitWrongUsage;
    {
        Toolkit const toolkit(log);
        if (!log.empty() && !IsLogFileEnabled()) {
            fmt::print(stderr, "zel: {}: the log cannot be written\n", log);
            return zel::ExitSomeFailed;
        }
        if (*listCommand) {
            zel::ApplyListChoices(choices, list);
            status = zel::RunList(list);
        } else {
            status = *prefsCommand      ? zel::RunPrefs(prefs)
                     : *registryCommand ? zel::RunRegistry(registry)
                     : *dumpCommand     ? zel::RunDump(dumpFile)
                     : *typesCommand    ? zel::RunTypes(json)
                                        : zel::RunWhere(json);
        }
    }
    if (status == zel::ExitInterrupted) {
        std::raise(SIGINT); // so that a shell's loop ends too
    }
    return status;
}
