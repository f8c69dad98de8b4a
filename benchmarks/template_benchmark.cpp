// SPDX-License-Identifier: MIT
// A template of ten tags, expanded for each file of a catalogue, beside ctemplate and {fmt} with named arguments.
// Values is what the ten values cost by themselves, put together without any template.

#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <ctemplate/template.h>
#include <fmt/args.h>
#include <fmt/format.h>
#include <string>
#include <vector>

namespace {

constexpr unsigned int fileCount = 100'000;
constexpr unsigned int tagCount = 10;
constexpr unsigned int textCount = 6; // the first tags have texts, the others numbers

constexpr std::array<char const*, tagCount> names = {"name",   "folder", "kind",   "author",   "title",
                                                     "camera", "width",  "height", "channels", "faces"};
constexpr char const* pattern =
    "{folder}/{name} ({kind}): {width} x {height}, {channels} channels, {faces} faces. {title} by {author}, {camera}.";

/// The template with other marks around the names.
std::string Marked(char const* opening, char const* closing) {
    std::string marked;
    for (char const* c = pattern; *c; ++c)
        if (*c == '{')
            marked += opening;
        else if (*c == '}')
            marked += closing;
        else
            marked += *c;
    return marked;
}

struct File {
    std::array<std::string, textCount> narrow;
    std::array<CXTString<char16_t>, textCount> wide;
    std::array<unsigned int, tagCount - textCount> numbers;
};

std::vector<File> const& Files() {
    static std::vector<File> const files = [] {
        std::vector<File> all(fileCount);
        unsigned int n = 0;
        for (File& file : all) {
            ++n;
            file.narrow = {fmt::format("wood_oak_{:06}.jpg", n),
                           "/home/ana/textures/wood",
                           "JPEG image",
                           "Ana Lima",
                           fmt::format("Oak, board {}", n),
                           "Lumix G9"};
            for (unsigned int i = 0; i < textCount; ++i)
                file.wide[i] = file.narrow[i].c_str();
            file.numbers = {1024 + n % 4096, 768 + n % 2160, 3 + n % 2, n * 7};
        }
        return all;
    }();
    return files;
}

struct FileContext : CTags::CTagContext {
    File const* file = nullptr;
};

class FileTags : public CTags {
public:
    FileTags() {
        InitTags();
        for (unsigned int i = 0; i < tagCount; ++i)
            InsertTag(CXTString<char16_t>(("<" + std::string(names[i]) + ">").c_str()),
                      i < textCount ? TAGDATA_TEXT : TAGDATA_UINT, 1, i, names[i], CTagInfo::NoClassName, nullptr,
                      nullptr);
    }
    bool EvaluateTag(CTagContext const& context, CTagInfo const& info, CTagValue& value) override {
        File const& file = *static_cast<FileContext const&>(context).file;
        if (info.GetTagID() < textCount)
            value.SetText(file.wide[info.GetTagID()]);
        else
            value.SetUInt(file.numbers[info.GetTagID() - textCount]);
        return value.HandleParametersAndConvertToType(TAGDATA_TEXT, info.GetParameters()) != 0;
    }
};

void CountTags(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * tagCount);
}

/// Expands for one file after the other; the first is checked against what the others give.
template <class Expand>
void Run(benchmark::State& state, Expand const& expand) {
    static std::string const expected = "/home/ana/textures/wood/wood_oak_000001.jpg (JPEG image): 1025 x 769, 4 "
                                        "channels, 7 faces. Oak, board 1 by Ana "
                                        "Lima, Lumix G9.";
    std::string const first = expand(Files()[0], true);
    if (first != expected) {
        std::fprintf(stderr, "%s\n", first.c_str());
        std::abort();
    }
    std::size_t n = 0;
    for (auto _ : state) {
        expand(Files()[n], false);
        n = n + 1 < fileCount ? n + 1 : 0;
    }
    CountTags(state);
}

std::string Narrow(CXTString<char16_t> const& text) {
    return {CXTString<char>(static_cast<char16_t const*>(text))};
}

void Template_zel(benchmark::State& state) {
    FileTags tags;
    FileContext context;
    CXTString<char16_t> const source(Marked("<", ">").c_str());
    CXTString<char16_t> text;
    Run(state, [&](File const& file, bool show) {
        context.file = &file;
        text = source;
        tags.ProcessText(context, text);
        return show ? Narrow(text) : std::string();
    });
}
BENCHMARK(Template_zel)->Name("Template/zel/100000 files");

void Template_ctemplate(benchmark::State& state) {
    static char const* const key = "catalogue";
    ctemplate::StringToTemplateCache(key, Marked("{{", "}}"), ctemplate::DO_NOT_STRIP);
    std::string text;
    Run(state, [&](File const& file, bool) -> std::string const& {
        ctemplate::TemplateDictionary values("file");
        for (unsigned int i = 0; i < textCount; ++i)
            values.SetValue(names[i], file.narrow[i]);
        for (unsigned int i = textCount; i < tagCount; ++i)
            values.SetIntValue(names[i], static_cast<long>(file.numbers[i - textCount]));
        text.clear();
        ctemplate::ExpandTemplate(key, ctemplate::DO_NOT_STRIP, &values, &text);
        return text;
    });
}
BENCHMARK(Template_ctemplate)->Name("Template/ctemplate/100000 files");

void Template_fmt(benchmark::State& state) {
    std::string text;
    Run(state, [&](File const& file, bool) -> std::string const& {
        text.clear();
        fmt::format_to(std::back_inserter(text), fmt::runtime(pattern), fmt::arg("name", file.narrow[0]),
                       fmt::arg("folder", file.narrow[1]), fmt::arg("kind", file.narrow[2]),
                       fmt::arg("author", file.narrow[3]), fmt::arg("title", file.narrow[4]),
                       fmt::arg("camera", file.narrow[5]), fmt::arg("width", file.numbers[0]),
                       fmt::arg("height", file.numbers[1]), fmt::arg("channels", file.numbers[2]),
                       fmt::arg("faces", file.numbers[3]));
        return text;
    });
}
BENCHMARK(Template_fmt)->Name("Template/fmt/100000 files");

void Values_zel(benchmark::State& state) {
    FileTags tags;
    FileContext context;
    std::array<CTagInfo, tagCount> infos;
    for (unsigned int i = 0; i < tagCount; ++i)
        tags.GetTagInfo(tags.GetTagName(1, i), infos[i]);
    std::size_t n = 0;
    CXTString<char16_t> text;
    for (auto _ : state) {
        CTagValue value;
        context.file = &Files()[n];
        text.Empty();
        for (CTagInfo const& info : infos) {
            tags.EvaluateTag(context, info, value);
            text += value.GetText();
        }
        benchmark::DoNotOptimize(text.GetLength());
        n = n + 1 < fileCount ? n + 1 : 0;
    }
    CountTags(state);
}
BENCHMARK(Values_zel)->Name("Values/zel/100000 files");

} // namespace
