// SPDX-License-Identifier: MIT
// The wide string beside std::u16string, at the work that tools do with names and texts. Each answer is checked
// against the peer's before it is timed.
#include "zeltools/foundation/xstring.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using String = CXTString<char16_t>;

// A text of words; no word holds a capital, so that what a search looks for can be put where it is wanted.
std::u16string Words(std::size_t length) {
    std::u16string_view const words = u"the oak board lies beside a wooden chair under the window ";
    std::u16string text;
    while (text.size() < length)
        text += words.substr(0, length - text.size());
    return text;
}

template <class Left, class Right>
bool Agree(benchmark::State& state, Left const& ours, Right const& peers) {
    if (ours == peers)
        return true;
    state.SkipWithError("the two answers differ");
    return false;
}

void CountUnits(benchmark::State& state, std::size_t units) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(2 * units));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16)->Arg(1024)->Arg(1 << 20);
}

// ---- Append: one character at a time, and pieces ----

template <class Text>
Text Characters(std::size_t count) {
    Text text;
    for (std::size_t i = 0; i < count; ++i)
        text += static_cast<char16_t>(u'a' + (i & 15));
    return text;
}

template <class Text>
void AppendCharacters(benchmark::State& state) {
    std::size_t const count = static_cast<std::size_t>(state.range(0));
    if (!Agree(state, Characters<String>(count), Characters<std::u16string>(count).c_str()))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(Characters<Text>(count));
    CountUnits(state, count);
}

template <class Text>
Text Pieces(Text const& piece, int count) {
    Text text;
    for (int i = 0; i < count; ++i)
        text += piece;
    return text;
}

template <class Text>
void AppendTexts(benchmark::State& state) {
    std::u16string const piece = Words(static_cast<std::size_t>(state.range(0)));
    int const count = state.range(0) < 1000 ? 64 : 8;
    if (!Agree(state, Pieces(String(piece.c_str()), count), Pieces(piece, count).c_str()))
        return;
    Text const operand(piece.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(Pieces(operand, count));
    CountUnits(state, piece.size() * static_cast<std::size_t>(count));
}

template <class Text>
void Copy(benchmark::State& state) {
    Text const text(Words(static_cast<std::size_t>(state.range(0))).c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(Text(text));
    CountUnits(state, static_cast<std::size_t>(state.range(0)));
}

// ---- Search ----

int Found(std::size_t position) {
    return position == std::u16string::npos ? -1 : static_cast<int>(position);
}

int FindIn(String const& text, char16_t character) {
    return text.Find(character);
}
int FindIn(std::u16string const& text, char16_t character) {
    return Found(text.find(character));
}
int FindIn(String const& text, char16_t const* part) {
    return text.Find(part);
}
int FindIn(std::u16string const& text, char16_t const* part) {
    return Found(text.find(part));
}
int FindLastIn(String const& text, char16_t character) {
    return text.ReverseFind(character);
}
int FindLastIn(std::u16string const& text, char16_t character) {
    return Found(text.rfind(character));
}

// What is looked for stands at the end.
template <class Text>
void FindCharacter(benchmark::State& state) {
    std::u16string const words = Words(static_cast<std::size_t>(state.range(0))) + u'Q';
    if (!Agree(state, FindIn(String(words.c_str()), u'Q'), FindIn(words, u'Q')))
        return;
    Text const text(words.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(FindIn(text, u'Q'));
    CountUnits(state, words.size());
}

// ... or at the beginning, for the search from behind.
template <class Text>
void FindLastCharacter(benchmark::State& state) {
    std::u16string const words = u'Q' + Words(static_cast<std::size_t>(state.range(0)));
    if (!Agree(state, FindLastIn(String(words.c_str()), u'Q'), FindLastIn(words, u'Q')))
        return;
    Text const text(words.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(FindLastIn(text, u'Q'));
    CountUnits(state, words.size());
}

template <class Text>
void FindText(benchmark::State& state) {
    std::u16string const words = Words(static_cast<std::size_t>(state.range(0))) + u"oak table";
    if (!Agree(state, FindIn(String(words.c_str()), u"oak table"), FindIn(words, u"oak table")))
        return;
    Text const text(words.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(FindIn(text, u"oak table"));
    CountUnits(state, words.size());
}

// The worst case of a scan for the beginning of a text: it begins everywhere.
template <class Text>
void FindTextInRepetition(benchmark::State& state) {
    std::u16string const words(static_cast<std::size_t>(state.range(0)), u'a');
    if (!Agree(state, FindIn(String(words.c_str()), u"aaab"), FindIn(words, u"aaab")))
        return;
    Text const text(words.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(FindIn(text, u"aaab"));
    CountUnits(state, words.size());
}

// ---- Replace ----

int ReplaceIn(String& text, char16_t const* from, char16_t const* to) {
    return text.Replace(from, to);
}
int ReplaceIn(std::u16string& text, std::u16string_view from, std::u16string_view to) {
    int count = 0;
    std::u16string replaced;
    std::size_t taken = 0;
    for (std::size_t at; (at = text.find(from, taken)) != std::u16string::npos; ++count) {
        replaced.append(text, taken, at - taken).append(to);
        taken = at + from.size();
    }
    text = std::move(replaced.append(text, taken));
    return count;
}

template <class Text>
void ReplaceWith(benchmark::State& state, char16_t const* to) {
    std::u16string const words = Words(static_cast<std::size_t>(state.range(0)));
    String ours(words.c_str());
    std::u16string peers = words;
    if (!Agree(state, ReplaceIn(ours, u"oak", to), ReplaceIn(peers, u"oak", to)) || !Agree(state, ours, peers.c_str()))
        return;
    Text const text(words.c_str());
    for (auto _ : state) {
        Text copy(text);
        benchmark::DoNotOptimize(ReplaceIn(copy, u"oak", to));
    }
    CountUnits(state, words.size());
}

template <class Text>
void ReplaceByLonger(benchmark::State& state) {
    ReplaceWith<Text>(state, u"maple");
}

template <class Text>
void ReplaceByShorter(benchmark::State& state) {
    ReplaceWith<Text>(state, u"ash");
}

// ---- Compare ----

int CompareIn(String const& left, String const& right) {
    return left.Compare(right);
}
int CompareIn(std::u16string const& left, std::u16string const& right) {
    return left.compare(right);
}
int NoCaseIn(String const& left, String const& right) {
    return left.CompareNoCase(right);
}
int NoCaseIn(std::u16string const& left, std::u16string const& right) {
    auto const lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
    std::size_t const shared = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < shared; ++i) {
        if (int const difference = lower(left[i]) - lower(right[i]))
            return difference;
    }
    return left.size() < right.size() ? -1 : left.size() > right.size();
}

template <class Text>
void CompareExact(benchmark::State& state) {
    std::u16string const words = Words(static_cast<std::size_t>(state.range(0)));
    Text const left((words + u'a').c_str());
    Text const right((words + u'b').c_str());
    if (!Agree(state, CompareIn(left, right) < 0, true))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(CompareIn(left, right));
    CountUnits(state, words.size());
}

template <class Text>
void CompareNoCase(benchmark::State& state) {
    std::u16string const words = Words(static_cast<std::size_t>(state.range(0)));
    std::u16string capitals = words;
    for (char16_t& unit : capitals)
        unit = static_cast<char16_t>(unit >= u'a' && unit <= u'z' ? unit - 32 : unit);
    Text const left((words + u'a').c_str());
    Text const right((capitals + u'B').c_str());
    if (!Agree(state, NoCaseIn(left, right) < 0, true))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(NoCaseIn(left, right));
    CountUnits(state, words.size());
}

} // namespace

#define ZEL_BESIDE_PEER(work)                                                                                          \
    BENCHMARK(work<String>)->Name(#work "/zel")->Apply(Sizes);                                                         \
    BENCHMARK(work<std::u16string>)->Name(#work "/std::u16string")->Apply(Sizes)

ZEL_BESIDE_PEER(AppendCharacters);
ZEL_BESIDE_PEER(AppendTexts);
ZEL_BESIDE_PEER(Copy);
ZEL_BESIDE_PEER(FindCharacter);
ZEL_BESIDE_PEER(FindLastCharacter);
ZEL_BESIDE_PEER(FindText);
ZEL_BESIDE_PEER(FindTextInRepetition);
ZEL_BESIDE_PEER(ReplaceByLonger);
ZEL_BESIDE_PEER(ReplaceByShorter);
ZEL_BESIDE_PEER(CompareExact);
ZEL_BESIDE_PEER(CompareNoCase);
