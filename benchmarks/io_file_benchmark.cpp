// SPDX-License-Identifier: MIT
// Many small reads and writes of a parser, through memory, beside the C library's buffered stream.
#include "zeltools/files/io_file.h"

#include "zeltools/platform/native_path.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr unsigned int FileBytes = 4 << 20;

/// A file whose bytes are the low bytes of their places, deleted at the end of the program.
class SampleFile {
public:
    SampleFile() {
        char name[] = "/tmp/zel-bench-XXXXXX";
        close(mkstemp(name));
        native = name;
        std::vector<char> bytes(FileBytes);
        std::iota(bytes.begin(), bytes.end(), '\0');
        std::ofstream(native, std::ios::binary).write(bytes.data(), FileBytes);
        path = platform::FromNativePath(native).c_str();
    }
    ~SampleFile() { std::remove(native.c_str()); }

    std::string native;
    CXTString<char16_t> path;
};

SampleFile const& Sample() {
    static SampleFile const sample;
    return sample;
}

void Check(benchmark::State& state, bool holds) {
    if (!holds) {
        state.SkipWithError("wrong bytes");
    }
}

void ReadSmall_Zel(benchmark::State& state) {
    auto const size = static_cast<unsigned int>(state.range(0));
    IoFile file(true, IoFileMemory);
    Check(state, file.OpenFile(Sample().path, true, nullptr));
    unsigned char block[64];
    for (auto _ : state) {
        unsigned int sum = 0;
        file.FileSeek(0, CXFile::begin);
        for (unsigned int place = 0; place + size <= FileBytes; place += size) {
            file.FileRead(block, size);
            sum += block[0] == static_cast<unsigned char>(place);
        }
        Check(state, sum == FileBytes / size);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * FileBytes);
}

void ReadSmall_Fread(benchmark::State& state) {
    auto const size = static_cast<unsigned int>(state.range(0));
    std::FILE* const file = std::fopen(Sample().native.c_str(), "rb");
    unsigned char block[64];
    for (auto _ : state) {
        unsigned int sum = 0;
        std::rewind(file);
        for (unsigned int place = 0; place + size <= FileBytes; place += size) {
            if (std::fread(block, 1, size, file) == size) {
                sum += block[0] == static_cast<unsigned char>(place);
            }
        }
        Check(state, sum == FileBytes / size);
    }
    std::fclose(file);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * FileBytes);
}

void WriteSmall_Zel(benchmark::State& state) {
    IoFile file(true, IoFileMemory);
    for (auto _ : state) {
        file.OpenFile((Sample().path + u".zel"), false, nullptr);
        for (unsigned int i = 0; i < FileBytes / 4; ++i) {
            file.WriteUInt(i);
        }
        Check(state, file.FileGetLength() == FileBytes);
        file.CloseFile(false);
    }
    std::remove((Sample().native + ".zel").c_str());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * FileBytes);
}

void WriteSmall_Fwrite(benchmark::State& state) {
    std::string const name = Sample().native + ".std";
    for (auto _ : state) {
        std::FILE* const file = std::fopen(name.c_str(), "wb");
        for (unsigned int i = 0; i < FileBytes / 4; ++i) {
            std::fwrite(&i, 1, sizeof(i), file);
        }
        Check(state, std::ftell(file) == FileBytes);
        std::fclose(file);
    }
    std::remove(name.c_str());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * FileBytes);
}

BENCHMARK(ReadSmall_Zel)->Name("ReadSmall/zel")->Arg(1)->Arg(2)->Arg(4)->Arg(16)->Arg(37);
BENCHMARK(ReadSmall_Fread)->Name("ReadSmall/fread")->Arg(1)->Arg(2)->Arg(4)->Arg(16)->Arg(37);
BENCHMARK(WriteSmall_Zel)->Name("WriteSmall/zel/4");
BENCHMARK(WriteSmall_Fwrite)->Name("WriteSmall/fwrite/4");

} // namespace
