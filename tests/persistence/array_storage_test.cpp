// SPDX-License-Identifier: MIT
#include "zeltools/foundation/array_storage.h"

#include "tests/persistence/archive_probe.h"
#include "tests/support/format_page.h"
#include "tests/support/printers.h"
#include "zeltools/foundation/xlc_string.h"
#include "zeltools/foundation/xtime.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace probe;
using namespace std::string_literals;

namespace {

struct NoDefault {
    explicit NoDefault(int) {}
    void Serialize(CXArchive&) {}
};

template <class T>
std::string StoredArray(CXArray<T>& array) {
    return Stored([&](CXArchive& archive) { array.Serialize(archive); });
}

/// Stores the values, expects the bytes, and loads them over old content.
template <class T>
void ExpectStored(std::vector<T> const& values, std::string const& hex) {
    CXArray<T> array;
    for (auto const& value : values)
        array.Add(value);
    std::string const bytes = StoredArray(array);
    EXPECT_EQ(support::HexText(bytes), hex);
    CXArray<T> loaded;
    loaded.InsertAt(0, T(), 3);
    EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { loaded.Serialize(archive); }), 0);
    EXPECT_EQ(std::vector<T>(loaded.begin(), loaded.end()), values);
    for (std::size_t cut = 0; cut < bytes.size(); ++cut)
        EXPECT_EQ(Load(bytes.substr(0, cut), [&](CXArchive& archive) { loaded.Serialize(archive); }),
                  CXArchiveException::endOfFile);
}

TEST(ArrayStorage, StoresCountAndElements) {
    ExpectStored<int>({}, "00 00");
    ExpectStored<int>({1, -1}, "02 00 01 00 00 00 FF FF FF FF");
    ExpectStored<bool>({true, false}, "02 00 01 00");
    ExpectStored<CXTime>({CXTime(2), CXTime(-1)}, "02 00 02 00 00 00 00 00 00 00 FF FF FF FF FF FF FF FF");
    ExpectStored<CXTString<char>>({"oak", ""}, "02 00 03 6F 61 6B 00");
    ExpectStored<CXTString<char16_t>>({u"x", u""}, "02 00 FF FE FF 01 78 00 FF FE FF 00");
    ExpectStored<CExLCString>({u"x"}, "01 00 FF FE FF 01 78 00");
}

TEST(ArrayStorage, WideStringsAreStoredBeyondTheirZeros) {
    CXArray<CXTString<char16_t>> array;
    array.Add(CXTString<char16_t>(u"a\0b", 3));
    std::string const bytes = StoredArray(array);
    EXPECT_EQ(support::HexText(bytes), "01 00 FF FE FF 03 61 00 00 00 62 00");
    Load(bytes, [&](CXArchive& archive) { array.Serialize(archive); });
    EXPECT_EQ(support::Whole(array[0]), u"a");
}

TEST(ArrayStorage, ElementsThatMeanNothingElsewhereAreRefused) {
    auto const store = [](auto array) { return CauseOf([&] { StoredArray(array); }); };
    EXPECT_EQ(store(CXArray<int*>()), InvalidArg);
    EXPECT_EQ(store(CXArray<std::string>()), InvalidArg);
    EXPECT_EQ(store(CXArray<NoDefault>()), InvalidArg);
    CXArray<bool> flags;
    EXPECT_EQ(Load("\1\0\2"s, [&](CXArchive& archive) { flags.Serialize(archive); }), 0);
    EXPECT_TRUE(flags[0]); // a byte that no bool has
}

TEST(ArrayStorage, ALyingCountIsNotBelieved) {
    for (unsigned long long const count : {100ull, 0x100000ull, 0x7FFFFFFFull, 0x80000000ull, ~0ull}) {
        std::string const bytes = Stored([&](CXArchive& archive) { archive.WriteCount(count); }) + "\1\0\0\0"s;
        int const cause = count < 0x80000000 ? int{CXArchiveException::endOfFile} : InvalidArg;
        CXArray<double> numbers;
        CXArray<CXTString<char16_t>> texts;
        EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { numbers.Serialize(archive); }), cause);
        EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { texts.Serialize(archive); }), cause);
        EXPECT_LE(texts.GetSize(), 0x10000);
    }
    CXArray<CXTString<char>> many; // more than are made at once
    many.InsertAt(0, "x", 100000);
    std::string const bytes = StoredArray(many);
    many.RemoveAll(true);
    EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { many.Serialize(archive); }), 0);
    EXPECT_TRUE(many.GetSize() == 100000 && many[99999] == "x");
}

} // namespace
