// SPDX-License-Identifier: MIT
// UTF-8 to UTF-16 and back, beside ICU and iconv on the same text: ASCII, ASCII with an accent now and then, French
// prose, Chinese; a file name, a page, and more than the caches hold.

#include "zeltools/platform/utf8.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <iconv.h>
#include <string>
#include <unicode/ustring.h>

namespace {

enum TextKind {
    Ascii,
    MostlyAscii,
    French,
    Chinese,
};

std::string MakeUtf8(TextKind kind, std::size_t size) {
    char const* const pieces[] = {"C:\\Textures\\Wood_Oak_04.JPG; ",
                                  "Every texture of the façade lies in the folder of its material; ",
                                  "Une façade à rénover, texture d'enduit gratté; ", "木纹贴图文件位于材质库目录之中"};
    std::string text;
    while (text.size() < size)
        text += pieces[kind];
    return text;
}

[[noreturn]] void Fail(char const* who) {
    std::fprintf(stderr, "%s gives another text\n", who);
    std::abort();
}

void Report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

std::u16string ToUtf16(std::string const& text) {
    std::u16string wide(platform::Utf16Room(text.size()), u'\0');
    wide.resize(platform::Utf8ToUtf16(text.data(), text.size(), wide.data()));
    return wide;
}

void DecodeZelTools(benchmark::State& state) {
    std::string const text = MakeUtf8(static_cast<TextKind>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::u16string target(platform::Utf16Room(text.size()), u'\0');
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::Utf8ToUtf16(text.data(), text.size(), target.data()));
        benchmark::ClobberMemory();
    }
    Report(state, text.size());
}

void DecodeIcu(benchmark::State& state) {
    std::string const text = MakeUtf8(static_cast<TextKind>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::u16string target(text.size(), u'\0');
    auto const run = [&] {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(target.data(), static_cast<int32_t>(target.size()), &length, text.data(),
                      static_cast<int32_t>(text.size()), &error);
        return length;
    };
    if (target.substr(0, static_cast<std::size_t>(run())) != ToUtf16(text))
        Fail("ICU");
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
        benchmark::ClobberMemory();
    }
    Report(state, text.size());
}

void DecodeIconv(benchmark::State& state) {
    std::string const text = MakeUtf8(static_cast<TextKind>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::u16string target(text.size(), u'\0');
    iconv_t const descriptor = iconv_open("UTF-16LE", "UTF-8");
    auto const run = [&] {
        auto* source = const_cast<char*>(text.data());
        auto* units = reinterpret_cast<char*>(target.data());
        std::size_t sourceLeft = text.size();
        std::size_t targetLeft = target.size() * 2;
        iconv(descriptor, &source, &sourceLeft, &units, &targetLeft);
        return target.size() - targetLeft / 2;
    };
    if (target.substr(0, run()) != ToUtf16(text))
        Fail("iconv");
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
        benchmark::ClobberMemory();
    }
    iconv_close(descriptor);
    Report(state, text.size());
}

void EncodeZelTools(benchmark::State& state) {
    std::string const text = MakeUtf8(static_cast<TextKind>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::u16string const wide = ToUtf16(text);
    std::string target(platform::Utf8Room(wide.size()), '\0');
    if (target.substr(0, platform::Utf16ToUtf8(wide.data(), wide.size(), target.data())) != text)
        Fail("ZelTools");
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::Utf16ToUtf8(wide.data(), wide.size(), target.data()));
        benchmark::ClobberMemory();
    }
    Report(state, text.size());
}

void EncodeIcu(benchmark::State& state) {
    std::string const text = MakeUtf8(static_cast<TextKind>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::u16string const wide = ToUtf16(text);
    std::string target(wide.size() * 3, '\0');
    auto const run = [&] {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8(target.data(), static_cast<int32_t>(target.size()), &length, wide.data(),
                    static_cast<int32_t>(wide.size()), &error);
        return length;
    };
    if (target.substr(0, static_cast<std::size_t>(run())) != text)
        Fail("ICU");
    for (auto _ : state) {
        benchmark::DoNotOptimize(run());
        benchmark::ClobberMemory();
    }
    Report(state, text.size());
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"kind", "bytes"})->ArgsProduct({{Ascii, MostlyAscii, French, Chinese}, {60, 4096, 16 << 20}});
}

BENCHMARK(DecodeZelTools)->Name("Decode/zel")->Apply(Sizes);
BENCHMARK(DecodeIcu)->Name("Decode/icu")->Apply(Sizes);
BENCHMARK(DecodeIconv)->Name("Decode/iconv")->Apply(Sizes);
BENCHMARK(EncodeZelTools)->Name("Encode/zel")->Apply(Sizes);
BENCHMARK(EncodeIcu)->Name("Encode/icu")->Apply(Sizes);

} // namespace

BENCHMARK_MAIN();
