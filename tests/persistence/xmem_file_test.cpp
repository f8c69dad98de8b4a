// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xmem_file.h"

#include "tests/persistence/file_kinds.h"
#include "zeltools/persistence/custom_data_mem_file.h"
#include "zeltools/persistence/custom_mem_file.h"

#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <random>

using support::Thrown;

namespace {

/// Shows what a memory file keeps to itself and to the archive.
template <class Base>
class Open : public Base {
public:
    using Base::Base;
    using Base::BufferCheck;
    using Base::BufferCommand;
    using Base::BufferCommit;
    using Base::BufferRead;
    using Base::BufferWrite;
    using Base::capacity;
    using Base::growStep;
    using Base::throwOnError;

    std::string Content() const { return {reinterpret_cast<char const*>(Base::GetBuffer()), Base::GetLength()}; }
};
using MemFile = Open<CXMemFile>;

TEST(CXMemFile, SeeksAgainstTheTable) {
    constexpr auto Unknown = static_cast<CXFile::SeekPosition>(3);
    struct {
        long long offset;
        CXFile::SeekPosition from;
        std::string thrown;
        unsigned long long quiet; // position of a file that does not throw
    } const rows[] = {{0, CXFile::begin, "nothing", 0},
                      {-2, CXFile::end, "nothing", 8},
                      {3, CXFile::current, "nothing", 7},
                      {1, CXFile::end, "cause 9", 4},
                      {5, Unknown, "nothing", 4},
                      {-1, CXFile::begin, "cause 9", 0},
                      {-5, CXFile::current, "cause 9", 0},
                      {LLONG_MIN, CXFile::end, "cause 9", 0},
                      {LLONG_MAX, CXFile::begin, "memory", 10},
                      {LLONG_MAX, CXFile::current, "memory", 10}};
    for (auto const& row : rows) {
        for (bool const throws : {true, false}) {
            MemFile file(16, throws);
            file.Write("0123456789", 10);
            file.Seek(4, CXFile::begin);
            EXPECT_EQ(Thrown([&] { file.Seek(row.offset, row.from); }), throws ? row.thrown : "nothing");
            EXPECT_EQ(file.GetPosition(), throws && row.thrown != "nothing" ? 4 : row.quiet) << row.offset;
        }
    }
}

TEST(CXMemFile, RefusesWhatCannotBe) {
    char const byte = 'x';
    for (bool const throws : {true, false}) {
        MemFile file(16, throws);
        file.Write("abc", 3);
        auto const expected = [&](char const* name) { return std::string(throws ? name : "nothing"); };
        EXPECT_EQ(Thrown([&] { file.Read(nullptr, 1); }), expected("argument"));
        EXPECT_EQ(Thrown([&] { file.Write(nullptr, 1); }), expected("argument"));
        EXPECT_EQ(Thrown([&] { file.Write(&byte, ULLONG_MAX); }), expected("argument")); // wraps
        EXPECT_EQ(Thrown([&] { file.Write(&byte, ULLONG_MAX - 3); }), expected("memory"));
        EXPECT_EQ(Thrown([&] { file.SetLength(0x100000000); }), expected("memory"));
        file.Write(nullptr, 0);
        EXPECT_EQ(file.Read(nullptr, 0), 0U);
        EXPECT_EQ(file.Content(), "abc");
    }
}

TEST(CXMemFile, BuffersComeAndGo) {
    unsigned char fixed[4] = {'a', 'b', 'c', 'd'};
    MemFile file(fixed, 4, false, false);
    EXPECT_EQ(file.Content(), "abcd");
    file.Write("X", 1);
    EXPECT_EQ(fixed[0], 'X'); // in place
    EXPECT_EQ(file.growStep, 0U);
    file.Close(); // leaves the array alone
    EXPECT_EQ(file.GetBuffer(), nullptr);
    EXPECT_TRUE(file.throwOnError);

    unsigned char* own = CXMemFile::Alloc(2);
    own[0] = own[1] = 'o';
    file.Attach(own, 2, true);
    file.Attach(own, 2, true); // the same one again
    file.SeekToEnd();
    file.Write(file.GetBuffer(), 2); // its own content, while the buffer moves
    EXPECT_EQ(file.capacity, 2050U);
    EXPECT_EQ(file.Content(), "oooo");
    unsigned char* const given = file.Detach();
    EXPECT_EQ(std::string(reinterpret_cast<char*>(given), 4), "oooo");
    CXMemFile::Free(given);
    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_EQ(file.Detach(), nullptr);
    file.Attach(CXMemFile::Alloc(8), 8, true);
    file.Attach(nullptr, 77, true); // what it owned is freed, and null has no bytes
    EXPECT_EQ(file.GetLength(), 0U);
    file.Abort();
}

TEST(CXMemFile, GivesItsBufferToAnArchive) {
    MemFile file(16);
    unsigned char* start = nullptr;
    unsigned char* max = nullptr;
    EXPECT_EQ(file.BufferCommand(MemFile::BufferCheck, 0, nullptr, nullptr), 1U);
    EXPECT_EQ(file.BufferCommand(MemFile::BufferWrite, 20, &start, &max), 20U);
    EXPECT_TRUE(max - start == 20 && file.GetPosition() == 0);
    std::copy_n("01234567890123456789", 20, start);
    file.BufferCommand(MemFile::BufferCommit, 12, nullptr, nullptr);
    EXPECT_EQ(file.Content(), "012345678901");

    struct {
        unsigned long long position, count, span;
    } const rows[] = {{0, 5, 5}, {5, 100, 7}, {4, UINT_MAX, 8}, {12, 1, 0}, {30, 4, 0}, {6, ULLONG_MAX, 6}};
    for (auto const& row : rows) {
        file.Seek(static_cast<long long>(row.position), CXFile::begin);
        EXPECT_EQ(file.BufferCommand(MemFile::BufferRead, row.count, &start, &max), row.span) << row.position;
        EXPECT_TRUE(start == file.GetBuffer() + row.position && max == start + row.span);
        EXPECT_EQ(file.GetPosition(), row.position + row.span);
    }
    EXPECT_EQ(file.BufferCommand(MemFile::BufferRead, 1, nullptr, &max), 0U);
    EXPECT_EQ(file.BufferCommand(MemFile::BufferWrite, 1, &start, nullptr), 0U);
    EXPECT_EQ(Thrown([&] { file.BufferCommand(MemFile::BufferWrite, ULLONG_MAX, &start, &max); }), "argument");
    file.throwOnError = false;
    EXPECT_EQ(file.BufferCommand(MemFile::BufferWrite, ULLONG_MAX, &start, &max), 0U);
    EXPECT_EQ(file.BufferCommand(4, 1, &start, &max), 0U);
}

TEST(CCustomMemFile, GrowsByAFactorOrBySteps) {
    struct {
        unsigned int flags, step;
        unsigned long long first;
        unsigned long long second;          // capacity after one byte beyond the first
    } const rows[] = {{1, 100, 1000, 2000}, // the first growth of 1000 is the step from then on
                      {1, 100, 50, 200},    // 160 would be less than the step
                      {0, 100, 1000, 1100},
                      {1, 0, 10, 4096}}; // 2048 stands for no step
    for (auto const& row : rows) {
        Open<CCustomMemFile> file(row.flags, row.step);
        file.SetLength(row.first);
        file.SetLength(file.capacity + 1);
        EXPECT_EQ(file.capacity, row.second) << row.step;
    }
    Open<CCustomMemFile> attached(CXMemFile::Alloc(10'000), 10'000, true, 1);
    attached.Seek(10'001, CXFile::begin);
    EXPECT_EQ(attached.capacity, 16'000U);
    EXPECT_TRUE(CCustomDataMemFile().IsKindOf(CXMemFile::GetThisRuntimeClassDescriptor()));
}

TEST(CXMemFile, BehavesLikeAVectorOfBytes) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Open<CCustomMemFile> file(round % 2, 16);
        std::string model;
        std::size_t position = 0;
        for (int step = 0; step < 100; ++step) {
            std::size_t const count = random() % 70;
            std::string data(count, static_cast<char>('a' + random() % 26));
            switch (random() % 4) {
            case 0:
                file.Write(data.data(), count);
                if (count > 0) {
                    model.resize(std::max(model.size(), position + count));
                    model.replace(position, count, data);
                    position += count;
                }
                break;
            case 1: position = file.Seek(static_cast<long long>(random() % 300), CXFile::begin); break;
            case 2:
                file.SetLength(count);
                model.resize(count);
                position = std::min(position, count);
                break;
            default: {
                std::string const there = position < model.size() ? model.substr(position, count) : "";
                data.resize(file.Read(data.data(), count));
                ASSERT_EQ(data, there);
                position += there.size();
            }
            }
            ASSERT_EQ(file.Content(), model);
            ASSERT_EQ(file.GetPosition(), position);
        }
    }
}

} // namespace
