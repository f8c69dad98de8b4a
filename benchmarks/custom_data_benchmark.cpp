// SPDX-License-Identifier: MIT
// CCustomData beside what one would keep settings in instead: QVariantMap with QDataStream, a JSON object with
// MessagePack, and a Protocol Buffers map. All hold the same values, and every answer is checked before anything is
// timed. `allocations` counts those of one round: none for a get.
#include "zeltools/persistence/custom_data.h"

#include "custom_data_benchmark.pb.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QVariantMap>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

namespace {

std::size_t allocations = 0;

} // namespace

// The library's memory comes from malloc and the peers' from operator new, which calls it.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
    ++allocations;
    return __libc_malloc(size);
}
void* realloc(void* block, std::size_t size) noexcept {
    ++allocations;
    return __libc_realloc(block, size);
}
}

namespace {

/// The values of each type in their order: value i is of type i % TypeCount.
enum Type {
    Number,
    Real,
    Flag,
    Size,
    Text,
    Small,
    Block,
    TypeCount
};

constexpr std::size_t BlockSize = 16;

struct Input {
    unsigned int id;
    std::string name; ///< for those whose keys are texts
    QString qtName;
    Type type;
    int number;
    std::string text; ///< twelve characters
    CXTString<char16_t> wideText;
    QString qtText;
    std::string block;
    QByteArray qtBlock;
};

std::vector<Input> const& Inputs(std::size_t count) {
    static std::vector<Input> few, many;
    std::vector<Input>& inputs = count <= 50 ? few : many;
    std::mt19937 random(12345);
    while (inputs.size() < count) {
        Input input;
        input.id = static_cast<unsigned int>(random());
        input.name = std::to_string(input.id);
        input.qtName = QString::fromStdString(input.name);
        input.type = static_cast<Type>(inputs.size() % TypeCount);
        input.number = static_cast<int>(random() % 100000);
        input.text = "text " + std::to_string(1000000 + input.number);
        input.qtText = QString::fromStdString(input.text);
        input.wideText = input.text.c_str();
        input.block.assign(BlockSize, static_cast<char>(input.number));
        input.qtBlock = QByteArray(input.block.data(), BlockSize);
        inputs.push_back(std::move(input));
    }
    return inputs;
}

/// What a get of each value adds up to, so that nothing is left out and all can be compared.
class Sum {
public:
    void Add(double value) { total += value; }
    double total = 0;
};

// ---- The stores, all with the same operations ----

class Zel {
public:
    void Set(Input const& in) {
        switch (in.type) {
        case Number: data.SetInt(in.id, in.number); break;
        case Real: data.SetDouble(in.id, in.number * 0.5); break;
        case Flag: data.SetBool(in.id, in.number & 1); break;
        case Size: data.SetSizet(in.id, static_cast<std::size_t>(in.number)); break;
        case Text: data.SetString(in.id, in.wideText); break;
        case Small: data.SetFloat(in.id, static_cast<float>(in.number)); break;
        default: data.SetBinary(in.id, in.block.data(), BlockSize); break;
        }
    }
    void Get(Input const& in, Sum& sum) {
        int number = 0;
        double real = 0;
        bool flag = false;
        std::size_t size = 0;
        float small = 0;
        switch (in.type) {
        case Number: data.GetInt(in.id, number), sum.Add(number); break;
        case Real: data.GetDouble(in.id, real), sum.Add(real); break;
        case Flag: data.GetBool(in.id, flag), sum.Add(flag); break;
        case Size: data.GetSizet(in.id, size), sum.Add(static_cast<double>(size)); break;
        case Text: data.GetString(in.id, text), sum.Add(text.GetLength()); break;
        case Small: data.GetFloat(in.id, small), sum.Add(small); break;
        default: data.GetBinary(in.id, block, BlockSize), sum.Add(block[BlockSize - 1]); break;
        }
    }
    struct Bytes {
        void* block = nullptr;
        unsigned long long size = 0;
        Bytes() = default;
        Bytes(Bytes const&) = delete;
        Bytes& operator=(Bytes const&) = delete;
        ~Bytes() { CCustomData::Free(block); }
    };
    void Store(Bytes& bytes) const { bytes.block = data.SerializeToData(bytes.size); }
    void Load(Bytes const& bytes) { data.SerializeFromData(bytes.block, bytes.size); }

private:
    CCustomData data;
    CXTString<char16_t> text;
    char block[BlockSize] = {};
};

class Qt {
public:
    void Set(Input const& in) {
        switch (in.type) {
        case Number: map.insert(in.qtName, in.number); break;
        case Real: map.insert(in.qtName, in.number * 0.5); break;
        case Flag: map.insert(in.qtName, (in.number & 1) != 0); break;
        case Size: map.insert(in.qtName, static_cast<qulonglong>(in.number)); break;
        case Text: map.insert(in.qtName, in.qtText); break;
        case Small: map.insert(in.qtName, static_cast<float>(in.number)); break;
        default: map.insert(in.qtName, in.qtBlock); break;
        }
    }
    void Get(Input const& in, Sum& sum) {
        QVariant const value = map.value(in.qtName);
        switch (in.type) {
        case Number: sum.Add(value.toInt()); break;
        case Real: sum.Add(value.toDouble()); break;
        case Flag: sum.Add(value.toBool()); break;
        case Size: sum.Add(static_cast<double>(value.toULongLong())); break;
        case Text: sum.Add(static_cast<double>(value.toString().size())); break;
        case Small: sum.Add(static_cast<double>(value.toFloat())); break;
        default: sum.Add(value.toByteArray().back()); break;
        }
    }
    using Bytes = QByteArray;
    void Store(Bytes& bytes) const {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << map;
    }
    void Load(Bytes const& bytes) {
        QDataStream stream(bytes);
        stream >> map;
    }

private:
    QVariantMap map;
};

class MessagePack {
public:
    void Set(Input const& in) {
        switch (in.type) {
        case Number: object[in.name] = in.number; break;
        case Real: object[in.name] = in.number * 0.5; break;
        case Flag: object[in.name] = (in.number & 1) != 0; break;
        case Size: object[in.name] = static_cast<std::uint64_t>(in.number); break;
        case Text: object[in.name] = in.text; break;
        case Small: object[in.name] = static_cast<float>(in.number); break;
        default: object[in.name] = Json::binary({in.block.begin(), in.block.end()}); break;
        }
    }
    void Get(Input const& in, Sum& sum) {
        Json const& value = object.find(in.name).value();
        switch (in.type) {
        case Number: sum.Add(value.get<int>()); break;
        case Real: sum.Add(value.get<double>()); break;
        case Flag: sum.Add(value.get<bool>()); break;
        case Size: sum.Add(static_cast<double>(value.get<std::uint64_t>())); break;
        case Text: text = value.get_ref<std::string const&>(), sum.Add(static_cast<double>(text.size())); break;
        case Small: sum.Add(static_cast<double>(value.get<float>())); break;
        default: block = value.get_binary(), sum.Add(static_cast<char>(block.back())); break;
        }
    }
    using Bytes = std::vector<std::uint8_t>;
    void Store(Bytes& bytes) const { bytes = Json::to_msgpack(object); }
    void Load(Bytes const& bytes) { object = Json::from_msgpack(bytes); }

private:
    using Json = nlohmann::json;
    Json object = Json::object();
    std::string text;
    std::vector<std::uint8_t> block;
};

class Protobuf {
public:
    void Set(Input const& in) {
        peer::Value& value = (*store.mutable_values())[in.id];
        switch (in.type) {
        case Number: value.set_number(in.number); break;
        case Real: value.set_real(in.number * 0.5); break;
        case Flag: value.set_flag((in.number & 1) != 0); break;
        case Size: value.set_size(static_cast<std::uint64_t>(in.number)); break;
        case Text: value.set_text(in.text); break;
        case Small: value.set_small(static_cast<float>(in.number)); break;
        default: value.set_block(in.block); break;
        }
    }
    void Get(Input const& in, Sum& sum) {
        peer::Value const& value = store.values().find(in.id)->second;
        switch (in.type) {
        case Number: sum.Add(value.number()); break;
        case Real: sum.Add(value.real()); break;
        case Flag: sum.Add(value.flag()); break;
        case Size: sum.Add(static_cast<double>(value.size())); break;
        case Text: text = value.text(), sum.Add(static_cast<double>(text.size())); break;
        case Small: sum.Add(static_cast<double>(value.small())); break;
        default: text = value.block(), sum.Add(text.back()); break;
        }
    }
    using Bytes = std::string;
    void Store(Bytes& bytes) const { store.SerializeToString(&bytes); }
    void Load(Bytes const& bytes) { store.ParseFromString(bytes); }

private:
    peer::Store store;
    std::string text;
};

/// A peer that several threads may use, as they may ours.
template <class Peer>
class Locked {
public:
    Locked() = default;
    Locked(Locked const& other) : peer(other.peer) {}
    void Set(Input const& in) {
        std::lock_guard const hold(lock);
        peer.Set(in);
    }
    void Get(Input const& in, Sum& sum) {
        std::lock_guard const hold(lock);
        peer.Get(in, sum);
    }
    using Bytes = typename Peer::Bytes;
    void Store(Bytes& bytes) const {
        std::lock_guard const hold(lock);
        peer.Store(bytes);
    }
    void Load(Bytes const& bytes) {
        std::lock_guard const hold(lock);
        peer.Load(bytes);
    }

private:
    Peer peer;
    mutable std::recursive_mutex lock;
};

// ---- The work ----

template <class Peer>
Peer Filled(std::vector<Input> const& inputs) {
    Peer peer;
    for (Input const& input : inputs)
        peer.Set(input);
    return peer;
}

template <class Peer>
double SumOf(Peer& peer, std::vector<Input> const& inputs) {
    Sum sum;
    for (Input const& input : inputs)
        peer.Get(input, sum);
    return sum.total;
}

/// Runs a round again and again, and tells the allocations of the last one.
template <class Round>
void Time(benchmark::State& state, std::size_t items, Round const& round) {
    std::size_t before = 0;
    for (auto _ : state) {
        before = allocations;
        round();
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
    state.SetItemsProcessed(state.iterations() * static_cast<long>(items));
}

template <class Peer>
void Set(benchmark::State& state, std::size_t count) {
    std::vector<Input> const& inputs = Inputs(count);
    Time(state, count, [&] {
        Peer const peer = Filled<Peer>(inputs);
        benchmark::DoNotOptimize(&peer);
    });
}

template <class Peer>
void Get(benchmark::State& state, std::size_t count) {
    std::vector<Input> const& inputs = Inputs(count);
    Peer peer = Filled<Peer>(inputs);
    Time(state, count, [&] { benchmark::DoNotOptimize(SumOf(peer, inputs)); });
}

template <class Peer>
void Store(benchmark::State& state, std::size_t count) {
    Peer const peer = Filled<Peer>(Inputs(count));
    Time(state, count, [&] {
        typename Peer::Bytes bytes;
        peer.Store(bytes);
        benchmark::DoNotOptimize(&bytes);
    });
}

template <class Peer>
void Load(benchmark::State& state, std::size_t count) {
    typename Peer::Bytes bytes;
    Filled<Peer>(Inputs(count)).Store(bytes);
    Time(state, count, [&] {
        Peer peer;
        peer.Load(bytes);
        benchmark::DoNotOptimize(&peer);
    });
}

template <class Peer>
void RoundTrip(benchmark::State& state, std::size_t count) {
    Peer const peer = Filled<Peer>(Inputs(count));
    Time(state, count, [&] {
        typename Peer::Bytes bytes;
        peer.Store(bytes);
        Peer back;
        back.Load(bytes);
        benchmark::DoNotOptimize(&back);
    });
}

/// Ends the program unless a store that went out and came in again gives the values that went into it.
template <class Peer>
void Check(char const* name, std::size_t count) {
    std::vector<Input> const& inputs = Inputs(count);
    double expected = 0;
    for (Input const& in : inputs)
        expected += in.type == Real    ? in.number * 0.5
                    : in.type == Flag  ? in.number & 1
                    : in.type == Text  ? 12
                    : in.type == Block ? static_cast<signed char>(in.number)
                                       : in.number;
    Peer const peer = Filled<Peer>(inputs);
    typename Peer::Bytes bytes;
    peer.Store(bytes);
    Peer back;
    back.Load(bytes);
    double const sum = SumOf(back, inputs);
    std::size_t const before = allocations;
    SumOf(back, inputs);
    bool const allocated = std::is_same_v<Peer, Zel> && allocations != before;
    if (sum != expected || allocated) {
        std::fprintf(stderr, "custom_data: %s of %zu gives %f, should be %f%s\n", name, count, sum, expected,
                     allocated ? "; a get allocates" : "");
        std::exit(1);
    }
}

template <class Peer>
void Register(char const* name) {
    for (std::size_t const count : {50u, 5000u}) {
        Check<Peer>(name, count);
        auto const add = [&](char const* work, auto function) {
            std::string const title = std::string(work) + "/" + name + "/" + std::to_string(count);
            benchmark::RegisterBenchmark(title.c_str(), function, count);
        };
        add("Set", Set<Peer>);
        add("Get", Get<Peer>);
        add("Store", Store<Peer>);
        add("Load", Load<Peer>);
        add("RoundTrip", RoundTrip<Peer>);
    }
}

bool const registered = [] {
    Register<Zel>("zel");
    Register<Qt>("QDataStream");
    Register<MessagePack>("MessagePack");
    Register<Protobuf>("Protobuf");
    Register<Locked<Protobuf>>("Protobuf+lock");
    return true;
}();

} // namespace
