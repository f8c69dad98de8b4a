// SPDX-License-Identifier: MIT
// One prepared search expression over a million names, beside RE2 and the C library's fnmatch for the same question;
// and over one text that makes comparing slow. All of them must count the same answers before they are timed.
#include "zeltools/tags/xstring_match.h"

#include <benchmark/benchmark.h>
#include <fnmatch.h>
#include <functional>
#include <memory>
#include <random>
#include <re2/re2.h>
#include <string>
#include <vector>

namespace {

using Predicate = std::function<bool(std::string const&)>;

// File names as a library of textures has them, without blanks, which fnmatch would need to be told of.
std::vector<std::string> MakeNames() {
    std::mt19937 random(20);
    char const* const words[] = {"Wood",   "Oak", "diffuse", "normal",  "copy", "0001", "render", "v2",
                                 "marble", "NOR", "bumpmap", "texture", "tile", "8k",   "final",  "old"};
    char const* const extensions[] = {".tif", ".png", ".jpg", ".exr", ".txt", ".tiff"};
    std::vector<std::string> names;
    for (int count = 0; count < 1'000'000; ++count) {
        std::string name;
        for (auto parts = 2 + random() % 4; parts > 0; --parts) {
            name += words[random() % 16];
            name += parts > 1 ? (random() % 2 ? "_" : "-") : "";
        }
        names.push_back(name + extensions[random() % 6]);
    }
    return names;
}

std::vector<std::string> const& Names() {
    static std::vector<std::string> const names = MakeNames();
    return names;
}

std::vector<std::string> const& RowOfA() {
    static std::vector<std::string> const texts(1, std::string(1 << 16, 'a'));
    return texts;
}

Predicate Re2(std::string const& pattern) {
    RE2::Options options;
    options.set_case_sensitive(false);
    options.set_encoding(RE2::Options::EncodingLatin1); // its faster one
    options.set_never_capture(true);
    auto const expression = std::make_shared<RE2>(pattern, options);
    return [expression](std::string const& name) { return RE2::PartialMatch(name, *expression); };
}

Predicate Fnmatch(std::string const& pattern) {
    return [pattern](std::string const& name) { return fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0; };
}

Predicate And(Predicate const& left, Predicate const& right) {
    return [left, right](std::string const& name) { return left(name) && right(name); };
}
Predicate Or(Predicate const& left, Predicate const& right) {
    return [left, right](std::string const& name) { return left(name) || right(name); };
}
Predicate Not(Predicate const& operand) {
    return [operand](std::string const& name) { return !operand(name); };
}

struct Question {
    char const* title;
    char16_t const* expression;
    Predicate re2;
    Predicate fnmatch; ///< Empty where it cannot ask this.
    std::vector<std::string> const& (*texts)() = Names;
};

std::u16string Long(int count, char16_t const* unit, char16_t const* end) {
    std::u16string text;
    for (int i = 0; i < count; ++i) {
        text += unit;
    }
    return text + end;
}

void MatchWithZel(benchmark::State& state, Question const& question) {
    std::vector<CXTString<char16_t>> texts;
    texts.reserve(question.texts().size()); // so that they lie in a row, as the peer's do
    int expected = 0;
    for (std::string const& text : question.texts()) {
        texts.emplace_back(text.c_str());
        expected += question.re2(text);
    }
    CXStringMatch match;
    match.PrepareMatch(question.expression);
    int count = 0;
    for (auto _ : state) {
        count = 0;
        for (CXTString<char16_t> const& text : texts) {
            count += match.Match(text);
        }
        benchmark::DoNotOptimize(count);
    }
    if (count != expected) {
        state.SkipWithError("the answers differ");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}

void MatchWithPeer(benchmark::State& state, Question const& question, Predicate const& peer) {
    int count = 0;
    for (auto _ : state) {
        count = 0;
        for (std::string const& text : question.texts()) {
            count += peer(text);
        }
        benchmark::DoNotOptimize(count);
    }
    int expected = 0;
    for (std::string const& text : question.texts()) {
        expected += question.re2(text);
    }
    if (count != expected) {
        state.SkipWithError("the answers differ");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(question.texts().size()));
}

} // namespace

int main(int argc, char** argv) {
    std::u16string const longPiece = Long(1000, u"a", u"b");
    std::u16string const longPieceWithAny = Long(100, u"a?", u"b");
    std::vector<Question> const questions = {
        {"word", u"wood", Re2("wood"), Fnmatch("*wood*")},
        {"rare", u"xylophone", Re2("xylophone"), Fnmatch("*xylophone*")},
        {"two words", u"wood !oak", And(Re2("wood"), Not(Re2("oak"))), And(Fnmatch("*wood*"), Not(Fnmatch("*oak*")))},
        {"wildcard", u"nor*map", Re2("nor.*map"), Fnmatch("*nor*map*")},
        {"any one", u"m?rble", Re2("m.rble"), Fnmatch("*m?rble*")},
        {"end", u"*.ti?", Re2(R"(\.ti.$)"), Fnmatch("*.ti?")},
        {"group", u"(wood ^ marble) normal !v2", And(And(Re2("wood|marble"), Re2("normal")), Not(Re2("v2"))),
         And(And(Or(Fnmatch("*wood*"), Fnmatch("*marble*")), Fnmatch("*normal*")), Not(Fnmatch("*v2*")))},
        {"worst", longPiece.c_str(), Re2("a{1000}b"), Fnmatch("*" + std::string(1000, 'a') + "b*"), RowOfA},
        {"worst any", longPieceWithAny.c_str(), Re2("(a.){100}b"), Predicate(), RowOfA},
    };
    for (Question const& question : questions) {
        auto const name = [&](char const* who) { return std::string("Search/") + who + "/" + question.title; };
        benchmark::RegisterBenchmark(name("zel").c_str(), MatchWithZel, question)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(name("re2").c_str(), MatchWithPeer, question, question.re2)
            ->Unit(benchmark::kMillisecond);
        if (question.fnmatch) {
            benchmark::RegisterBenchmark(name("fnmatch").c_str(), MatchWithPeer, question, question.fnmatch)
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
