// SPDX-License-Identifier: MIT
// zel: catalogues folders of image and scene files through the toolkit.

#include "commands.h"
#include "list_settings.h"
#include "media_options.h"
#include "output.h"
#include "plugins_setup.h"
#include "registry_command.h"
#include "template_options.h"
#include "terminal.h"
#include "worker_pool.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/application_product_name.h>
#include <zeltools/foundation/log_file.h>
#include <zeltools/foundation/start_and_close.h>
#include <zeltools/foundation/string_conversion.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>

namespace {

/// The toolkit stands for as long as this object.
class Toolkit {
public:
    /// @param log  Native name of the log file; empty for none.
    explicit Toolkit(std::string const& log) {
        SetInternalProductName(u"zel", 0, true);
        // A bare name means this folder, were it removed meanwhile; the toolkit would put it into the user's data.
        std::error_code error;
        std::filesystem::path const absolute = std::filesystem::absolute(log, error);
        CXTString<char16_t> const path =
            log.empty() ? CXTString<char16_t>() : fileFromNativeName(error ? ("./" + log).c_str() : absolute.c_str());
        InitQuenbyApplication(nullptr, nullptr, AppInitFileTypes, log.empty() ? nullptr : path.GetConstBuffer());
    }
    ~Toolkit() {
        if (leave) {
            return;
        }
        BeforeCloseQuenbyApplication();
        CloseQuenbyApplication(AppCloseFileTypes | AppCloseFreeTables);
    }
    Toolkit(Toolkit const&) = delete;
    Toolkit& operator=(Toolkit const&) = delete;

    /// Leaves everything to the system, whose end of the process waits for no thread.
    void Leave() {
        leave = true;
        CloseLogFile();
    }

private:
    bool leave = false;
};

/// A program that was started without its standard streams would get their numbers for the files that it opens, and
/// then print into these.
void KeepStandardStreams() {
    for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1) {
            // Open for the other direction, so that using it fails.
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

/// Passes on what the toolkit logs of settings: that a file was set aside, or could not be read.
void TellOfSettings(unsigned int, CXTString<char16_t> text, bool, void*) {
    if (text.Find(u"Preferences: ") == 0 || text.Find(u"Registry: ") == 0) {
        text.TrimRight();
        std::string const line = static_cast<char const*>(XCW2A(text, xEncodingUtf8));
        zel::Print(stderr, "zel: {}\n", zel::ShownName(line, isatty(STDERR_FILENO) != 0));
    }
}

} // namespace

int main(int argc, char** argv) {
    KeepStandardStreams();
    // Names are counted in UTF-8 columns whatever the user's locale is; numbers stay in the C locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");

    CLI::App app("Catalogues folders of image and scene files.", "zel");
    app.require_subcommand(1);
    app.set_version_flag("--version", "zel " ZEL_VERSION);
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.footer("Exit status: 0 all well, 1 something could not be read or done, 2 wrong usage, 130 interrupted.");

    zel::ListOptions list;
    CLI::App* const listCommand =
        app.add_subcommand("list", "List files with what their names tell, and totals by kind");
    listCommand->add_option("PATH", list.paths, "Files and folders")->required();
    zel::ListChoices choices;
    zel::AddListChoices(*listCommand, choices);
    zel::AddTemplateOptions(*listCommand, list.wording);
    listCommand->add_flag("--strict", list.wording.strict, "List nothing by a template with faults");
    zel::AddWhereOptions(*listCommand, list.search);
    list.limits.timeMs = 60'000; // nobody waits longer for one file of many
    zel::AddLimits(*listCommand, list.limits);
    std::string log;
    listCommand->add_option("--log", log, "Write a log of the work into FILE, in place of what it holds")
        ->option_text("FILE");

    zel::RenameOptions rename;
    CLI::App* const renameCommand = zel::AddRenameCommand(app, rename);

    zel::ListOptions find;
    find.limits.timeMs = list.limits.timeMs;
    zel::ListChoices findChoices;
    CLI::App* const findCommand = zel::AddFindCommand(app, find, findChoices);

    zel::ShowOptions show;
    CLI::App* const showCommand = app.add_subcommand("show", "Print all that is known of files");
    showCommand->add_option("FILE", show.files, "Files")->required();
    showCommand->add_flag("--json", show.json, "Print JSON");
    zel::AddLimits(*showCommand, show.limits);

    zel::ConvertOptions convert;
    CLI::App* const convertCommand =
        app.add_subcommand("convert", "Read an image or a scene and write it as another file");
    zel::AddConvertOptions(*convertCommand, convert);

    std::string dumpFile;
    CLI::App* const dumpCommand =
        app.add_subcommand("dump", "Print the values of a custom data stream or of a preferences file");
    dumpCommand->add_option("FILE", dumpFile, "A file of any generation")->required();

    zel::PrefsOptions prefs;
    CLI::App* const prefsCommand = zel::AddPrefsCommand(app, prefs);

    bool json = false;
    CLI::App* const typesCommand = app.add_subcommand("types", "List the file types that are known");
    typesCommand->add_flag("--json", json, "Print JSON");
    CLI::App* const pluginsCommand =
        app.add_subcommand("plugins", "List the plug-ins with their types, or why one was refused");
    pluginsCommand->add_flag("--json", json, "Print JSON");
    CLI::App* const tagsCommand = app.add_subcommand("tags", "List the tags and parameters of templates");
    tagsCommand->add_flag("--json", json, "Print JSON");
    zel::TemplateCheckOptions check;
    CLI::App* const templateCommand = zel::AddTemplateCommand(app, check);
    CLI::App* const whereCommand = app.add_subcommand("where", "Tell where the program keeps its data");
    whereCommand->add_flag("--json", json, "Print JSON");

    zel::RegistryOptions registry;
    CLI::App* const registryCommand = zel::AddRegistryCommand(app, registry);

    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        return app.exit(error) == 0 ? zel::ExitAllWell : zel::ExitWrongUsage;
    }

    if (*prefsCommand || *registryCommand) {
        SetLogCallback(&TellOfSettings, nullptr); // before the start, which may read the registry
    }
    int status = zel::ExitWrongUsage;
    {
        Toolkit toolkit(log);
        zel::SetPluginsFolder();
        if (!log.empty() && !IsLogFileEnabled()) {
            zel::Print(stderr, "zel: {}: the log cannot be written\n", log);
            return zel::ExitSomeFailed;
        }
        if (*listCommand) {
            zel::ApplyListChoices(choices, list);
            status = zel::RunList(list);
        } else if (*findCommand) {
            zel::ApplyListChoices(findChoices, find);
            status = zel::RunList(find);
        } else {
            status = *showCommand       ? zel::RunShow(show)
                     : *renameCommand   ? zel::RunRename(rename)
                     : *tagsCommand     ? zel::RunTags(json)
                     : *templateCommand ? zel::RunTemplateCheck(check)
                     : *convertCommand  ? zel::RunConvert(convert)
                     : *pluginsCommand  ? zel::RunPlugins(json)
                     : *prefsCommand    ? zel::RunPrefs(prefs)
                     : *registryCommand ? zel::RunRegistry(registry)
                     : *dumpCommand     ? zel::RunDump(dumpFile)
                     : *typesCommand    ? zel::RunTypes(json)
                                        : zel::RunWhere(json);
        }
        if (zel::WorkerPool::HasLeftThreads()) {
            toolkit.Leave();
            std::fflush(nullptr);
            _exit(status);
        }
    }
    return status;
}
