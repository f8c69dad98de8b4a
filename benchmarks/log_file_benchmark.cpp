// SPDX-License-Identifier: MIT
// A line of the log that is on its way to the disk when the call returns, beside spdlog's file sink that flushes every
// line; and a line that nobody takes.

#include "zeltools/foundation/log_file.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <string>

namespace {

namespace fs = std::filesystem;

/// Both write the same words: the peer's pattern adds no time either.
constexpr int width = 4096;

/// A folder that goes with everything in it.
class Folder {
public:
    Folder() {
        std::string name = fs::temp_directory_path() / "log_benchmark_XXXXXX";
        path = mkdtemp(name.data());
    }
    ~Folder() { fs::remove_all(path); }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;

    fs::path path;
};

/// Whether a file holds so many bytes for each line, beside what stands at its ends.
void CheckSize(benchmark::State& state, fs::path const& file, std::size_t bytesPerLine) {
    std::size_t const lines = static_cast<std::size_t>(state.iterations());
    std::size_t const size = fs::file_size(file);
    if (size < lines * bytesPerLine || size > lines * bytesPerLine + 1000) {
        state.SkipWithError("the file does not hold every line");
    }
    state.SetItemsProcessed(state.iterations());
}

CXTString<char16_t> ToolkitPath(fs::path const& path) {
    CXTString<char16_t> text(path.c_str());
    text.Replace(u'/', u'\\');
    return text;
}

constexpr std::size_t lineLength = 40; // "Loading Wood_Oak_04.JPG (4096 x 002048)\n"

template <class Character>
void FlushedZel(benchmark::State& state, Character const* format, Character const* name, unsigned int level) {
    Folder const folder;
    fs::path const file = folder.path / "zel.log";
    SetLogFile(ToolkitPath(file), LogFileModeReplace, level);
    for ([[maybe_unused]] auto _ : state) {
        WriteToLogFile(format, name, width, 2048);
    }
    CloseLogFile();
    CheckSize(state, file, lineLength * 2);
}

void FlushedWide(benchmark::State& state) {
    FlushedZel(state, u"Loading %s (%d x %06d)\n", u"Wood_Oak_04.JPG", 0xFF);
}
BENCHMARK(FlushedWide)->Name("Flushed/zel");

void FlushedNarrow(benchmark::State& state) {
    FlushedZel(state, "Loading %s (%d x %06d)\n", "Wood_Oak_04.JPG", 0xFF);
}
BENCHMARK(FlushedNarrow)->Name("FlushedNarrow/zel");

void FlushedPeer(benchmark::State& state) {
    Folder const folder;
    fs::path const file = folder.path / "peer.log";
    {
        spdlog::logger logger("benchmark", std::make_shared<spdlog::sinks::basic_file_sink_mt>(file));
        logger.set_pattern("%v");
        logger.flush_on(spdlog::level::trace);
        for ([[maybe_unused]] auto _ : state) {
            logger.info("Loading {} ({} x {:06})", "Wood_Oak_04.JPG", width, 2048);
        }
    }
    CheckSize(state, file, lineLength);
}
BENCHMARK(FlushedPeer)->Name("Flushed/spdlog");
BENCHMARK(FlushedPeer)->Name("FlushedNarrow/spdlog");

/// Nobody can know the threshold before, so that the test is made each time.
void FilteredZel(benchmark::State& state) {
    Folder const folder;
    SetLogFile(ToolkitPath(folder.path / "zel.log"), LogFileModeReplace, 5);
    int lines = 0;
    for ([[maybe_unused]] auto _ : state) {
        WriteToLogFile(6, u"Loading %s (%d x %06d)\n", u"Wood_Oak_04.JPG", width, ++lines);
        benchmark::ClobberMemory();
    }
    CloseLogFile();
    CheckSize(state, folder.path / "zel.log", 0);
}
BENCHMARK(FilteredZel)->Name("Filtered/zel");

void FilteredPeer(benchmark::State& state) {
    Folder const folder;
    spdlog::logger logger("benchmark", std::make_shared<spdlog::sinks::basic_file_sink_mt>(folder.path / "peer.log"));
    logger.set_level(spdlog::level::info);
    int lines = 0;
    for ([[maybe_unused]] auto _ : state) {
        logger.debug("Loading {} ({} x {:06})", "Wood_Oak_04.JPG", width, ++lines);
        benchmark::ClobberMemory();
    }
    CheckSize(state, folder.path / "peer.log", 0);
}
BENCHMARK(FilteredPeer)->Name("Filtered/spdlog");

} // namespace

BENCHMARK_MAIN();
