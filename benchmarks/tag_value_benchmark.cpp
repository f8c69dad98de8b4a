// SPDX-License-Identifier: MIT
// Typed values into text, as an expanded tag does it thousands of times with one value, beside snprintf of the same
// numbers into a buffer. snprintf makes narrow text, so the widening comes on top here.

#include "zeltools/tags/tag_value.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr int valueCount = 1024;
constexpr int elementCount = 64;
constexpr std::size_t capacity = 4096;

/// Numbers of all lengths, the same in each run.
unsigned int Scattered(int index) {
    unsigned int const mixed = static_cast<unsigned int>(index + 1) * 2654435761u;
    return mixed >> mixed % 32;
}

float ScatteredReal(int index) {
    return static_cast<float>(Scattered(index)) / 1024;
}

struct Unsigned {
    static void Fill(CTagValue& value, int index) { value.SetUInt(Scattered(index)); }
    static int Print(char* text, int index) { return std::snprintf(text, capacity, "%u", Scattered(index)); }
};

struct Signed {
    static int Number(int index) { return static_cast<int>(~Scattered(index)); }
    static void Fill(CTagValue& value, int index) { value.SetInt(Number(index)); }
    static int Print(char* text, int index) { return std::snprintf(text, capacity, "%d", Number(index)); }
};

struct Real {
    static void Fill(CTagValue& value, int index) { value.SetFloat(ScatteredReal(index)); }
    static int Print(char* text, int index) {
        return std::snprintf(text, capacity, "%.4f", static_cast<double>(ScatteredReal(index)));
    }
};

struct Resolution {
    static void Fill(CTagValue& value, int index) { value.SetResolution(ScatteredReal(index)); }
    static int Print(char* text, int index) {
        return std::snprintf(text, capacity, "%f dpi", static_cast<double>(ScatteredReal(index)));
    }
};

struct Color {
    static void Fill(CTagValue& value, int index) { value.SetColor(Scattered(index) & 0xFFFFFF); }
    static int Print(char* text, int index) {
        unsigned int const color = Scattered(index);
        return std::snprintf(text, capacity, "%d %d %d (RGB)", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
    }
};

struct Duration {
    static void Fill(CTagValue& value, int index) { value.SetDuration(static_cast<float>(3601 + index)); }
    static int Print(char* text, int index) {
        int const seconds = 3601 + index;
        return std::snprintf(text, capacity, "%02d h %02d mn %02d s", seconds / 3600, seconds / 60 % 60, seconds % 60);
    }
};

struct Date {
    static CXTime At(int index) { return 1062540300LL + index * 100000LL; }
    static void Fill(CTagValue& value, int index) { value.SetDate(At(index)); }
    static int Print(char* text, int index) {
        std::tm record;
        At(index).GetLocalTm(&record);
        return std::snprintf(text, capacity, "%02d/%02d/%04d %02d:%02d", record.tm_mday, record.tm_mon + 1,
                             record.tm_year + 1900, record.tm_hour, record.tm_min);
    }
};

struct Integers {
    static void Fill(CTagValue& value, int index) {
        value.InitType(TAGDATA_INTS);
        for (int i = 0; i < elementCount; ++i)
            value.AddInt(Signed::Number(index + i));
    }
    static int Print(char* text, int index) {
        int length = 0;
        for (int i = 0; i < elementCount; ++i)
            length += std::snprintf(text + length, capacity - static_cast<std::size_t>(length), "%d; ",
                                    Signed::Number(index + i));
        return length;
    }
};

struct Reals {
    static void Fill(CTagValue& value, int index) {
        value.InitType(TAGDATA_FLOATS);
        for (int i = 0; i < elementCount; ++i)
            value.AddFloat(ScatteredReal(index + i));
    }
    static int Print(char* text, int index) {
        int length = 0;
        for (int i = 0; i < elementCount; ++i)
            length += std::snprintf(text + length, capacity - static_cast<std::size_t>(length), "%f; ",
                                    static_cast<double>(ScatteredReal(index + i)));
        return length;
    }
};

template <class Case>
void Convert(CTagValue& value, int index) {
    static CXTString<char16_t> const noParameters;
    Case::Fill(value, index);
    value.HandleParametersAndConvertToType(TAGDATA_TEXT, noParameters);
}

template <class Case>
void ZelTools(benchmark::State& state) {
    CTagValue value;
    char expected[capacity];
    for (int index = 0; index < valueCount; ++index) {
        Convert<Case>(value, index);
        Case::Print(expected, index);
        if (CXTString<char16_t>(expected) != value.GetText()) {
            std::fprintf(stderr, "not as snprintf: %s\n", expected);
            std::abort();
        }
    }
    int index = 0;
    for (auto _ : state) {
        Convert<Case>(value, index);
        benchmark::DoNotOptimize(value.GetText().GetConstBuffer());
        index = (index + 1) % valueCount;
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Case>
void CLibrary(benchmark::State& state) {
    char text[capacity];
    int index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Case::Print(text, index));
        benchmark::ClobberMemory();
        index = (index + 1) % valueCount;
    }
    state.SetItemsProcessed(state.iterations());
}

#define PAIR(Case)                                                                                                     \
    BENCHMARK(ZelTools<Case>)->Name("TagToText" #Case "/zel");                                                         \
    BENCHMARK(CLibrary<Case>)->Name("TagToText" #Case "/snprintf")

PAIR(Unsigned);
PAIR(Signed);
PAIR(Real);
PAIR(Resolution);
PAIR(Color);
PAIR(Duration);
PAIR(Date);
PAIR(Integers);
PAIR(Reals);

} // namespace

BENCHMARK_MAIN();
