// SPDX-License-Identifier: MIT
// The parsing of file names beside std::filesystem::path: root, directory, name and extension of the same paths. Ours
// looks the extension up in the file type registry too.
#include "zeltools/files/file_info.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

// Rooted native paths of a few directories; the toolkit's form differs in the slashes alone.
std::vector<std::string> MakePaths(int directories) {
    std::mt19937 random(7);
    std::vector<std::string> paths;
    for (int count = 0; count < 1000; ++count) {
        std::string path = "/home";
        for (int level = 0; level < directories; ++level) {
            path += "/folder" + std::to_string(random() % 100000);
        }
        paths.push_back(path + "/image" + std::to_string(random() % 1000) + ".tif");
    }
    return paths;
}

CXTString<char16_t> ToolkitForm(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return CXTString<char16_t>(path.c_str());
}

bool IsSame(CXTString<char16_t> const& ours, std::string const& theirs) {
    return ours == ToolkitForm(theirs);
}

bool AnswersAgree(std::string const& native) {
    CFileInfo const info(CFileNameSpec(ToolkitForm(native)));
    std::filesystem::path const path(native);
    return IsSame(info.GetRoot(), path.root_path().string()) &&
           IsSame(info.GetPath(), path.parent_path().string() + "/") &&
           IsSame(info.GetNameWithoutExt(), path.stem().string()) &&
           IsSame(info.GetExtension(), path.extension().string());
}

void ParseWithZel(benchmark::State& state) {
    std::vector<CXTString<char16_t>> texts;
    for (std::string const& path : MakePaths(static_cast<int>(state.range(0)))) {
        if (!AnswersAgree(path)) {
            state.SkipWithError("the answers differ");
            return;
        }
        texts.push_back(ToolkitForm(path));
    }
    for (auto _ : state) {
        int units = 0;
        CFileInfo info;
        for (CXTString<char16_t> const& text : texts) {
            info.Init(CFileNameSpec(text), FileNameTypeAuto, nullptr);
            units += info.GetRoot().GetLength() + info.GetPath().GetLength() + info.GetNameWithoutExt().GetLength() +
                     info.GetExtension().GetLength();
        }
        benchmark::DoNotOptimize(units);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

void ParseWithFilesystem(benchmark::State& state) {
    std::vector<std::string> const texts = MakePaths(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::size_t units = 0;
        for (std::string const& text : texts) {
            std::filesystem::path const path(text);
            units += path.root_path().native().size() + path.parent_path().native().size() +
                     path.stem().native().size() + path.extension().native().size();
        }
        benchmark::DoNotOptimize(units);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

} // namespace

BENCHMARK(ParseWithZel)->Name("ParsePath/zel")->Arg(1)->Arg(5)->Arg(20);
BENCHMARK(ParseWithFilesystem)->Name("ParsePath/filesystem")->Arg(1)->Arg(5)->Arg(20);
BENCHMARK_MAIN();
