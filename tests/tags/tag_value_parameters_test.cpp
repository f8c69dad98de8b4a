// SPDX-License-Identifier: MIT
#include "tests/support/printers.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/time_zone.h"
#include "tests/tags/table_tags.h"
#include "zeltools/files/paths/file_dates.h"
#include "zeltools/foundation/thread_language.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

/// The registry fills the table of parameters.
class TagValueParameters : public testing::Test {
protected:
    TableTags tags;
    CTagValue value;
};

TEST_F(TagValueParameters, FileName) {
    struct Row {
        char16_t const* fileName;
        char16_t const* parameters;
        char16_t const* text;
    };
    Row const rows[] = {
        {u"C:\\tmp\\a.b.jpg", u"(ext)", u".jpg"},
        {u"C:\\tmp\\a.b.jpg", u"(name)", u"a.b.jpg"},
        {u"C:\\tmp\\a.b.jpg", u"(path)", u"C:\\tmp\\"},
        {u"C:\\tmp\\a.b.jpg", u"(fullpath)", u"C:\\tmp\\a.b.jpg"},
        {u"C:/tmp/in/a.b.jpg", u"(shortname)", u"a.b"},
        {u"C:/tmp/in/a.b.jpg", u"(topdir)", u"in"},
        {u"C:/tmp/in/a.b.jpg", u"(root)", u"C:\\"},
        {u"C:\\tmp\\a.nosuch", u"(kind)", u"NOSUCH"},
        {u"C:\\tmp\\a.b.jpg", u"(path(topdir))", u"tmp"},          // one after the other
        {u"C:\\tmp\\a.b.jpg", u"(name(nosuch(ext)))", u"a.b.jpg"}, // an unknown one ends the chain
        {u"C:\\tmp\\a.b.jpg", u"(d(ext))", u".jpg"},               // one for dates says nothing to a file name
    };
    for (Row const& row : rows) {
        value.SetFilename(row.fileName);
        EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, row.parameters), 1);
        EXPECT_EQ(value.GetText(), row.text) << testing::PrintToString(CXTString<char16_t>(row.parameters));
    }
}

TEST_F(TagValueParameters, FileOnDisk) {
    SetThreadLanguage(1033);
    TimeZone const zone(TimeZone::Paris);
    TemporaryFolder const folder;
    folder.Write("a.bin", std::string(1536, 'x'));
    CXTString<char16_t> const path = folder.Path("a.bin").c_str();
    ASSERT_TRUE(fileSetLastWriteDate(path, CXTime(2003, 9, 2, 22, 5, 0, -1)));

    value.SetFilename(path);
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, u"(size)"), 1);
    EXPECT_EQ(value.GetText(), u"1.50 KB");
    value.SetFilename(path);
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, u"(lastwritedate(d+h))"), 1);
    EXPECT_EQ(value.GetText(), u"02/09/2003 22:05");
    value.SetFilename(path);
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_DATE, u"(createdate)"), 1);
    EXPECT_GT(value.GetDate().GetYear(), 2003); // when the test ran, which nothing can change

    for (char16_t const* const parameters : {u"(size)", u"(createdate)", u"(lastwritedate(d))"}) {
        value.SetFilename(path + u".missing");
        EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters), 0);
        EXPECT_TRUE(value.IsEmpty());
    }
}

TEST_F(TagValueParameters, Date) {
    SetThreadLanguage(1033);
    std::pair<char16_t const*, char16_t const*> const rows[] = {
        {u"(d)", u"02/09/2003"},
        {u"(h)", u" 22:05"}, // a blank always stands before the time
        {u"(d+t)", u"Tuesday 2 September 2003"},
        {u"(d+h+t)", u"Tuesday 2 September 2003 22:05"},
        {u"(name)", u""},
        {u"(nosuch)", u"02/09/2003 22:05"},
        {u"(d(h))", u"02/09/2003"}, // a text by then
    };
    for (auto const& [parameters, text] : rows) {
        value.SetDate(CXTime(2003, 9, 2, 22, 5, 0, -1));
        EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters), 1);
        EXPECT_EQ(value.GetText(), text);
    }
}

TEST_F(TagValueParameters, LongChainTakesLinearTime) {
    std::u16string chain;
    for (int i = 0; i < 200'000; ++i)
        chain += u"(fullpath";
    chain.append(200'000, u')');
    value.SetFilename(u"C:\\a.jpg");
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_TEXT, chain.c_str()), 1);
    EXPECT_EQ(value.GetText(), u"C:\\a.jpg");
}

/// A host's value that knows a parameter for numbers.
class DoublingValue : public CTagValue {
protected:
    _TAGDATA_INFO HandleParameters(CXTString<char16_t> const& name) override {
        if (name != u"twice")
            return CTagValue::HandleParameters(name);
        number *= 2;
        return static_cast<_TAGDATA_INFO>(TAGDATA_INT | TAGFLAG_READONLY);
    }
};

TEST_F(TagValueParameters, HostAddsItsOwn) {
    CTags::parametersMap.Insert(u"twice", GetTagParametersList());
    DoublingValue doubling;
    doubling.SetUInt(3);
    EXPECT_EQ(doubling.HandleParametersAndConvertToType(0, u"(twice(twice))"), 1);
    EXPECT_EQ(doubling.GetInt(), 12);
    EXPECT_EQ(doubling.GetDataType(), TAGDATA_INT);
    CTags::parametersMap.Remove(u"twice");
}

} // namespace
