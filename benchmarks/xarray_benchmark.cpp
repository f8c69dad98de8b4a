// SPDX-License-Identifier: MIT
// CXArray beside std::vector: appending with growth, inserting in front, reading by index. The reading peer is at(),
// which checks the index as the array always does.

#include "zeltools/foundation/xarray.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <vector>

namespace {

struct Zel {
    CXArray<int> array;
    void Append(int value) { array.Add(value); }
    void InsertFront(int value) { array.InsertAt(0, value); }
    int At(int index) const { return array[index]; }
};

/// The array with the rule that doubles, which is the vector's.
struct ZelDoubling : Zel {
    ZelDoubling() { array.SetSize(0, -2); }
};

struct Vector {
    std::vector<int> vector;
    void Append(int value) { vector.push_back(value); }
    void InsertFront(int value) { vector.insert(vector.begin(), value); }
    int At(int index) const { return vector.at(static_cast<std::size_t>(index)); }
};

template <class Array>
Array Appended(int count) {
    Array array;
    for (int i = 0; i < count; ++i)
        array.Append(i);
    return array;
}

template <class Array>
void Append(benchmark::State& state, int count) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Appended<Array>(count));
}

template <class Array>
void InsertFront(benchmark::State& state, int count) {
    for (auto _ : state) {
        Array array;
        for (int i = 0; i < count; ++i)
            array.InsertFront(i);
        benchmark::DoNotOptimize(array);
    }
}

template <class Array>
void Index(benchmark::State& state, int count) {
    Array const array = Appended<Array>(count);
    for (auto _ : state) {
        long long sum = 0;
        for (int i = 0; i < count; ++i)
            sum += array.At(i);
        if (sum != static_cast<long long>(count) * (count - 1) / 2)
            state.SkipWithError("wrong sum");
        benchmark::DoNotOptimize(sum);
    }
}

template <class Array>
void Register(std::string const& side, std::string const& rule) {
    auto const add = [&](std::string const& work, void (*run)(benchmark::State&, int), int count) {
        benchmark::RegisterBenchmark((work + "/" + side + "/" + rule + std::to_string(count)).c_str(),
                                     [run, count](benchmark::State& state) {
                                         run(state, count);
                                         state.SetItemsProcessed(state.iterations() * count);
                                     });
    };
    for (int count : {100, 10'000, 10'000'000})
        add("Append", Append<Array>, count);
    for (int count : {100, 10'000})
        add("InsertFront", InsertFront<Array>, count);
    for (int count : {100, 1'000'000})
        add("Index", Index<Array>, count);
}

bool const registered = [] {
    Register<Zel>("zel", "default_growth/");
    Register<Vector>("std::vector", "default_growth/");
    Register<ZelDoubling>("zel", "doubling/");
    Register<Vector>("std::vector", "doubling/");
    return true;
}();

} // namespace
