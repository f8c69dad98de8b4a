// SPDX-License-Identifier: MIT
#include "absolute_name.h"
#include "commands.h"
#include "file_facts.h"
#include "media/bitmap_io.h"
#include "media/scene_io.h"
#include "media_facts.h"
#include "output.h"
#include "plugins_setup.h"
#include "show_json.h"
#include "single_work.h"
#include "terminal.h"
#include <zeltools/files/paths/file_dates.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/paths/path_queries.h>

#include <cctype>
#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>
#include <unistd.h>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

/// An image's header, which has all but the pixels; a scene with all it has.
class ShowWork : public Work {
public:
    ShowWork(CXTString<char16_t> filePath, MediaLimits const& mediaLimits)
        : path(std::move(filePath)), limits(mediaLimits) {}

    void Do() override {
        std::unique_ptr<CFileIo> const io(
            CFileIo::CreateFileIoFromPath(CFileNameSpec(path), IoFlagLoading | IoFlagSilent | IoFlagNoParameters));
        if (auto* const bitmap = dynamic_cast<CBitmapIo*>(io.get())) {
            bitmap->limits = limits;
            CImageDocument image;
            answer = TakeAnswer(*bitmap, bitmap->ReadHeader(image), limits);
            answer.AddTo(content);
            if (answer.answered) {
                AddImage(image, content);
            }
        } else if (auto* const sceneIo = dynamic_cast<CSceneIo*>(io.get())) {
            sceneIo->limits = limits;
            CSceneDocument scene;
            answer = TakeAnswer(*sceneIo, sceneIo->Read(scene), limits);
            answer.AddTo(content);
            if (answer.answered) {
                AddScene(scene, path, content);
            }
        }
    }

    // To be looked at when the work is done.
    MediaAnswer answer;
    Json content = Json::object();

private:
    CXTString<char16_t> path;
    MediaLimits limits;
};

/// "pixelType" as "pixel type".
std::string Words(std::string const& key) {
    std::string words;
    for (char const c : key) {
        words += std::isupper(c) != 0 ? std::string(" ") + static_cast<char>(std::tolower(c)) : std::string(1, c);
    }
    return words;
}

class TextPrinter {
public:
    explicit TextPrinter(bool toTerminal) : terminal(toTerminal) {}

    /// Each member on a line of its own; an object or a list of objects below its name, further to the right.
    /// @param isMetadata  Then the names are the file's own, and stay as they are.
    void PrintMembers(Json const& object, std::size_t indent, bool isMetadata = false) const {
        for (auto const& [key, value] : object.items()) {
            bool const isTable = !value.empty() && (value.is_object() || (value.is_array() && value[0].is_object()));
            std::string const name = std::string(indent, ' ') + ShownName(isMetadata ? key : Words(key), terminal);
            if (!isTable) {
                Print("{:<26} {}\n", name, ShownName(Scalar(value), terminal));
            } else if (value.is_object()) {
                Print("{}\n", name);
                PrintMembers(value, indent + 2, key == "metadata");
            } else {
                for (std::size_t i = 0; i < value.size(); ++i) {
                    Print("{} {}\n", name, i);
                    PrintMembers(value[i], indent + 2);
                }
            }
        }
    }

private:
    static std::string Scalar(Json const& value) {
        if (value.is_string()) {
            return value.get<std::string>();
        }
        if (value.is_boolean()) {
            return value.get<bool>() ? "yes" : "no";
        }
        if (value.is_number_float()) {
            return fmt::format("{:.6g}", value.get<double>());
        }
        if (!value.is_array()) {
            return value.is_null() || value.empty() ? "-" : value.dump();
        }
        std::string text;
        for (Json const& item : value) {
            text += (text.empty() ? "" : " ") + Scalar(item);
        }
        return text.empty() ? "-" : text;
    }

    bool terminal;
};

class Shower {
public:
    explicit Shower(ShowOptions const& showOptions)
        : options(showOptions), terminal(isatty(STDOUT_FILENO)), work(showOptions.limits) {}

    int Run() {
        RegisterPlugins();
        int status = ExitAllWell;
        Json all = Json::array();
        for (std::string const& file : options.files) {
            Json object;
            int const fileStatus = Show(file, object);
            status = std::max(status, fileStatus);
            if (options.json) {
                all.push_back(object);
            } else if (!object.empty()) {
                TextPrinter(terminal).PrintMembers(object, 0);
                Print("\n");
                std::fflush(stdout); // the next file may take its time
            }
            if (fileStatus == ExitInterrupted) {
                break;
            }
        }
        if (options.json) {
            Print("{}\n", all.dump(2));
        }
        return EndOutput(status);
    }

private:
    int Show(std::string const& file, Json& object) {
        CXTString<char16_t> const path = fileFromNativeName(AbsoluteName(file).c_str());
        FileFacts facts;
        facts.name = file;
        facts.sizeBytes = fileGetSize(path);
        if (facts.sizeBytes == ~0ULL || fileIsDirectory(path, true, nullptr) ||
            !fileGetLastWriteDate(path, facts.lastWrite)) {
            return Fail(file, object, "it is no file that can be read");
        }
        AddTypeFacts(path, false, facts);
        object = FileJson(facts);
        if (!facts.openable) {
            return ExitAllWell;
        }
        auto const show = std::make_shared<ShowWork>(path, options.limits);
        WorkResult const result = work.Do(show);
        if (result != WorkResult::Done) {
            Fail(file, object, work.Reason(result));
            return result == WorkResult::Cancelled ? ExitInterrupted : ExitSomeFailed;
        }
        object.update(show->content);
        return show->answer.answered ? ExitAllWell : Fail(file, object, show->answer.Reasons());
    }

    static int Fail(std::string const& file, Json& object, std::string const& reason) {
        Print(stderr, "zel: {}\n", ShownName(file + ": " + reason, isatty(STDERR_FILENO)));
        if (object.empty()) {
            object["name"] = file;
        }
        bool exact = false;
        object["error"] = ValidUtf8(reason, exact);
        return ExitSomeFailed;
    }

    ShowOptions const& options;
    bool terminal;
    SingleWork work;
};

} // namespace

int RunShow(ShowOptions const& options) {
    return Shower(options).Run();
}

} // namespace zel
