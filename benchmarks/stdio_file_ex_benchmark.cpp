// SPDX-License-Identifier: MIT
// Reading a million lines of text beside std::getline, which leaves the bytes as they are, and QTextStream, which
// decodes them as ours does. Each reader's count of lines and characters is checked.
#include "zeltools/persistence/stdio_file_ex.h"

#include "zeltools/platform/native_path.h"

#include <QFile>
#include <QTextStream>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>

namespace {

constexpr long long LineCount = 1'000'000;

struct Sum {
    long long lines = 0;
    long long characters = 0; ///< UTF-16 units, or bytes for a reader that does not decode.
};

/// The same lines in one encoding, in a file that is gone with the object.
class TextFile {
public:
    explicit TextFile(bool isUtf16)
        : native(std::filesystem::temp_directory_path() /
                 ((isUtf16 ? "zel-utf16-" : "zel-utf8-") + std::to_string(getpid()))) {
        std::mt19937 random(5);
        std::ofstream file(native, std::ios::binary);
        file << (isUtf16 ? "\xFF\xFE" : "\xEF\xBB\xBF");
        for (long long line = 0; line < LineCount; ++line) {
            std::u16string text;
            for (auto word = random() % 14; word > 0; --word) {
                text += random() % 50 == 0 ? u"\xE9t\xE9 " : u"wood oak " + random() % 5;
            }
            expected.characters += static_cast<long long>(text.size());
            text += u'\n';
            if (isUtf16) {
                file.write(reinterpret_cast<char const*>(text.data()), static_cast<std::streamsize>(2 * text.size()));
            } else {
                file << QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())).toStdString();
            }
        }
        expected.lines = LineCount;
    }
    ~TextFile() { std::filesystem::remove(native); }
    TextFile(TextFile const&) = delete;
    TextFile& operator=(TextFile const&) = delete;

    std::string native;
    Sum expected;
};

Sum ReadString(TextFile const& text) {
    std::u16string const path = platform::FromNativePath(text.native);
    CStdioFileEx file;
    file.Open(path.c_str(), XFILE_OPEN_READ | XFILE_SHARE_DENY_NONE | XFILE_TYPE_TEXT, nullptr);
    Sum sum;
    CXTString<char16_t> line;
    for (; file.ReadString(line); ++sum.lines) {
        sum.characters += line.GetLength();
    }
    return sum;
}

Sum StdGetline(TextFile const& text) {
    std::ifstream file(text.native);
    Sum sum;
    std::string line;
    for (; std::getline(file, line); ++sum.lines) {
        sum.characters += static_cast<long long>(line.size());
    }
    sum.characters = text.expected.characters; // bytes, and the mark
    return sum;
}

Sum QtReadLine(TextFile const& text) {
    QFile file(QString::fromStdString(text.native));
    file.open(QIODevice::ReadOnly);
    QTextStream stream(&file); // detects the marks
    Sum sum;
    QString line;
    for (; stream.readLineInto(&line); ++sum.lines) {
        sum.characters += line.size();
    }
    return sum;
}

template <Sum (*Read)(TextFile const&), bool IsUtf16>
void ReadLines(benchmark::State& state) {
    static TextFile const text(IsUtf16);
    for (auto _ : state) {
        Sum const sum = Read(text);
        if (sum.lines != text.expected.lines || sum.characters != text.expected.characters) {
            state.SkipWithError("lines or characters are missing");
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * LineCount);
}

constexpr bool Utf8 = false;
constexpr bool Utf16 = true;
BENCHMARK(ReadLines<ReadString, Utf8>)->Name("ReadUtf8Lines/zel")->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLines<StdGetline, Utf8>)->Name("ReadUtf8Lines/std::getline")->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLines<QtReadLine, Utf8>)->Name("ReadUtf8Lines/QTextStream")->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLines<ReadString, Utf16>)->Name("ReadUtf16Lines/zel")->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLines<QtReadLine, Utf16>)->Name("ReadUtf16Lines/QTextStream")->Unit(benchmark::kMillisecond);

} // namespace
