// SPDX-License-Identifier: MIT
// CXArchive beside QDataStream and the binary archive of Boost.Serialization: ten million scalars, and a graph of a
// million objects in which a quarter of the references lead to an object met before. All go through memory, so that
// the streams are measured and not the disk. QDataStream knows no objects, so the peer's graph keeps the map of
// pointers that its user would write. A bulk write goes to a file beside write(2) itself.
//
// All sides stand on one allocator, whose state a graph of a million blocks decides as much as the stream does. So its
// heap keeps its pages, and what was deleted is put together again before the clock starts.

#include "zeltools/persistence/xarchive.h"

#include "zeltools/persistence/custom_mem_file.h"
#include "zeltools/persistence/xfile.h"
#include "zeltools/platform/files.h"

#include <QByteArray>
#include <QDataStream>
#include <QHash>
#include <QIODevice>
#include <benchmark/benchmark.h>
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/iostreams/device/array.hpp>
#include <boost/iostreams/device/back_inserter.hpp>
#include <boost/iostreams/stream.hpp>
#include <boost/serialization/vector.hpp>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

/// The allocator gives pages back by a rule that changes with the blocks it has seen: one peer's large buffer would
/// spare that peer, and not the others, a page fault for every 4 KiB of graph. Fixed, it is the same for all.
int const allocatorIsFixed = mallopt(M_TRIM_THRESHOLD, 1 << 30);

/// Joins the small blocks that were freed, which the next large request would otherwise do on the clock.
void TidyHeap() {
    void* large = std::malloc(1 << 16);
    benchmark::DoNotOptimize(large);
    std::free(large);
}

// ---- What is stored ----

constexpr int ScalarCount = 10'000'000;
constexpr int ObjectCount = 1'000'000;
constexpr int FanOut = 1000; // a group and its leaves, so that the graph is wide and not deep

/// Two ints, a double and a byte in turn: what records are made of.
template <class Visit>
void ForEachScalar(Visit const& visit) {
    for (int i = 0; i < ScalarCount; i += 4) {
        visit(i);
        visit(~i);
        visit(i * 0.5);
        visit(static_cast<signed char>(i));
    }
}

struct Sums {
    long long whole = 0;
    double real = 0;
    void Add(int value) { whole += value; }
    void Add(signed char value) { whole += value; }
    void Add(double value) { real += value; }
    bool operator==(Sums const&) const = default;
};

Sums ExpectedSums() {
    Sums sums;
    ForEachScalar([&](auto value) { sums.Add(value); });
    return sums;
}

} // namespace

/// A node of the graph, for all three streams.
class CNode : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CNode)
public:
    void Serialize(CXArchive& archive) override;

    int id = 0;
    double weight = 0;
    std::vector<CNode*> parts;

    template <class Archive>
    void serialize(Archive& archive, unsigned) {
        archive& id& weight& parts;
    }
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CNode, CXObject, 1)

void CNode::Serialize(CXArchive& archive) {
    if (archive.IsStoring()) {
        archive << id << weight;
        archive.WriteCount(parts.size());
        for (CNode const* const part : parts)
            archive << part;
        return;
    }
    archive >> id >> weight;
    for (unsigned long long count = archive.ReadCount(); count > 0; --count)
        parts.push_back(static_cast<CNode*>(archive.ReadObject(&classCreatorCNode)));
}

namespace {

/// All nodes of a graph; the first is its root.
using Graph = std::vector<std::unique_ptr<CNode>>;

/// A root with a thousand groups of 999 leaves and a bit, made one group after the other. Every fourth part is followed
/// by its group's first again.
Graph MakeGraph() {
    Graph graph;
    auto const make = [&](CNode* parent) {
        int const id = static_cast<int>(graph.size());
        graph.push_back(std::make_unique<CNode>());
        CNode* const node = graph.back().get();
        node->id = id;
        node->weight = id * 0.25;
        if (parent) {
            parent->parts.push_back(node);
            if (id % 4 == 0 && parent->parts.size() > 1)
                parent->parts.push_back(parent->parts.front());
        }
        return node;
    };
    CNode* const root = make(nullptr);
    while (graph.size() < ObjectCount) {
        CNode* const group = make(root);
        for (int leaf = 1; leaf < FanOut && graph.size() < ObjectCount; ++leaf)
            make(group);
    }
    return graph;
}

Graph const& TheGraph() {
    static Graph const graph = MakeGraph();
    return graph;
}

/// Deletes what a load made and checks that it is the graph. The order of the nodes is that of the stream.
void CheckAndDelete(CNode* root) {
    CNode const& original = *TheGraph().front();
    Require(root->parts.size() == original.parts.size());
    long long ids = 0;
    long long count = 1;
    for (std::size_t i = 0; i < root->parts.size(); ++i) {
        CNode* const group = root->parts[i];
        CNode const* const expected = original.parts[i];
        Require(group->id == expected->id && group->weight == expected->weight);
        if (expected == original.parts.front() && i != 0) {
            Require(group == root->parts.front());
            continue;
        }
        ids += group->id;
        ++count;
        Require(group->parts.size() == expected->parts.size());
        for (std::size_t j = 0; j < group->parts.size(); ++j) {
            CNode* const leaf = group->parts[j];
            Require(leaf->id == expected->parts[j]->id);
            if (expected->parts[j] == expected->parts.front() && j != 0) {
                Require(leaf == group->parts.front());
                continue;
            }
            ids += leaf->id;
            ++count;
        }
    }
    Require(count == ObjectCount && ids == static_cast<long long>(ObjectCount) * (ObjectCount - 1) / 2);
    for (std::size_t i = 0; i < root->parts.size(); ++i) {
        CNode* const group = root->parts[i];
        if (i != 0 && group == root->parts.front())
            continue;
        for (std::size_t j = 0; j < group->parts.size(); ++j)
            if (j == 0 || group->parts[j] != group->parts.front())
                delete group->parts[j];
        if (i != 0)
            delete group;
    }
    delete root->parts.front();
    delete root;
}

// ---- The three streams: each stores into bytes and loads from them ----

struct Zel {
    std::unique_ptr<CCustomMemFile> file;

    void StoreScalars() {
        Begin();
        CXArchive archive(file.get(), CXArchive::Storing);
        ForEachScalar([&](auto value) {
            if constexpr (sizeof value == 1)
                archive << static_cast<char>(value);
            else
                archive << value;
        });
        archive.Close();
    }
    Sums LoadScalars() {
        Sums sums;
        file->SeekToBegin();
        CXArchive archive(file.get(), CXArchive::Loading);
        ForEachScalar([&](auto value) {
            if constexpr (sizeof value == 1) {
                char byte;
                archive >> byte;
                value = static_cast<signed char>(byte);
            } else {
                archive >> value;
            }
            sums.Add(value);
        });
        return sums;
    }
    void StoreGraph() {
        Begin();
        CXArchive archive(file.get(), CXArchive::Storing);
        archive << TheGraph().front().get();
        archive.Close();
    }
    CNode* LoadGraph() {
        CXRuntimeClass::DeclareRuntimeClass(&CNode::classCreatorCNode);
        file->SeekToBegin();
        CXArchive archive(file.get(), CXArchive::Loading);
        return static_cast<CNode*>(archive.ReadObject(&CNode::classCreatorCNode));
    }
    void Begin() { file = std::make_unique<CCustomMemFile>(); }
};

struct Qt {
    QByteArray bytes;

    void StoreScalars() {
        bytes.clear();
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        ForEachScalar([&](auto value) {
            if constexpr (sizeof value == 1)
                stream << static_cast<qint8>(value);
            else
                stream << value;
        });
    }
    Sums LoadScalars() {
        Sums sums;
        QDataStream stream(bytes);
        stream.setByteOrder(QDataStream::LittleEndian);
        ForEachScalar([&](auto value) {
            if constexpr (sizeof value == 1) {
                qint8 byte;
                stream >> byte;
                value = byte;
            } else {
                stream >> value;
            }
            sums.Add(value);
        });
        return sums;
    }
    void StoreGraph() {
        bytes.clear();
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        QHash<CNode const*, quint32> tags;
        Store(stream, tags, TheGraph().front().get());
    }
    CNode* LoadGraph() {
        QDataStream stream(bytes);
        std::vector<CNode*> loaded;
        return Load(stream, loaded);
    }
    static void Store(QDataStream& stream, QHash<CNode const*, quint32>& tags, CNode const* node) {
        if (auto const found = tags.constFind(node); found != tags.constEnd()) {
            stream << *found;
            return;
        }
        auto const tag = static_cast<quint32>(tags.size());
        tags.insert(node, tag);
        stream << tag << node->id << node->weight << static_cast<quint32>(node->parts.size());
        for (CNode const* const part : node->parts)
            Store(stream, tags, part);
    }
    static CNode* Load(QDataStream& stream, std::vector<CNode*>& loaded) {
        quint32 tag;
        stream >> tag;
        if (tag < loaded.size())
            return loaded[tag];
        auto* const node = new CNode;
        loaded.push_back(node);
        quint32 count;
        stream >> node->id >> node->weight >> count;
        for (; count > 0; --count)
            node->parts.push_back(Load(stream, loaded));
        return node;
    }
};

struct Boost {
    std::vector<char> bytes;

    template <class Store>
    void StoreBy(Store const& store) {
        bytes.clear();
        boost::iostreams::stream<boost::iostreams::back_insert_device<std::vector<char>>> stream(bytes);
        boost::archive::binary_oarchive archive(stream);
        store(archive);
    }
    template <class Load>
    void LoadBy(Load const& load) {
        boost::iostreams::stream<boost::iostreams::array_source> stream(bytes.data(), bytes.size());
        boost::archive::binary_iarchive archive(stream);
        load(archive);
    }
    void StoreScalars() {
        StoreBy([](auto& archive) { ForEachScalar([&](auto value) { archive << value; }); });
    }
    Sums LoadScalars() {
        Sums sums;
        LoadBy([&](auto& archive) {
            ForEachScalar([&](auto value) {
                archive >> value;
                sums.Add(value);
            });
        });
        return sums;
    }
    void StoreGraph() {
        CNode const* const root = TheGraph().front().get();
        StoreBy([&](auto& archive) { archive << root; });
    }
    CNode* LoadGraph() {
        CNode* root = nullptr;
        LoadBy([&](auto& archive) { archive >> root; });
        return root;
    }
};

// ---- The rows ----

template <class Stream>
void StoreScalars(benchmark::State& state) {
    Stream stream;
    stream.StoreScalars();
    Require(stream.LoadScalars() == ExpectedSums());
    for (auto _ : state)
        stream.StoreScalars();
    state.SetItemsProcessed(state.iterations() * ScalarCount);
}

template <class Stream>
void LoadScalars(benchmark::State& state) {
    Stream stream;
    stream.StoreScalars();
    for (auto _ : state)
        benchmark::DoNotOptimize(stream.LoadScalars());
    state.SetItemsProcessed(state.iterations() * ScalarCount);
}

template <class Stream>
void StoreGraph(benchmark::State& state) {
    Stream stream;
    stream.StoreGraph();
    CheckAndDelete(stream.LoadGraph());
    for (auto _ : state)
        stream.StoreGraph();
    state.SetItemsProcessed(state.iterations() * ObjectCount);
}

template <class Stream>
void LoadGraph(benchmark::State& state) {
    Stream stream;
    stream.StoreGraph();
    for (auto _ : state) {
        CNode* const root = stream.LoadGraph();
        state.PauseTiming();
        CheckAndDelete(root);
        TidyHeap();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * ObjectCount);
}

BENCHMARK(StoreScalars<Zel>)->Name("StoreScalars/zel");
BENCHMARK(StoreScalars<Qt>)->Name("StoreScalars/QDataStream");
BENCHMARK(StoreScalars<Boost>)->Name("StoreScalars/Boost.Serialization");
BENCHMARK(LoadScalars<Zel>)->Name("LoadScalars/zel");
BENCHMARK(LoadScalars<Qt>)->Name("LoadScalars/QDataStream");
BENCHMARK(LoadScalars<Boost>)->Name("LoadScalars/Boost.Serialization");
BENCHMARK(StoreGraph<Zel>)->Name("StoreGraph/zel");
BENCHMARK(StoreGraph<Qt>)->Name("StoreGraph/QDataStream");
BENCHMARK(StoreGraph<Boost>)->Name("StoreGraph/Boost.Serialization");
BENCHMARK(LoadGraph<Zel>)->Name("LoadGraph/zel");
BENCHMARK(LoadGraph<Qt>)->Name("LoadGraph/QDataStream");
BENCHMARK(LoadGraph<Boost>)->Name("LoadGraph/Boost.Serialization");

// ---- Bulk: blocks of a mebibyte to a file in memory ----

constexpr std::size_t BlockBytes = 1 << 20;
constexpr int BlockCount = 64;

std::string const& TheBlock() {
    static std::string const block(BlockBytes, 'x');
    return block;
}

void WriteWithArchive(int descriptor) {
    CXFile file(platform::HandleFromFileDescriptor(descriptor), true);
    CXArchive archive(&file, CXArchive::Storing);
    for (int i = 0; i < BlockCount; ++i)
        archive.Write(TheBlock().data(), BlockBytes);
    archive.Close();
}

void WriteWithCall(int descriptor) {
    for (int i = 0; i < BlockCount; ++i)
        Require(write(descriptor, TheBlock().data(), BlockBytes) == static_cast<ssize_t>(BlockBytes));
}

template <void (*WriteBlocks)(int)>
void BulkWrite(benchmark::State& state) {
    int const descriptor = memfd_create("xarchive_benchmark", 0); // a disk's times vary by more than the two differ
    Require(descriptor >= 0);
    for (auto _ : state) {
        Require(lseek(descriptor, 0, SEEK_SET) == 0);
        WriteBlocks(descriptor);
    }
    Require(lseek(descriptor, 0, SEEK_END) == static_cast<off_t>(BlockBytes) * BlockCount);
    close(descriptor);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(BlockBytes) * BlockCount);
}

BENCHMARK(BulkWrite<WriteWithArchive>)->Name("BulkWrite/zel");
BENCHMARK(BulkWrite<WriteWithCall>)->Name("BulkWrite/write(2)");

} // namespace
