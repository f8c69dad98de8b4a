// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xarchive.h"

#include "tests/persistence/archive_probe.h"
#include "tests/persistence/file_kinds.h"
#include "tests/support/format_page.h"
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "zeltools/persistence/xfile.h"

#include <gtest/gtest.h>
#include <vector>

using namespace probe;
using support::HexText;

namespace {

// ---- The file below ----

/// The ways in which an archive can buffer.
struct Buffering {
    char const* name;
    bool isOnDisk;
    unsigned int size;
    bool isCallers;
};

class XArchiveBuffer : public testing::TestWithParam<Buffering> {
protected:
    XArchiveBuffer() : onDisk(true) {
        if (GetParam().isOnDisk)
            onDisk.Open(folder.Path("stream").c_str(), XFILE_OPEN_READWRITE | XFILE_OPEN_CREATE, nullptr);
    }
    CXFile& File() { return GetParam().isOnDisk ? onDisk : static_cast<CXFile&>(inMemory); }
    void* Buffer() { return GetParam().isCallers ? memory : nullptr; }

    TemporaryFolder folder;
    CXFile onDisk;
    CXMemFile inMemory;
    unsigned char memory[600] = {};
};

TEST_P(XArchiveBuffer, TakesScalarsAndBlocksOfAllSizes) {
    // Blocks below, at and above the buffer, with scalars between that put them off its borders.
    std::size_t const sizes[] = {1, 127, 128, 129, 599, 600, 601, 5000, 0, 4096, 70000};
    std::string const text(70000, 'x');
    CXArchive out(&File(), CXArchive::Storing, GetParam().size, Buffer());
    for (std::size_t const size : sizes) {
        out << static_cast<int>(size) << static_cast<char>(size) << 0.5 * static_cast<double>(size);
        out.Write(text.data(), size);
    }
    out.Close();
    EXPECT_EQ(out.GetFile(), nullptr);
    EXPECT_EQ(File().GetLength(), 81281u + 11 * 13); // the sum of the sizes and of the scalars

    File().SeekToBegin();
    CXArchive in(&File(), CXArchive::Loading, GetParam().size, Buffer());
    EXPECT_EQ(in.BytesLeft(), File().GetLength());
    for (std::size_t const size : sizes) {
        int length = 0;
        char low = 0;
        double half = 0;
        in >> length >> low >> half;
        ASSERT_TRUE(length == static_cast<int>(size) && low == static_cast<char>(size) && half * 2 == length) << size;
        std::string block(size, '-');
        EXPECT_EQ(in.Read(block.data(), size), size);
        EXPECT_EQ(block, text.substr(0, size));
    }
    EXPECT_EQ(in.BytesLeft(), 0u);
    char rest[3];
    EXPECT_EQ(in.Read(rest, 3), 0u);
    EXPECT_EQ(CauseOf([&] { in >> rest[0]; }), CXArchiveException::endOfFile);
}

TEST_P(XArchiveBuffer, FlushPutsTheFileBehindWhatWasConsumed) {
    CXArchive out(&File(), CXArchive::Storing, GetParam().size, Buffer());
    out << 1;
    out.Flush();
    EXPECT_EQ(File().GetPosition(), 4u);
    out << 2 << 3;
    out.Flush(true);
    out << 4; // a final flush is no end
    out.Close();
    EXPECT_EQ(CauseOf([&] { out << 1; }), InvalidArg); // but Close is
    File().SeekToBegin();
    CXArchive in(&File(), CXArchive::Loading, GetParam().size, Buffer());
    int value = 0;
    in >> value;
    in.Flush();
    EXPECT_EQ(File().GetPosition(), 4u);
    for (int const expected : {2, 3, 4}) {
        in >> value;
        EXPECT_EQ(value, expected);
    }
    in.Close();
    EXPECT_EQ(CauseOf([&] { in >> value; }), InvalidArg);
    EXPECT_EQ(CauseOf([&] { in.Read(&value, 4); }), InvalidArg);
}

TEST_P(XArchiveBuffer, AbortLosesAndTheDestructorFlushes) {
    CXArchive out(&File(), CXArchive::Storing, GetParam().size, Buffer());
    out << 1;
    out.Abort();
    out.Abort();
    out.Close();
    EXPECT_EQ(CauseOf([&] { out.Write("x", 1); }), InvalidArg);
    EXPECT_EQ(CauseOf([&] { out.Flush(); }), InvalidArg);
    { CXArchive(&File(), CXArchive::Storing | CXArchive::NoFlushOnDelete) << 1; }
    EXPECT_EQ(File().GetLength(), 0u);
    { CXArchive(&File(), CXArchive::Storing) << 1; }
    EXPECT_EQ(File().GetLength(), 4u);
}

INSTANTIATE_TEST_SUITE_P(Table, XArchiveBuffer,
                         testing::Values(Buffering{"Memory", false, 4096, false}, Buffering{"Disk", true, 4096, false},
                                         Buffering{"Smallest", true, 128, false}, Buffering{"Caller", true, 600, true},
                                         Buffering{"TooSmall", true, 127, true}),
                         [](auto const& row) { return row.param.name; });

TEST(XArchive, TellsWhatBufferFileAndDiskCannotTake) {
    struct Open : CXArchive {
        using CXArchive::CXArchive;
        using CXArchive::FillBuffer;
    };
    TemporaryFolder const folder;
    folder.Write("stream", std::string(1000, 'x'));
    CXFile file(folder.Path("stream").c_str(), XFILE_OPEN_READ);
    Open archive(&file, CXArchive::Loading, 128);
    char byte;
    archive.FillBuffer(128);
    EXPECT_EQ(CauseOf([&] { archive.FillBuffer(1); }), CXArchiveException::bufferTooSmall);
    archive >> byte;
    EXPECT_EQ(CauseOf([&] { archive.FillBuffer(~0ull - 3); }), CXArchiveException::bufferTooSmall);
    EXPECT_EQ(CauseOf([] { CXArchive(nullptr, CXArchive::Loading); }), InvalidArg);
    struct Stingy : CXMemFile {
        Stingy() : CXMemFile(16, false) {}
        bool GrowBuffer(unsigned long long) override { return false; }
    } stingy;
    CXArchive out(&stingy, CXArchive::Storing | CXArchive::NoFlushOnDelete);
    EXPECT_EQ(CauseOf([&] { out.Write("x", 1); }), InvalidArg);
    CXFile full(u"\\dev\\full", XFILE_OPEN_WRITE | XFILE_SHARE_DENY_NONE);
    CXArchive lost(&full, CXArchive::Storing);
    lost << 1;
    EXPECT_EQ(support::Thrown([&] { lost.Close(); }), "cause 13");
    EXPECT_NE(lost.GetFile(), nullptr); // so the destructor tries again, and is quiet
}

TEST(XArchive, EachDirectionRefusesTheOther) {
    CXMemFile file;
    CXArchive out(&file, CXArchive::Storing);
    CXArchive in(&file, CXArchive::Loading);
    int value = 0;
    auto const* const record = CXObject::GetThisRuntimeClassDescriptor();
    EXPECT_EQ(CauseOf([&] { in << value; }), CXArchiveException::archiveIsLoading);
    EXPECT_EQ(CauseOf([&] { in.Write("x", 1); }), CXArchiveException::archiveIsLoading);
    EXPECT_EQ(CauseOf([&] { in.WriteObject(nullptr); }), CXArchiveException::archiveIsLoading);
    EXPECT_EQ(CauseOf([&] { in.WriteClass(record); }), CXArchiveException::genericException);
    EXPECT_EQ(CauseOf([&] { in.WriteClass(nullptr); }), CXArchiveException::badClass);
    EXPECT_EQ(CauseOf([&] { out >> value; }), CXArchiveException::archiveIsStoring);
    EXPECT_EQ(CauseOf([&] { out.Read(&value, 4); }), CXArchiveException::archiveIsStoring);
    EXPECT_EQ(CauseOf([&] { out.ReadObject(nullptr); }), CXArchiveException::archiveIsStoring);
    EXPECT_EQ(CauseOf([&] { out.ReadClass(nullptr); }), CXArchiveException::genericException);
    in.Write(nullptr, 5);
    EXPECT_EQ(out.Read(nullptr, 5), 0u); // nothing is no misuse
}

// ---- Scalars, counts and lengths ----

TEST(XArchive, ScalarsLieAsTheyAre) {
    std::string const bytes = Stored([](CXArchive& archive) {
        archive << 'A' << true << static_cast<short>(-2) << u'\x20AC' << 1u << 1.0f << -1ll << 1.0;
    });
    EXPECT_EQ(HexText(bytes), "41 01 FE FF AC 20 01 00 00 00 00 00 80 3F FF FF FF FF FF FF FF FF "
                              "00 00 00 00 00 00 F0 3F");
    bool flag = false;
    EXPECT_EQ(Load("\1", [&](CXArchive& archive) { archive >> flag; }), 0);
    EXPECT_FALSE(flag); // the byte is passed over
}

TEST(XArchive, CountsAndLengthsEscapeAtTheirBorders) {
    struct {
        unsigned long long value;
        char const* count;
        std::string length;
    } const rows[] = {
        {0, "00 00", "00"},
        {254, "FE 00", "FE"},
        {255, "FF 00", "FF FF 00"},
        {65531, "FB FF", "FF FB FF"},
        {65532, "FC FF", "FF FF FF FC FF 00 00"}, // in 16 bits it would be a marker
        {0xFFFE, "FE FF", "FF FF FF FE FF 00 00"},
        {0xFFFF, "FF FF FF FF 00 00", "FF FF FF FF FF 00 00"},
        {0xFFFFFFFE, "FF FF FE FF FF FF", "FF FF FF FE FF FF FF"},
        {0xFFFFFFFF, "FF FF FF FF FF FF FF FF FF FF 00 00 00 00", "FF FF FF FF FF FF FF FF FF FF FF 00 00 00 00"},
        {~0ull, "FF FF FF FF FF FF FF FF FF FF FF FF FF FF", "FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF"},
    };
    std::string const markers[] = {"", "FF FD FF ", "FF FE FF ", "FF FC FF "}; // of the encodings from 1 on
    for (auto const& row : rows) {
        std::string bytes = Stored([&](CXArchive& archive) { archive.WriteCount(row.value); });
        EXPECT_EQ(HexText(bytes), row.count);
        unsigned long long read = 1;
        Load(bytes, [&](CXArchive& archive) { read = archive.ReadCount(); });
        EXPECT_EQ(read, row.value);
        for (int encoding = 1; encoding <= 4; ++encoding) {
            bytes = Stored([&](CXArchive& archive) {
                archive.WriteStringLength(row.value, static_cast<xStringEncoding>(encoding));
            });
            EXPECT_EQ(HexText(bytes), markers[encoding - 1] + row.length);
            xStringEncoding marked = xEncodingDefault;
            read = ~row.value;
            Load(bytes, [&](CXArchive& archive) { read = archive.ReadStringLength(marked); });
            EXPECT_TRUE(read == row.value && marked == encoding) << row.length;
        }
    }
}

// ---- Strings ----

TEST(XArchive, StringsAreReadInEitherWidth) {
    using namespace std::string_literals;
    struct {
        char const* name;
        std::string bytes;
        CXTString<char> narrow;
        CXTString<char16_t> wide;
    } const rows[] = {
        {"Narrow", "\3oak"s, "oak", u"oak"},
        {"Empty", "\0"s, "", u""},
        {"Utf8", "\xFF\xFD\xFF\2\xC3\xA9"s, "\xC3\xA9", u"\x00E9"},
        {"Wide", "\xFF\xFE\xFF\2\xE9\0x\0"s, "\xC3\xA9x", u"\x00E9x"},
        {"EmptyWide", "\xFF\xFE\xFF\0"s, "", u""},
        {"LastMarkerHolds", "\xFF\xFE\xFF\xFF\xFD\xFF\1x"s, "x", u"x"},
        {"LongFormOfASmallLength", "\xFF\xFF\xFF\1\0\0\0x"s, "x", u"x"},
        {"CutAtTheZero", "\5oa\0ks"s, "oa", u"oa"},
        {"CutAtTheWideZero", "\xFF\xFE\xFF\2\0\0x\0"s, "", u""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        std::string const followed = row.bytes + "!";
        auto const read = [&](auto expected) {
            auto text = expected;
            text = text + text + text; // what was there before leaves nothing
            char next = 0;
            EXPECT_EQ(Load(followed, [&](CXArchive& archive) { archive >> text >> next; }), 0);
            EXPECT_EQ(support::Whole(text), support::Whole(expected));
            EXPECT_EQ(next, '!');
            for (std::size_t cut = 0; cut < row.bytes.size(); ++cut) {
                EXPECT_EQ(Load(row.bytes.substr(0, cut), [&](CXArchive& archive) { archive >> text; }),
                          CXArchiveException::endOfFile);
            }
        };
        read(row.narrow);
        read(row.wide);
    }
    EXPECT_EQ(Stored([&](CXArchive& archive) { archive << rows[0].narrow << rows[3].wide; }),
              rows[0].bytes + rows[3].bytes);
}

TEST(XArchive, AWideStringLeavesTextOfUnknownEncodingInTheStream) {
    TemporaryFolder const folder;
    // In the smallest buffer the marker is at its start, across its end, and behind it.
    for (std::size_t const before : {0, 124, 127, 128, 300}) {
        folder.Write("stream", std::string(before, '.') + "\xFF\xFC\xFF\3oak");
        CXFile file(folder.Path("stream").c_str(), XFILE_OPEN_READ);
        CXArchive archive(&file, CXArchive::Loading, 128);
        char passed;
        for (std::size_t i = 0; i < before; ++i)
            archive >> passed;
        CXTString<char16_t> wide(u"as it was");
        CXTString<char> narrow;
        archive >> wide >> narrow;
        EXPECT_EQ(wide, u"as it was");
        EXPECT_EQ(narrow, "oak");
    }
}

TEST(XArchive, ALyingLengthIsNotBelieved) {
    struct Endless : CXMemFile { // does not know its length, as a pipe
        explicit Endless(std::string const& bytes)
            : CXMemFile(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), false, true) {}
        unsigned long long GetLength() const override { return 0; }
    };
    CXTString<char> narrow;
    CXTString<char16_t> wide;
    for (unsigned long long const length :
         {100ull, 0x20000ull, 0x7FFFFFFEull, 0x7FFFFFFFull, 0xFFFFFFFFull, 1ull << 63, ~0ull}) {
        for (xStringEncoding const encoding : {xEncodingAnsi, xEncodingUtf8, xEncodingUtf16}) {
            std::string bytes =
                Stored([&](CXArchive& archive) { archive.WriteStringLength(length, encoding); }) + "short";
            EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { archive >> narrow; }), CXArchiveException::endOfFile);
            EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { archive >> wide; }), CXArchiveException::endOfFile);
            Endless file(bytes);
            CXArchive archive(&file, CXArchive::Loading);
            // Of a file that cannot tell, a text is still never longer than a string.
            EXPECT_EQ(CauseOf([&] { archive >> wide; }),
                      length < 0x7FFFFFFF ? int{CXArchiveException::endOfFile} : Memory);
        }
    }
    std::string const text(300000, 'x'); // grows in pieces
    std::string const bytes = Stored([&](CXArchive& archive) { archive << CXTString<char>(text.c_str()); });
    Endless file(bytes);
    CXArchive archive(&file, CXArchive::Loading);
    archive >> narrow;
    EXPECT_EQ(support::Whole(narrow), text);
}

} // namespace
