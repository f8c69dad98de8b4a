// SPDX-License-Identifier: MIT
// CHashMap beside the two maps that one would take instead, on the same keys in the same run: std::unordered_map and
// absl::flat_hash_map. Every answer is checked before anything is timed.

#include "zeltools/foundation/hash_map.h"

#include "zeltools/foundation/xstring.h"

#include <absl/container/flat_hash_map.h>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

/// Keys that are in the map in the order of insertion, as many that are not in it, and the lookups of either kind.
/// These are so many, in an order of chance, that the processor does not learn by heart which probe takes how long:
/// over a thousand keys in one order it does, and a map then looks as if its chains had no cost.
template <class K>
struct Keys {
    std::vector<K> present, absent, hits, misses;
};

constexpr std::size_t FewestLookups = 200'000;

/// All keys in an order of chance, again and again in another one, until there are enough.
template <class K>
std::vector<K> LookupsOf(std::vector<K> keys, std::mt19937_64& random) {
    std::vector<K> lookups;
    do {
        std::shuffle(keys.begin(), keys.end(), random);
        lookups.insert(lookups.end(), keys.begin(), keys.end());
    } while (lookups.size() < FewestLookups);
    return lookups;
}

std::u16string PathOf(std::uint64_t number) {
    std::string const digits = std::to_string(number);
    std::u16string path = u"\\textures\\";
    path.append(digits.begin(), digits.end());
    return path + u".png";
}

template <class K>
K KeyOf(std::uint64_t number) {
    if constexpr (std::is_integral_v<K>)
        return static_cast<K>(number);
    else
        return K(PathOf(number).c_str());
}

template <class K>
Keys<K> const& KeysFor(std::size_t count) {
    static std::unordered_map<std::size_t, Keys<K>> made;
    Keys<K>& keys = made[count];
    if (!keys.present.empty())
        return keys;
    std::mt19937_64 random(42);
    std::vector<std::uint64_t> numbers;
    while (numbers.size() < 2 * count) {
        while (numbers.size() < 2 * count + 16)
            numbers.push_back(std::is_integral_v<K> && sizeof(K) == 8 ? random() : random() & 0x7FFFFFFF);
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
    std::shuffle(numbers.begin(), numbers.end(), random);
    for (std::size_t i = 0; i < count; ++i) {
        keys.present.push_back(KeyOf<K>(numbers[i]));
        keys.absent.push_back(KeyOf<K>(numbers[count + i]));
    }
    keys.hits = LookupsOf(keys.present, random);
    keys.misses = LookupsOf(keys.absent, random);
    return keys;
}

/// One face for the three maps.
template <class K>
struct Zel {
    using Key = K;
    CHashMap<K, K const&, int> map;
    void Insert(K const& key, int value) { map.Insert(key, value); }
    int const* Find(K const& key) const { return std::as_const(map).Find(key); }
    long long Sum() const {
        long long sum = 0;
        for (unsigned int position = map.GetFirst(); position != map.NoPosition;)
            sum += *map.GetNext(position);
        return sum;
    }
};

template <class Map>
struct Peer {
    using Key = typename Map::key_type;
    Map map;
    void Insert(Key const& key, int value) { map.insert_or_assign(key, value); }
    int const* Find(Key const& key) const {
        auto const found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    }
    long long Sum() const {
        long long sum = 0;
        for (auto const& [key, value] : map)
            sum += value;
        return sum;
    }
};

template <class Map>
void Fill(Map& map, Keys<typename Map::Key> const& keys) {
    int value = 0;
    for (auto const& key : keys.present)
        map.Insert(key, ++value);
}

template <class Map>
void Check(Map const& map, Keys<typename Map::Key> const& keys) {
    long long const count = static_cast<long long>(keys.present.size());
    bool right = map.Sum() == count * (count + 1) / 2;
    for (std::size_t i = 0; i < keys.present.size(); ++i) {
        int const* const found = map.Find(keys.present[i]);
        right = right && found && *found == static_cast<int>(i) + 1 && !map.Find(keys.absent[i]);
    }
    if (!right) {
        std::fputs("a map gives wrong answers; nothing is timed\n", stderr);
        std::exit(1);
    }
}

/// A filled and checked map, made once and kept.
template <class Map>
Map const& FilledMap(std::size_t count) {
    static std::unordered_map<std::size_t, std::unique_ptr<Map>> made;
    auto& map = made[count];
    if (!map) {
        map = std::make_unique<Map>();
        Fill(*map, KeysFor<typename Map::Key>(count));
        Check(*map, KeysFor<typename Map::Key>(count));
    }
    return *map;
}

void CountItems(benchmark::State& state, std::size_t perIteration) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perIteration));
}

/// Inserts all keys into a new map, which grows on the way.
template <class Map>
void Insert(benchmark::State& state, std::size_t count) {
    auto const& keys = KeysFor<typename Map::Key>(count);
    for (auto _ : state) {
        auto map = std::make_unique<Map>();
        Fill(*map, keys);
        benchmark::DoNotOptimize(*map);
        state.PauseTiming();
        map.reset();
        state.ResumeTiming();
    }
    CountItems(state, count);
}

template <class Map>
void Lookup(benchmark::State& state, Map const& map, std::vector<typename Map::Key> const& keys) {
    for (auto _ : state) {
        long long sum = 0;
        for (auto const& key : keys) {
            int const* const found = map.Find(key);
            sum += found ? *found : 1;
        }
        benchmark::DoNotOptimize(sum);
    }
    CountItems(state, keys.size());
}

template <class Map>
void Hit(benchmark::State& state, std::size_t count) {
    Lookup(state, FilledMap<Map>(count), KeysFor<typename Map::Key>(count).hits);
}

template <class Map>
void Miss(benchmark::State& state, std::size_t count) {
    Lookup(state, FilledMap<Map>(count), KeysFor<typename Map::Key>(count).misses);
}

template <class Map>
void Iterate(benchmark::State& state, std::size_t count) {
    Map const& map = FilledMap<Map>(count);
    for (auto _ : state)
        benchmark::DoNotOptimize(map.Sum());
    CountItems(state, count);
}

template <class Map>
void Register(std::string const& side, std::string const& keys, std::size_t count) {
    struct {
        char const* name;
        void (*run)(benchmark::State&, std::size_t);
    } const works[] = {{"Insert", Insert<Map>}, {"Hit", Hit<Map>}, {"Miss", Miss<Map>}, {"Iterate", Iterate<Map>}};
    for (auto const& work : works)
        benchmark::RegisterBenchmark(
            (std::string(work.name) + "/" + side + "/" + keys + "/" + std::to_string(count)).c_str(),
            [run = work.run, count](benchmark::State& state) { run(state, count); });
}

template <class OurKey, class PeerKey>
bool RegisterMaps(char const* keys, std::initializer_list<std::size_t> counts) {
    for (std::size_t count : counts) {
        Register<Zel<OurKey>>("zel", keys, count);
        Register<Peer<std::unordered_map<PeerKey, int>>>("std::unordered_map", keys, count);
        Register<Peer<absl::flat_hash_map<PeerKey, int>>>("absl::flat_hash_map", keys, count);
    }
    return true;
}

bool const registered = RegisterMaps<int, int>("int", {1'000, 100'000, 10'000'000}) &&
                        RegisterMaps<long long, long long>("long_long", {1'000, 100'000, 10'000'000}) &&
                        RegisterMaps<CXTString<char16_t>, std::u16string>("wide_string", {1'000, 100'000, 1'000'000});

} // namespace
