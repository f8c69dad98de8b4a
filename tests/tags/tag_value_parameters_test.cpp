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
    CXTString<char16_t> Apply(char16_t const* parameters) {
        bool const isDone = value.HandleParametersAndConvertToType(TAGDATA_TEXT, parameters);
        return isDone ? value.GetText() : CXTString<char16_t>(value.IsEmpty() ? u"<none>" : u"<refused>");
    }

    TableTags tags;
    CTagValue value;
};

TEST_F(TagValueParameters, FileName) {
    std::pair<char16_t const*, char16_t const*> const rows[] = {
        {u"(ext)", u".jpg"},
        {u"(name)", u"a.b.jpg"},
        {u"(path)", u"C:\\tmp\\in\\"},
        {u"(fullpath)", u"C:\\tmp\\in\\a.b.jpg"},
        {u"(shortname)", u"a.b"},
        {u"(topdir)", u"in"},
        {u"(root)", u"C:\\"},
        {u"(path(topdir))", u"in"},           // one after the other
        {u"(name(nosuch(ext)))", u"a.b.jpg"}, // an unknown one ends the chain
        {u"(d(ext))", u".jpg"},               // one for dates says nothing to a file name
    };
    for (auto const& [parameters, text] : rows) {
        value.SetFilename(u"C:\\tmp\\in\\a.b.jpg");
        EXPECT_EQ(Apply(parameters), text) << testing::PrintToString(CXTString<char16_t>(parameters));
    }
    value.SetFilename(u"C:/tmp/in/a.b.jpg");
    EXPECT_EQ(Apply(u"(topdir)"), u"in"); // with slashes of either kind
    value.SetFilename(u"a.nosuch");
    EXPECT_EQ(Apply(u"(kind(ext))"), u"NOSUCH"); // a text by then, and no name
}

TEST_F(TagValueParameters, FileOnDisk) {
    SetThreadLanguage(1033);
    TimeZone const zone(TimeZone::Paris);
    TemporaryFolder const folder;
    folder.Write("a.bin", std::string(1536, 'x'));
    CXTString<char16_t> const path = folder.Path("a.bin").c_str();
    ASSERT_TRUE(fileSetLastWriteDate(path, CXTime(2003, 9, 2, 22, 5, 0, -1)));

    value.SetFilename(path);
    EXPECT_EQ(Apply(u"(size)"), u"1.50 KB");
    value.SetFilename(path);
    EXPECT_EQ(Apply(u"(lastwritedate(d+h))"), u"02/09/2003 22:05");
    value.SetFilename(path);
    EXPECT_EQ(value.HandleParametersAndConvertToType(TAGDATA_DATE, u"(createdate)"), 1);
    EXPECT_GT(value.GetDate().GetYear(), 2003); // when the test ran, which nothing can change

    for (char16_t const* const parameters : {u"(size)", u"(createdate)", u"(lastwritedate(d))"}) {
        value.SetFilename(path + u".missing");
        EXPECT_EQ(Apply(parameters), u"<none>");
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
        EXPECT_EQ(Apply(parameters), text);
    }
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
