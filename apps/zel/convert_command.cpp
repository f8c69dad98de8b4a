// SPDX-License-Identifier: MIT
#include "absolute_name.h"
#include "commands.h"
#include "media/bitmap_io.h"
#include "media/named_options.h"
#include "media/scene_io.h"
#include "media_facts.h"
#include "output.h"
#include "output_folder.h"
#include "plugins_setup.h"
#include "single_work.h"
#include "terminal.h"
#include "utf8_text.h"
#include <zeltools/files/io_options.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_queries.h>

#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <unistd.h>

namespace zel {

namespace {

namespace fs = std::filesystem;

/// Reads one document and writes it, by a manager of its kind each.
class ConvertWork : public Work {
public:
    ConvertWork(std::unique_ptr<CFileIo> fromIo, std::unique_ptr<CFileIo> toIo, MediaLimits const& mediaLimits)
        : loadOptions(false), saveOptions(false), from(std::move(fromIo)), to(std::move(toIo)), limits(mediaLimits) {}

    void Do() override {
        if (auto* const bitmap = dynamic_cast<CBitmapIo*>(from.get())) {
            Convert<CImageDocument>(*bitmap, dynamic_cast<CBitmapIo&>(*to));
        } else {
            Convert<CSceneDocument>(dynamic_cast<CSceneIo&>(*from), dynamic_cast<CSceneIo&>(*to));
        }
    }

    CFileIo& From() { return *from; }
    CFileIo& To() { return *to; }

    CIoOptions loadOptions;
    CIoOptions saveOptions;

    // To be looked at when the work is done.
    MediaFacts facts; ///< Of what was read; its answer is the reading's.
    MediaAnswer written;

private:
    template <class Document, class Io>
    void Convert(Io& fromIo, Io& toIo) {
        Document document;
        fromIo.limits = limits;
        toIo.limits = limits;
        facts.answer = TakeAnswer(fromIo, fromIo.Read(document, &loadOptions), limits);
        if (facts.answer.answered) {
            Describe(document, fromIo);
            written = TakeAnswer(toIo, toIo.Write(document, &saveOptions), limits);
        }
    }

    void Describe(CImageDocument const& image, CFileIo const&) { facts.TakeImage(image); }
    void Describe(CSceneDocument const& scene, CFileIo const& io) { facts.TakeScene(scene, io.GetCompleteName()); }

    std::unique_ptr<CFileIo> from;
    std::unique_ptr<CFileIo> to;
    MediaLimits limits;
};

/// "an image", "a scene"; null for anything else.
char const* KindOfManager(CFileIo* io) {
    return dynamic_cast<CBitmapIo*>(io) ? "an image" : dynamic_cast<CSceneIo*>(io) ? "a scene" : nullptr;
}

class Converter {
public:
    explicit Converter(ConvertOptions const& convertOptions) : options(convertOptions) {}

    int Run() {
        std::error_code unknown;
        if (!options.overwrite && fs::exists(fs::symlink_status(options.to, unknown))) {
            return Fail(options.to, "it exists; --overwrite replaces it");
        }
        if (fs::is_directory(options.to, unknown)) {
            return Fail(options.to, "it is a folder");
        }
        if (!fs::exists(options.from, unknown)) {
            return Fail(options.from, "there is no such file");
        }
        RegisterPlugins();
        unsigned int const memory = options.preferences ? 0U : IoFlagNoParameters;
        auto from = Manager(options.from, IoFlagLoading | IoFlagSilent | memory);
        auto to = Manager(options.to, IoFlagSilent | memory);
        if (!CanDo(*from, *to)) {
            return ExitSomeFailed;
        }
        OutputFolder folder(options.to);
        if (!folder.Error().empty()) {
            return Fail(options.to, folder.Error());
        }
        to = Manager(folder.Inside(), IoFlagSilent | memory);
        auto const work = std::make_shared<ConvertWork>(std::move(from), std::move(to), options.limits);
        return Convert(work, folder);
    }

private:
    static std::unique_ptr<CFileIo> Manager(std::string const& nativeName, unsigned int flags) {
        return std::unique_ptr<CFileIo>(
            CFileIo::CreateFileIoFromPath(CFileNameSpec(fileFromNativeName(AbsoluteName(nativeName).c_str())), flags));
    }

    bool CanDo(CFileIo& from, CFileIo& to) const {
        char const* const fromKind = KindOfManager(&from);
        char const* const toKind = KindOfManager(&to);
        if (!fromKind || (from.GetProperties() & FilePropertyAnyLoad) == 0) {
            Fail(options.from, "no parser reads files of this type");
        } else if (!toKind || (to.GetProperties() & FilePropertyAnySave) == 0) {
            Fail(options.to, "no parser writes files of this type");
        } else if (std::string_view(fromKind) != toKind) {
            Fail(options.from,
                 fmt::format("it is {} and cannot become {}, as {} would be", fromKind, toKind, options.to));
        } else {
            return true;
        }
        return false;
    }

    int Convert(std::shared_ptr<ConvertWork> const& work, OutputFolder& folder) const {
        CFileIo& to = work->To();
        unsigned int const toClass = to.GetClass();
        CCustomData& saving = work->saveOptions.GetParserOptions();
        to.LoadIoParameters(false, saving, toClass);
        work->From().LoadIoParameters(true, work->loadOptions.GetParserOptions(), work->From().GetClass());
        for (std::string const& option : options.options) {
            std::size_t const separator = option.find('=');
            SetNamedOption(saving, FromUtf8(option.substr(0, separator)), FromUtf8(option.substr(separator + 1)));
        }
        CCustomData const remembered = saving; // a parser may change its own
        SingleWork single(options.limits);
        WorkResult const result = single.Do(work);
        if (result == WorkResult::Cancelled) {
            return ExitInterrupted;
        }
        if (result != WorkResult::Done) {
            return Fail(options.from, single.Reason(result));
        }
        if (!work->facts.answer.answered) {
            return Fail(options.from, work->facts.answer.Reasons());
        }
        if (!work->written.answered) {
            return Fail(options.to, work->written.Reasons());
        }
        if (!folder.MoveOut(options.overwrite)) {
            return Fail(options.to, folder.Error());
        }
        if (!options.options.empty() && options.preferences && !to.SaveIoParameters(false, remembered, toClass)) {
            Print(stderr, "zel: the options could not be remembered\n"); // the file is none the worse for it
        }
        Print("{}: {}{}\n", ShownName(options.to, isatty(STDOUT_FILENO)),
              ShownName(work->facts.Text(), isatty(STDOUT_FILENO)),
              work->written.failures.empty()
                  ? std::string()
                  : fmt::format(", written by {}, not the first choice", work->written.parser));
        return EndOutput(ExitAllWell);
    }

    static int Fail(std::string const& file, std::string const& reason) {
        Print(stderr, "zel: {}\n", ShownName(file + ": " + reason, isatty(STDERR_FILENO)));
        return ExitSomeFailed;
    }

    ConvertOptions const& options;
};

} // namespace

int RunConvert(ConvertOptions const& options) {
    for (std::string const& option : options.options) {
        if (option.find('=') == 0 || option.find('=') == std::string::npos) {
            Print(stderr, "zel: --option {}: name=value is wanted\n", ShownName(option, isatty(STDERR_FILENO)));
            return ExitWrongUsage;
        }
    }
    return Converter(options).Run();
}

} // namespace zel
