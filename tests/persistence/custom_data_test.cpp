// SPDX-License-Identifier: MIT
#include "zeltools/persistence/custom_data.h"

#include "tests/support/printers.h"
#include "tests/support/thrown.h"
#include "tests/support/time_zone.h"
#include "zeltools/persistence/custom_data_class.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace {

/// Reaches what only subclasses see, and tells where a value lies.
struct Store : CCustomData {
    using CCustomData::GetCustom;
    using CCustomData::ReplaceCustom;
    using CCustomData::SetCustom;

    Store() = default;
    explicit Store(std::string const& chunks) { SetData(chunks.data(), static_cast<unsigned int>(chunks.size())); }

    std::vector<unsigned int> Ids() const {
        std::vector<unsigned int> ids;
        for (unsigned int index = 0, kind = 0, id; (id = GetIDByIndex(index, kind)) != 0xFFFFFFFF; ++index)
            ids.push_back(id);
        return ids;
    }
    int Int(unsigned int id, int missing = -1) const {
        int value = 0;
        GetInt(id, value, missing);
        return value;
    }
    std::string Binary(unsigned int id) const {
        unsigned int byteCount = 0;
        char const* const bytes = static_cast<char const*>(GetCustomPtr(id, byteCount));
        return std::string(bytes, byteCount);
    }
    unsigned int Bytes() const {
        unsigned int byteCount = 0;
        GetData(byteCount);
        return byteCount;
    }
};

using Ids = std::vector<unsigned int>;

/// A chunk as it would come from outside: what it claims and what it holds.
std::string Chunk(unsigned int id, unsigned int claimed, unsigned int kind, std::string const& data) {
    CustomPrivateData const header{id, claimed, kind};
    return std::string(reinterpret_cast<char const*>(&header), sizeof(header)) + data;
}

TEST(CustomData, KeepsThePlaceOfAValueOfTheSameSize) {
    Store data;
    data.SetInt(1, 10);
    data.SetInt(2, 20);
    unsigned long long const stamp = data.GetTimeStamp();
    while (CCustomData().GetTimeStamp() == stamp) {
    }
    data.SetFloat(1, 1.0f);
    EXPECT_EQ(data.GetTimeStamp(), stamp);
    EXPECT_EQ(data.GetDataKindOf(1), CustomDataFloat);
    EXPECT_TRUE(data.ReplaceCustom(1, nullptr, 4, CustomDataInt));
    EXPECT_EQ(data.Int(1), 0x3F800000); // the bytes of 1.0f

    data.SetDouble(1, 1);
    EXPECT_NE(data.GetTimeStamp(), stamp);
    EXPECT_EQ(data.Ids(), (Ids{2, 1}));
    EXPECT_EQ(data.Int(2), 20);
    EXPECT_FALSE(data.ReplaceCustom(1, "abc", 3, CustomDataBinary));
    data.SetBinary(1, "", 0);
    EXPECT_EQ(data.Ids(), Ids{2});
}

TEST(CustomData, GetterAsksForSizeAndKind) {
    Store data;
    data.SetUInt(1, 5);
    EXPECT_EQ(data.Int(1), -1);
    EXPECT_EQ(data.GetCustom(1, nullptr, 0, CustomDataUInt), 0u);
    unsigned int value = 0;
    EXPECT_EQ(data.GetCustom(1, &value, 4, CustomDataBlank), CustomDataUInt);
    bool flag = false;
    EXPECT_FALSE(data.GetBool(1, flag, true));
    EXPECT_TRUE(flag);
    data.SetBool(2, 256);
    EXPECT_TRUE(data.GetBool(2, flag, false));
    EXPECT_TRUE(flag);
}

TEST(CustomData, ChangedIdIsLostUntilTheIndexIsBuiltAnew) {
    Store data;
    data.SetInt(5, 50);
    data.SetInt(1, 10);
    data.SetInt(2, 20);
    EXPECT_FALSE(data.ChangeID(9, 2)); // the new id goes all the same
    EXPECT_TRUE(data.ChangeID(1, 2));
    EXPECT_TRUE(data.HasData(1));
    EXPECT_FALSE(data.HasData(2));
    EXPECT_EQ(data.Int(1), -1);
    EXPECT_EQ(data.Int(2), -1);
    EXPECT_EQ(data.GetDataSize(1) + data.GetDataKindOf(1), 0u);
    Store rebuilt;
    unsigned int size = 0;
    void const* const chunks = data.GetData(size);
    rebuilt.SetData(chunks, size);
    EXPECT_EQ(rebuilt.Int(2), 10);
    // Once the chunk moves, the old id's offset means nothing any more: it may lie behind the end.
    EXPECT_TRUE(data.RemoveCustom(5));
    data.FreeExtra();
    EXPECT_TRUE(data.HasData(1));
    EXPECT_EQ(data.GetDataSize(1), 0u);
    EXPECT_EQ(data.Int(2), 10);
    data.SetInt(1, 11);
    EXPECT_EQ(data.Int(1), 11);
    EXPECT_EQ(data.Int(2), 10);
}

TEST(CustomData, ChecksumTakesSignedBytesFromTheLastToTheFirst) {
    CCustomData data;
    data.SetBinary(1, "\x80", 1);
    data.SetBinary(2, "ab", 2);
    EXPECT_EQ(data.GetChecksum(1), (0x811C9DC5u ^ 0xFFFFFF80u) * 16777619u);
    EXPECT_EQ(data.GetChecksum(2), ((0x811C9DC5u ^ 'b') * 16777619u ^ 'a') * 16777619u);
    EXPECT_EQ(data.GetChecksum(3), 0x811C9DC5u);
}

TEST(CustomData, ArraysCheckCountAndSize) {
    CCustomData data;
    unsigned int count = 9;
    EXPECT_TRUE(data.SetArray(1, nullptr, 3, 2));
    EXPECT_EQ(std::string(static_cast<char const*>(data.GetArray(1, count, 2)), 6), std::string(6, '\0'));
    EXPECT_FALSE(data.SetArray(1, nullptr, 0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_TRUE(data.HasData(1));
    EXPECT_FALSE(data.SetArray(1, "", 0, 2));
    EXPECT_FALSE(data.HasData(1));
    data.SetBinary(2, "\0\0\0\0abcd", 8); // a count of 0
    EXPECT_EQ(data.GetArray(2, count, 4), nullptr);
    EXPECT_EQ(count, 0u);
    data.SetBinary(3, "abc", 3);
    EXPECT_EQ(data.GetArray(3, count, 0), nullptr);
}

TEST(CustomData, StoresItsOwnBytes) {
    Store data;
    data.SetBinary(1, "abcd", 4);
    data.SetBinary(2, "efgh", 4);
    data.FreeExtra(); // so that any growth moves the buffer
    unsigned int size = 0;
    data.SetBinary(3, data.GetCustomPtr(2, size), 4);
    data.SetBinary(1, data.GetCustomPtr(2, size), 3);
    data.SetCustomData(4, data);
    EXPECT_EQ(data.Binary(3), "efgh");
    EXPECT_EQ(data.Binary(1), "efg");
    Store inner;
    EXPECT_TRUE(data.GetCustomData(4, inner));
    EXPECT_EQ(inner.Ids(), (Ids{2, 3, 1}));
    data.SetData(data.GetCustomPtr(4, size), data.GetDataSize(4));
    EXPECT_TRUE(data.IsEqual(inner));
    EXPECT_FALSE(data.GetCustomData(2, data));
    EXPECT_FALSE(data.HasData());
    unsigned long long streamSize = 0;
    void* const stream = inner.SerializeToData(streamSize);
    data.SetBinary(1, stream, static_cast<unsigned int>(streamSize));
    CCustomData::Free(stream);
    EXPECT_TRUE(data.SerializeFromData(data.GetCustomPtr(1, size), streamSize));
    EXPECT_TRUE(data.IsEqual(inner));
}

TEST(CustomData, UtcTimeKeepsToItsBounds) {
    TimeZone const zone(TimeZone::Utc);
    CCustomData data;
    data.SetUTCTime(1, -43201);
    EXPECT_FALSE(data.HasData());
    CXTime time = 5;
    data.SetUTCTime(1, -1); // stored, but before 1970 when read back
    EXPECT_EQ(support::Thrown([&] { data.GetUTCTime(1, time); }), "argument");
    EXPECT_EQ(time.GetTime(), 5);
    EXPECT_FALSE(data.GetUTCTime(2, time, 7));
    EXPECT_EQ(time.GetTime(), 7);
}

TEST(CustomData, CopiesByFlags) {
    Store source;
    source.SetInt(1, 1);
    source.SetInt(2, 2);
    auto const copied = [&](unsigned int flags) {
        Store target;
        target.SetInt(2, 20);
        target.SetInt(3, 30);
        target.Copy(&source, flags);
        return std::vector<int>{target.Int(1), target.Int(2), target.Int(3)};
    };
    EXPECT_EQ(copied(0), (std::vector<int>{-1, 20, 30}));
    EXPECT_EQ(copied(1), (std::vector<int>{1, 2, -1}));
    EXPECT_EQ(copied(2), (std::vector<int>{1, 2, 30}));
    EXPECT_EQ(copied(3), (std::vector<int>{1, 20, 30}));

    Store target;
    EXPECT_EQ(target.CopyID(&source, 2, 7, 1, 0), 2u);
    EXPECT_EQ(target.Ids(), (Ids{2, 1}));
    EXPECT_TRUE(target.IsEqual(source)); // whatever the order
    target.SetUInt(1, 1);
    EXPECT_FALSE(target.IsEqual(source));
    EXPECT_EQ(Store().Copy(), nullptr);
    std::unique_ptr<CCustomData> const copy(target.Copy());
    EXPECT_TRUE(copy->IsEqual(target));
    EXPECT_EQ(copy->GetTimeStamp(), target.GetTimeStamp());

    target.AddToCustomData(4, source, 1);
    source.RemoveCustom(1);
    target.AddToCustomData(4, source, 1); // replaces: nothing is merged
    EXPECT_EQ(target.GetDataSize(4), 16u);
}

TEST(CustomData, BlankValuesTakeTheKindThatIsThere) {
    std::string const legacy("TSUC\x20\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0A\0\0\0\2\0\0\0\1\0\0\0\0\0\0\0B\0\0\0", 40);
    Store source;
    ASSERT_TRUE(source.SerializeFromData(legacy.data(), legacy.size()));
    Store target;
    target.SetChar(1, 'x');
    target.Copy(&source, CCustomData::CopyKeep);
    char value = 0;
    EXPECT_TRUE(target.GetChar(1, value));
    EXPECT_EQ(value, 'A');
    EXPECT_FALSE(target.HasData(2)); // of no kind, and read by another rule there
}

TEST(CustomData, NestedObjectIsResetWhereThereIsNone) {
    struct Settings : CCustomDataClass {
        int value = 1;
        void ResetCustomData() override { value = 99; }
        void WriteCustomData(CCustomData& data) const override {
            if (value != 0)
                data.SetInt(1, value);
        }
        bool ReadCustomData(CCustomData& data) override { return data.GetInt(1, value) && value < 50; }
    } settings;
    CCustomData data;
    EXPECT_FALSE(data.GetCustomClass(1, settings));
    EXPECT_EQ(settings.value, 99);
    data.SetCustomClass(1, settings);
    EXPECT_FALSE(data.GetCustomClass(1, settings)); // the object's own answer
    settings.value = 0;
    data.SetCustomClass(1, settings);
    EXPECT_FALSE(data.HasData(1));
}

TEST(CustomData, BytesFromOutsideEndWithTheirLastWholeChunk) {
    std::string const good = Chunk(1, 4, CustomDataInt, std::string("\5\0\0\0", 4));
    struct {
        char const* name;
        std::string tail;
    } const rows[] = {
        {"nothing", ""},
        {"part of a header", std::string(11, 'x')},
        {"one byte short", Chunk(2, 3, CustomDataBinary, "ab")},
        {"size that wraps round to the header", Chunk(2, 0xFFFFFFF4, CustomDataBinary, "")},
        {"size that wraps round to the chunk before", Chunk(2, 0xFFFFFFE4, CustomDataBinary, "abcd")},
    };
    for (auto const& row : rows) {
        Store data(good + row.tail);
        EXPECT_EQ(data.Bytes(), good.size()) << row.name;
        data.SetInt(2, 6); // must not fall into the tail
        EXPECT_EQ(data.Ids(), (Ids{1, 2})) << row.name;
        EXPECT_EQ(Store(row.tail).HasData(), false) << row.name;
    }
    Store twice(good + Chunk(1, 4, CustomDataInt, std::string("\6\0\0\0", 4)));
    EXPECT_EQ(twice.Int(1), 6);
    EXPECT_EQ(twice.GetIDCount(), 1u);
    EXPECT_TRUE(twice.RemoveCustom(1));
    EXPECT_EQ(twice.Int(1), -1);
}

TEST(CustomData, GivesItsBufferAwayAndTakesOne) {
    Store data;
    data.SetInt(1, 1);
    unsigned int size = 0;
    void* const buffer = data.Detach(size);
    EXPECT_EQ(size, 16u);
    EXPECT_FALSE(data.HasData(1));
    EXPECT_EQ(data.Detach(size), nullptr);
    data.Attach(buffer, 16);
    EXPECT_EQ(data.Int(1), 1);
    EXPECT_TRUE(data.RemoveCustom(1));
    EXPECT_EQ(data.GetData(size), nullptr); // the only value took the buffer with it
    EXPECT_FALSE(data.RemoveCustom(1));
    data.Attach(nullptr, 5);
    EXPECT_FALSE(data.HasData());
}

TEST(CustomData, TextsEndWithTheirChunk) {
    /// The text with its end, behind '+' where it was found and '-' where the default stands for it.
    auto const text = [](CCustomData const& data, unsigned int id) {
        CXTString<char16_t> value;
        bool const isThere = data.GetString(id, value, u"default");
        return (isThere ? u"+" : u"-") + support::Whole(value);
    };
    CCustomData data;
    CXTString<char> narrow;
    data.SetString(1, u"");
    EXPECT_EQ(data.GetDataSize(1), 2u);
    EXPECT_EQ(text(data, 1), u"+");
    EXPECT_EQ(text(data, 2), u"-default");
    data.SetInt(2, 1);
    EXPECT_EQ(text(data, 2), u"+default"); // there, though no text
    data.SetString(1, u"\u20AC");
    EXPECT_TRUE(data.GetStringA(1, narrow));
    EXPECT_EQ(narrow, "\xE2\x82\xAC");

    Store torn(Chunk(1, 5, CustomDataWide, std::string("a\0b\0c", 5)) + Chunk(2, 2, CustomDataNarrow, "ab") +
               Chunk(3, 5, CustomDataWideList, std::string("a\0\0\0b", 5)) +
               Chunk(4, 3, CustomDataNarrowList, std::string("a\0b", 3)));
    EXPECT_EQ(text(torn, 1), u"+ab");
    EXPECT_EQ(text(torn, 2), u"+ab");
    CXArray<CXTString<char16_t>> list(false);
    for (unsigned int id : {3u, 4u})
        EXPECT_EQ(torn.GetStringList(id, list), 1u) << id;
    EXPECT_EQ(torn.GetStringArray(1, list), 0u); // one text is no list
    data.SetStringList(1, list);
    EXPECT_FALSE(data.HasData(1));
}

TEST(CustomData, RandomOperationsAgreeWithAMap) {
    std::mt19937 random(4711);
    Store data;
    std::map<unsigned int, std::string> expected;
    for (int step = 0; step < 20000; ++step) {
        auto const id = static_cast<unsigned int>(random() % 60);
        std::string const value(random() % 9, static_cast<char>(random()));
        if (random() % 3 != 0) {
            data.SetBinary(id, value.data(), static_cast<unsigned int>(value.size()));
            if (value.empty())
                expected.erase(id);
            else
                expected[id] = value;
        } else {
            EXPECT_EQ(data.RemoveCustom(id), expected.erase(id) == 1);
        }
    }
    EXPECT_EQ(data.GetIDCount(), expected.size());
    EXPECT_EQ(data.Ids().size(), expected.size());
    for (auto const& [id, value] : expected)
        EXPECT_EQ(data.Binary(id), value);
}

} // namespace
