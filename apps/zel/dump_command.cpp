// SPDX-License-Identifier: MIT
#include "commands.h"
#include "output.h"
#include "terminal.h"
#include <zeltools/files/paths/native_names.h>
#include <zeltools/foundation/four_cc.h>
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/xfile_exception.h>
#include <zeltools/persistence/custom_data.h>
#include <zeltools/persistence/xarchive.h>
#include <zeltools/persistence/xfile.h>

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <string_view>
#include <unistd.h>

namespace zel {

namespace {

bool IsMagic(unsigned int word) {
    return word == CustomDataMagicCurrent || word == CustomDataMagicPrevious || word == CustomDataMagicLegacyWide ||
           word == CustomDataMagicLegacyNarrow;
}

class Dumper {
public:
    explicit Dumper(std::string const& nativePath)
        : path(fileFromNativeName(nativePath.c_str())), shownPath(ShownName(nativePath, isatty(STDERR_FILENO))),
          outputToTerminal(isatty(STDOUT_FILENO)) {}

    int Run() {
        try {
            Dump();
        } catch (CXFileException* e) {
            // A bad stream is no failure of the file, and names none.
            if (e->fileName.IsEmpty()) {
                Fail("it is damaged");
            } else {
                CXFileException const shown(e->cause, XCA2W(shownPath.c_str(), xEncodingUtf8).GetText());
                Tell(static_cast<char const*>(XCW2A(shown.GetErrorMessage(), xEncodingUtf8)));
            }
            e->Delete();
        } catch (CXException* e) {
            Fail("it ends too early");
            e->Delete();
        }
        return EndOutput(failed ? ExitSomeFailed : ExitAllWell);
    }

private:
    void Dump() {
        CXFile file(path, XFILE_OPEN_READ | XFILE_SHARE_DENY_NONE);
        unsigned int word = 0;
        if (file.Read(&word, sizeof(word)) != sizeof(word)) {
            Fail(noSuchFormat);
            return;
        }
        file.Seek(0, CXFile::begin);
        CXArchive archive(&file, CXArchive::Loading | CXArchive::NoFlushOnDelete);
        if (!(IsMagic(word) ? DumpStream(archive) : DumpRecords(archive)))
            return;
        if (unsigned long long const rest = archive.BytesLeft())
            Fail(fmt::format("{} bytes at its end belong to nothing", rest));
    }

    bool DumpStream(CXArchive& archive) {
        CCustomData data;
        data.Serialize(archive);
        PrintValues(data);
        return true;
    }

    /// Prints a preferences file: a count and so many records, each of two keys and a stream.
    /// @return false where one is none, which was told then.
    bool DumpRecords(CXArchive& archive) {
        unsigned int count = 0;
        archive >> count;
        for (unsigned int i = 0; i < count; ++i) {
            unsigned int first = 0;
            unsigned int second = 0;
            CCustomData data;
            try {
                archive >> first >> second;
                data.Serialize(archive);
            } catch (CXException* e) {
                e->Delete();
                Fail(i == 0
                         ? std::string(noSuchFormat)
                         : fmt::format("record {} of {} is damaged; it and what follows cannot be read", i + 1, count));
                return false;
            }
            Print("{}record {} {} (0x{:08X} 0x{:08X})\n", i != 0 ? "\n" : "", FourCCText(first).data(),
                  FourCCText(second).data(), first, second);
            PrintValues(data);
        }
        return true;
    }

    /// Prints the toolkit's dump with the line ends of this system, and without the power to command a terminal.
    void PrintValues(CCustomData& data) {
        CXTString<char16_t> const dump = data.DumpCustomData(true, 0);
        std::string const text = static_cast<char const*>(XCW2A(dump, xEncodingUtf8));
        for (std::string_view rest = text; !rest.empty();) {
            std::string_view line = rest.substr(0, rest.find("\r\n"));
            rest.remove_prefix(std::min(line.size() + 2, rest.size()));
            std::size_t const tabs = std::min(line.find_first_not_of('\t'), line.size());
            Print("{}{}\n", line.substr(0, tabs), ShownName(line.substr(tabs), outputToTerminal));
        }
    }

    void Fail(std::string_view reason) { Tell(fmt::format("{}: {}", shownPath, reason)); }

    void Tell(std::string_view what) {
        failed = true;
        std::fflush(stdout); // what was good stands before what was not
        Print(stderr, "zel: {}\n", what);
    }

    static constexpr char const* noSuchFormat = "it is no custom data and no preferences file";

    CXTString<char16_t> path;
    std::string shownPath;
    bool outputToTerminal;
    bool failed = false;
};

} // namespace

int RunDump(std::string const& nativePath) {
    return Dumper(nativePath).Run();
}

} // namespace zel
