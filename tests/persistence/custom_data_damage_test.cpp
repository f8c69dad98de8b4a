// SPDX-License-Identifier: MIT
// Streams that are cut, lie or nest too deep.
#include "tests/support/format_page.h"
#include "tests/support/printers.h"
#include "tests/support/thrown.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xmem_file.h"

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

struct Store : CCustomData {
    using CCustomData::SetCustom;
};

/// What a load through an archive throws.
std::string LoadResult(CCustomData& data, std::string const& bytes) {
    CXMemFile file(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), false, true);
    CXArchive archive(&file, CXArchive::Loading);
    return support::Thrown([&] { data.Serialize(archive); });
}

std::string WithWord(std::string bytes, std::size_t offset, unsigned int word) {
    return bytes.replace(offset, sizeof(word), reinterpret_cast<char const*>(&word), sizeof(word));
}

/// Reads all there is, as a careless host would.
void Use(CCustomData& data) {
    data.DumpCustomData(true, 1);
    CCustomData other;
    other.Copy(&data, CCustomData::CopyKeep);
    for (unsigned int index = 0, kind = 0, id; (id = data.GetIDByIndex(index, kind)) != 0xFFFFFFFF; ++index) {
        CXTString<char16_t> text;
        CXTString<char> narrow;
        CXArray<CXTString<char16_t>> list(false);
        EXPECT_TRUE(data.HasData(id)) << id;
        data.GetString(id, text);
        data.GetStringA(id, narrow);
        data.GetStringArray(id, list);
        data.GetChecksum(id);
        data.GetCustomData(id, other);
    }
}

TEST(CustomDataDamage, CutAnywhereEveryGenerationIsRefused) {
    for (int example : {1, 2, 3, 4, 5, 6, 7}) {
        std::string const whole = support::HexExample("custom_data", example);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            CCustomData data;
            data.SetInt(1, 1);
            // A copy of its own, so that a read past its end is seen.
            std::unique_ptr<char[]> const cut(new char[length]);
            std::memcpy(cut.get(), whole.data(), length);
            EXPECT_FALSE(data.SerializeFromData(cut.get(), length)) << example << ' ' << length;
            EXPECT_FALSE(data.HasData());
            EXPECT_NE(LoadResult(data, whole.substr(0, length)), "nothing") << example << ' ' << length;
        }
        CCustomData data;
        EXPECT_EQ(LoadResult(data, whole), "nothing");
        Use(data);
    }
}

TEST(CustomDataDamage, LyingWordsAreRefusedOrIgnored) {
    std::string const one = support::HexExample("custom_data", 1);
    struct {
        char const* name;
        std::string bytes;
        char const* result;
    } const rows[] = {
        {"another magic", WithWord(one, 0, 0x43555336), "cause 1"},
        {"version 2", WithWord(one, 8, 2), "cause 1"},
        {"total below the header", WithWord(one, 4, 19), "cause 1"},
        {"total of 4 GiB", WithWord(one, 4, 0xFFFFFFFF), "cause 1"},
        {"no total", one.substr(0, 4), "archive 3"},
        {"legacy area of 4 GiB", WithWord(WithWord(one, 0, 0x43555355), 4, 0xFFFFFFFF), "cause 1"},
        {"total of the header alone", WithWord(one, 4, 20), "nothing"},
        {"4 G chunks", WithWord(one, 12, 0xFFFFFFFF), "nothing"},
        {"no chunks", WithWord(one, 12, 0), "nothing"},
        {"1 chunk where there are 20", WithWord(support::HexExample("custom_data", 2), 12, 1), "nothing"},
        {"4 GiB of data", WithWord(one, 16, 0xFFFFFFFF), "nothing"},
        {"a string format that nobody knows", WithWord(one, 20, 3), "nothing"},
    };
    for (auto const& row : rows) {
        CCustomData data;
        data.SetInt(777, 7);
        EXPECT_EQ(LoadResult(data, row.bytes), row.result) << row.name;
        EXPECT_FALSE(data.HasData(777)) << row.name;
        EXPECT_TRUE(row.result == std::string("nothing") || !data.HasData()) << row.name;
        Use(data);
    }
    CCustomData data;
    EXPECT_FALSE(data.SerializeFromData(nullptr, 0));
    EXPECT_EQ(support::Thrown([&] { data.SerializeFromData(nullptr, 1); }), "argument");
}

TEST(CustomDataDamage, GoodRecordsOfALegacyStreamAreKept) {
    std::string const whole = support::HexExample("custom_data", 5);
    std::size_t const second = 8 + 12 + 4 + 3; // magic and size; the first record with its filler
    CCustomData data;
    EXPECT_EQ(LoadResult(data, WithWord(whole, second + 4, 0xFFFFFFF0)), "nothing");
    EXPECT_EQ(data.GetIDCount(), 1u);
    int value = 0;
    EXPECT_TRUE(data.GetInt(1, value));
    EXPECT_EQ(value, 42);
    // A flag that promises a record behind the last one.
    std::size_t const third = second + 12 + 6 + 3;
    EXPECT_EQ(LoadResult(data, WithWord(whole, third + 8, 1)), "nothing");
    EXPECT_EQ(data.GetIDCount(), 3u);
    // A second record that replaces the only one so far, in another size.
    EXPECT_EQ(LoadResult(data, WithWord(WithWord(whole, second, 1), third, 1)), "nothing");
    CXTString<char16_t> text;
    EXPECT_EQ(data.GetIDCount(), 1u);
    EXPECT_TRUE(data.GetString(1, text, u"default"));
    EXPECT_NE(text, u"default"); // still a legacy store, whose blank values are texts
}

TEST(CustomDataDamage, LongInputTakesNoSquareOfItsLength) {
    constexpr unsigned int count = 200'000;
    auto const word = [](unsigned int number) { return WithWord(std::string(4, '\0'), 0, number); };
    // Every record of the second half replaces, in another size, the first value that there still is.
    std::string records;
    for (std::size_t size : {1, 2})
        for (unsigned int id = 0; id < count; ++id)
            records += word(id) + word(static_cast<unsigned int>(size)) + word(1) + std::string(size + 3, 'x');
    CCustomData data;
    EXPECT_EQ(
        LoadResult(data, word(CustomDataMagicLegacyWide) + word(static_cast<unsigned int>(records.size())) + records),
        "nothing");
    EXPECT_EQ(data.GetIDCount(), count);
    unsigned int byteCount = 0, kind = 0;
    data.GetData(byteCount);
    EXPECT_EQ(byteCount, count * 14);
    EXPECT_EQ(data.GetIDByIndex(count - 1, kind), count - 1);
    EXPECT_EQ(data.GetDataSize(0), 2u);
    Store texts;
    texts.SetCustom(1, std::string(5 * count, '\0').data(), 5 * count, CustomDataUtf8List);
    CXArray<CXTString<char16_t>> list(false);
    EXPECT_EQ(texts.GetStringList(1, list), 5 * count);
}

TEST(CustomDataDamage, DumpEndsWithItsLimits) {
    auto const nested = [](int levels) {
        CCustomData data;
        data.SetInt(FourCC("DEEP"), 7);
        for (int i = 0; i < levels; ++i) {
            CCustomData outer;
            outer.SetCustomData(FourCC("NEST"), data);
            data = outer;
        }
        return data;
    };
    EXPECT_GE(nested(CCustomData::MaxDumpDepth).DumpCustomData(false, 0).Find(u"DEEP"), 0);
    EXPECT_EQ(nested(CCustomData::MaxDumpDepth + 1).DumpCustomData(false, 0).Find(u"DEEP"), -1);

    CCustomData inner, wide;
    inner.SetBool(1, 1);
    for (unsigned int id = 0; id < 3u * CCustomData::MaxDumpIndent; ++id)
        wide.SetCustomData(id, inner);
    CXTString<char16_t> const text = wide.DumpCustomData(true, 0x7FFFFFF0);
    CXTString<char16_t> const widest(u'\t', CCustomData::MaxDumpIndent);
    EXPECT_GE(text.Find(widest), 0);
    EXPECT_EQ(text.Find(widest + u"\t"), -1);
}

TEST(CustomDataDamage, OldNestedStoresAreChecked) {
    auto const oldNested = [](std::string bytes) {
        Store outer;
        outer.SetCustom(1, bytes.data(), static_cast<unsigned int>(bytes.size()), CustomDataNestedOld);
        CCustomData inner;
        EXPECT_FALSE(outer.GetCustomData(1, inner));
        EXPECT_FALSE(inner.HasData());
        return outer.GetDataKindOf(1);
    };
    EXPECT_EQ(oldNested(std::string(19, '\0')), CustomDataNestedOld); // shorter than its header
    EXPECT_EQ(oldNested(WithWord(std::string(40, '\0'), 12, 1)), CustomDataNestedOld);
    EXPECT_EQ(oldNested(std::string(20, '\0')), 0u); // empty: removed
}

} // namespace
