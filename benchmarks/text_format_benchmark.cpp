// SPDX-License-Identifier: MIT
// Formatting into a buffer, beside the C library and {fmt} on the same values.

#include "zeltools/foundation/text_format.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>

namespace {

constexpr std::size_t capacity = 256;

// One line of a report: what most formats of a tool look like.
constexpr char const* name = "Wood_Oak_04.JPG";
constexpr int width = 4096;
constexpr double seconds = 12.34567;
constexpr long long bytes = 50331648;

struct Mixed {
    static int ZelTools(char* text) {
        return xFormat(text, capacity, "%s: %d x %d, %.2f s (%lld bytes, %5.1f %%)", name, width, 2048, seconds, bytes,
                       99.5);
    }
    static int CLibrary(char* text) {
        return std::snprintf(text, capacity, "%s: %d x %d, %.2f s (%lld bytes, %5.1f %%)", name, width, 2048, seconds,
                             bytes, 99.5);
    }
    static int Fmt(char* text) {
        auto const end = fmt::format_to_n(text, capacity, "{}: {} x {}, {:.2f} s ({} bytes, {:5.1f} %)", name, width,
                                          2048, seconds, bytes, 99.5);
        *end.out = '\0';
        return static_cast<int>(end.size);
    }
};

struct Integers {
    static int ZelTools(char* text) { return xFormat(text, capacity, "%d %08x %5u %lld", width, 0xBEEF, 7u, bytes); }
    static int CLibrary(char* text) {
        return std::snprintf(text, capacity, "%d %08x %5u %lld", width, 0xBEEF, 7u, bytes);
    }
    static int Fmt(char* text) {
        auto const end = fmt::format_to_n(text, capacity, "{} {:08x} {:5} {}", width, 0xBEEF, 7u, bytes);
        *end.out = '\0';
        return static_cast<int>(end.size);
    }
};

struct Reals {
    static int ZelTools(char* text) { return xFormat(text, capacity, "%f %.3f %g %e", 1.5, seconds, 0.1, 6.02e23); }
    static int CLibrary(char* text) {
        return std::snprintf(text, capacity, "%f %.3f %g %e", 1.5, seconds, 0.1, 6.02e23);
    }
    static int Fmt(char* text) {
        auto const end = fmt::format_to_n(text, capacity, "{:f} {:.3f} {:g} {:e}", 1.5, seconds, 0.1, 6.02e23);
        *end.out = '\0';
        return static_cast<int>(end.size);
    }
};

struct Texts {
    static int ZelTools(char* text) {
        return xFormat(text, capacity, "\\\\%s\\%s\\%-20s|%.4s", "srv", "share", name, name);
    }
    static int CLibrary(char* text) {
        return std::snprintf(text, capacity, "\\\\%s\\%s\\%-20s|%.4s", "srv", "share", name, name);
    }
    static int Fmt(char* text) {
        auto const end = fmt::format_to_n(text, capacity, "\\\\{}\\{}\\{:<20}|{:.4}", "srv", "share", name, name);
        *end.out = '\0';
        return static_cast<int>(end.size);
    }
};

void Run(benchmark::State& state, int (*format)(char*), int (*reference)(char*)) {
    char text[capacity];
    char expected[capacity];
    if (format(text) != reference(expected) || std::strcmp(text, expected) != 0) {
        std::fprintf(stderr, "%s instead of %s\n", text, expected);
        std::abort();
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(format(text));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

template <typename Case>
void ZelTools(benchmark::State& state) {
    Run(state, &Case::ZelTools, &Case::CLibrary);
}
template <typename Case>
void CLibrary(benchmark::State& state) {
    Run(state, &Case::CLibrary, &Case::CLibrary);
}
template <typename Case>
void Fmt(benchmark::State& state) {
    Run(state, &Case::Fmt, &Case::CLibrary);
}

// The C library has no formatter for UTF-16 to compare with; the wide form stands beside its narrow twin.
void ZelToolsWideMixed(benchmark::State& state) {
    char16_t text[capacity];
    for (auto _ : state) {
        benchmark::DoNotOptimize(xFormat(text, capacity, u"%s: %d x %d, %.2f s (%lld bytes, %5.1f %%)",
                                         u"Wood_Oak_04.JPG", width, 2048, seconds, bytes, 99.5));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(ZelTools<Mixed>)->Name("FormatMixed/zel");
BENCHMARK(CLibrary<Mixed>)->Name("FormatMixed/snprintf");
BENCHMARK(Fmt<Mixed>)->Name("FormatMixed/fmt");
BENCHMARK(ZelToolsWideMixed)->Name("FormatMixed/zel wide");
BENCHMARK(ZelTools<Integers>)->Name("FormatIntegers/zel");
BENCHMARK(CLibrary<Integers>)->Name("FormatIntegers/snprintf");
BENCHMARK(Fmt<Integers>)->Name("FormatIntegers/fmt");
BENCHMARK(ZelTools<Reals>)->Name("FormatReals/zel");
BENCHMARK(CLibrary<Reals>)->Name("FormatReals/snprintf");
BENCHMARK(Fmt<Reals>)->Name("FormatReals/fmt");
BENCHMARK(ZelTools<Texts>)->Name("FormatTexts/zel");
BENCHMARK(CLibrary<Texts>)->Name("FormatTexts/snprintf");
BENCHMARK(Fmt<Texts>)->Name("FormatTexts/fmt");

} // namespace

BENCHMARK_MAIN();
