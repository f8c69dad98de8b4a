// SPDX-License-Identifier: MIT
// fileMatchWilcards beside the C library's fnmatch, on the same names and patterns.
#include "zeltools/files/paths/wildcards.h"

#include <benchmark/benchmark.h>
#include <fnmatch.h>
#include <random>
#include <string>
#include <vector>

namespace {

// File names as a folder of textures has them.
std::vector<std::string> MakeNames() {
    std::mt19937 random(20);
    char const* const words[] = {"wood", "Oak", "diffuse", "normal_map", "copy of", "0001", "render", "v2"};
    char const* const extensions[] = {".tif", ".png", ".jpg", ".exr", ".txt", ".tiff"};
    std::vector<std::string> names;
    for (int count = 0; count < 1000; ++count) {
        std::string name;
        for (auto parts = 1 + random() % 4; parts > 0; --parts) {
            name += words[random() % 8];
            name += parts > 1 ? "_" : "";
        }
        names.push_back(name + extensions[random() % 6]);
    }
    return names;
}

struct Pattern {
    char const* title;
    std::string text;
};

std::vector<Pattern> const patterns = {
    {"extension", "*.tif"},
    {"inside", "*normal*map*"},
    {"single", "????_*.png"},
    {"exact", "wood_Oak.png"},
    // Each star has to be tried at many places before the name is refused.
    {"worst", "*o*o*o*o*z*"},
};

std::vector<std::string> const narrowNames = MakeNames();

CXTString<char16_t> Widen(std::string const& text) {
    return CXTString<char16_t>(text.c_str());
}

void MatchWithZel(benchmark::State& state, std::string const& pattern) {
    std::vector<CXTString<char16_t>> names;
    for (std::string const& name : narrowNames) {
        names.push_back(Widen(name));
    }
    CXTString<char16_t> const widePattern = Widen(pattern);
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (fileMatchWilcards(names[index], widePattern, true) !=
            (fnmatch(pattern.c_str(), narrowNames[index].c_str(), 0) == 0)) {
            state.SkipWithError("the answers differ");
            return;
        }
    }
    for (auto _ : state) {
        int matches = 0;
        for (CXTString<char16_t> const& name : names) {
            matches += fileMatchWilcards(name, widePattern, true);
        }
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(names.size()));
}

void MatchWithFnmatch(benchmark::State& state, std::string const& pattern) {
    for (auto _ : state) {
        int matches = 0;
        for (std::string const& name : narrowNames) {
            matches += fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(narrowNames.size()));
}

} // namespace

int main(int argc, char** argv) {
    for (Pattern const& pattern : patterns) {
        std::string const title = pattern.title;
        benchmark::RegisterBenchmark(("MatchWildcards/zel/" + title).c_str(), MatchWithZel, pattern.text);
        benchmark::RegisterBenchmark(("MatchWildcards/fnmatch/" + title).c_str(), MatchWithFnmatch, pattern.text);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
