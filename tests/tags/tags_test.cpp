// SPDX-License-Identifier: MIT
#include "zeltools/tags/tags.h"

#include "tests/support/printers.h"
#include "tests/support/repeated.h"
#include "tests/tags/table_tags.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/thread_language.h"
#include "zeltools/tags/tag_parameters_private.h"

#include <barrier>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace {

using Text = CXTString<char16_t>;

constexpr unsigned int Conditional = FourCC("TAGC");
constexpr unsigned int Picture = FourCC("PICT");

/// The names of all tags, sorted, each followed by a blank.
std::u16string Names(CTags const& tags) {
    std::set<std::u16string> names;
    Text name;
    CTagInfo info;
    for (unsigned int position = tags.GetFirstTag(); position != 0xFFFFFFFF;) {
        tags.GetNextTag(position, name, info);
        EXPECT_EQ(name, info.GetTagName());
        names.insert(static_cast<char16_t const*>(name));
    }
    std::u16string all;
    for (std::u16string const& each : names)
        all += each + u" ";
    return all;
}

int GiveFileName(CTagInfo const& info, CTagValue& value, _TAGDATA_INFO) {
    value.SetFilename(*static_cast<Text const*>(info.GetCallbackData()));
    return 1;
}

class Tags : public testing::Test {
protected:
    Tags() {
        SetThreadLanguage(0x409);
        tags.Insert(u"<Picture>", TAGDATA_FILENAME, Picture, 1, "Picture", &GiveFileName, &fileName);
        tags.InsertTag(u"<taken>", TAGDATA_DATE | unsigned{TAGFLAG_READONLY}, Picture, 2, 5343u, 5332, nullptr,
                       nullptr);
    }
    Text fileName = u"C:\\tmp\\example.jpg";
    TableTags tags;
};

TEST_F(Tags, InitTagsInsertsTheConditionalTagsOnce) {
    TableTags fresh; // calls InitTags
    EXPECT_EQ(Names(fresh), u"</tagifexist> <tagifexist> ");
    fresh.InitTags();
    EXPECT_EQ(Names(fresh), u"</tagifexist> <tagifexist> ");
    EXPECT_EQ(fresh.GetTagName(Conditional, FourCC("IFNE")), u"<tagifexist>");
    EXPECT_EQ(fresh.GetTagName(Conditional, FourCC("EINE")), u"</tagifexist>");
    EXPECT_EQ(fresh.GetTagFlags(Conditional, FourCC("EINE")), 0x01000000u);
    CTagInfo info;
    ASSERT_TRUE(fresh.GetTagInfo(u"<tagifexist>", info));
    EXPECT_EQ(info.GetTagFriendlyName(), u"Empty tag evaluation test");
    EXPECT_EQ(info.GetClassNameW(), u"Conditionals tags");
    EXPECT_EQ(info.GetTagDataType(), TAGDATA_NONE);
    // A tag that stands there already keeps the library's out.
    TableTags early;
    early.RemoveTagByClass(Conditional);
    EXPECT_FALSE(early.IsInit());
    early.Insert(u"<x>", TAGDATA_TEXT, 1, 1);
    early.InitTags();
    EXPECT_EQ(Names(early), u"<x> ");
}

TEST_F(Tags, InsertedTagsAreFoundByNameAndById) {
    unsigned int tagClass = 7;
    EXPECT_EQ(tags.GetTagID(u"<PICTURE(ext)>", tagClass), 1u);
    EXPECT_EQ(tagClass, Picture);
    EXPECT_EQ(tags.GetTagID(u"<nosuch>", tagClass), 0u);
    EXPECT_EQ(tagClass, Picture);
    EXPECT_EQ(tags.GetTagName(Picture, 1), u"<picture>");
    EXPECT_EQ(tags.GetTagName(Picture, 3), u"");
    EXPECT_EQ(tags.GetTagFriendlyName(Picture, 1), u"Picture");
    EXPECT_EQ(tags.GetTagFriendlyName(Picture, 2), u"Creation date");
    EXPECT_EQ(tags.GetTagFlags(Picture, 2), 0x01000008u);
    EXPECT_TRUE(tags.IsTagValid(u"< Picture (nosuch)>"));
    EXPECT_FALSE(tags.IsTagValid(u"< Picture >")) << "without parameters a blank is part of the name";

    CTagInfo info;
    EXPECT_FALSE(tags.GetTagInfo(u"<nosuch>", info));
    ASSERT_TRUE(tags.GetTagInfo(u"<picture( createdate( D+H ) )>", info));
    EXPECT_EQ(info.GetParameters(), u"(createdate(d+h))");
    EXPECT_EQ(info.GetTagName(), u"<picture>");
    EXPECT_EQ(info.GetClassNameW(), u"");
    EXPECT_EQ(info.GetCallbackData(), &fileName);
    ASSERT_TRUE(tags.GetTagInfo(u"<picture>", info));
    EXPECT_EQ(info.GetParameters(), u"") << "the registry's own entry has none";
    info.Init();
    EXPECT_EQ(info.GetTagName(), u"");
    EXPECT_EQ(info.GetTagID(), 1u);
}

TEST_F(Tags, ASecondInsertReplacesWhereItIsLookedUp) {
    tags.Insert(u"<photo>", TAGDATA_TEXT, Picture, 1, "Photo");
    EXPECT_EQ(tags.GetTagName(Picture, 1), u"<photo>");
    EXPECT_EQ(tags.GetTagDataType(u"<picture>"), TAGDATA_FILENAME);
    EXPECT_EQ(tags.GetTagDataType(u"<photo>"), TAGDATA_TEXT);
    // The name of one takes the id that both share.
    tags.RemoveTag(u"<picture>");
    EXPECT_EQ(tags.GetTagName(Picture, 1), u"");
    EXPECT_TRUE(tags.IsTagValid(u"<photo>"));
}

TEST_F(Tags, RemovesByTheVeryNameAndByClass) {
    for (char16_t const* other : {u"<Picture>", u"<picture(ext)>", u"picture", u""})
        tags.RemoveTag(other);
    EXPECT_TRUE(tags.IsTagValid(u"<picture>"));
    tags.RemoveTag(u"<picture>");
    EXPECT_FALSE(tags.IsTagValid(u"<picture>"));
    EXPECT_EQ(tags.GetTagName(Picture, 1), u"");

    for (unsigned int i = 0; i < 100; ++i)
        tags.Insert(Text(u"<many>") + static_cast<char16_t>(u'A' + i), TAGDATA_TEXT, Picture, 10 + i);
    tags.RemoveTagByClass(Picture);
    EXPECT_EQ(Names(tags), u"</tagifexist> <tagifexist> ");
    EXPECT_EQ(tags.GetTagName(Picture, 42), u"");
}

TEST_F(Tags, IdsHashAsTheyAlwaysDid) {
    auto const hash = [](unsigned int tagClass, unsigned int id) {
        return CHashMethods<CTagID>::Hash(CTagID{tagClass, id});
    };
    EXPECT_EQ(hash(0, 0), 0x4636B9C9u);
    EXPECT_EQ(hash(0, 1), 0x62BAF5A0u);
    EXPECT_EQ(hash(Conditional, FourCC("IFNE")), 0x2C3FF5A6u);
    EXPECT_EQ(hash(1, 0xFFFFFFFF), 0xDC8B039Bu);
}

TEST_F(Tags, TheLastParameterAnswersWhereItIsKnown) {
    struct Row {
        char16_t const* tag;
        unsigned int type;
        bool canCompare;
        char16_t const* friendlyName;
    };
    Row const rows[] = {
        {u"<picture>", 0x1001, true, u"Picture"},
        {u"<picture(size)>", 0x8002, true, u"File size"},
        {u"<picture(kind)>", 0x1, false, u"Kind of file"},
        {u"<PICTURE( CreateDate( D+T ) )>", 0x1, true, u"Date (format: Monday 2 September 2003)"},
        {u"<picture(createdate)>", 0x8, true, u"Creation date"},
        {u"<picture(ext(nosuch))>", 0x1001, true, u"Picture"},
        {u"<picture(nosuch(ext))>", 0x1001, true, u"Picture"},
        {u"<picture(ext(>", 0x1001, true, u"Picture"}, // no bracket closes a stage, so there is none
        {u"<taken>", 0x8, false, u"Creation date"},
        {u"<taken(h)>", 0x1, true, u"Time (format: 10:00)"},
        {u"<nosuch(size)>", 0, false, u""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(Text(row.tag)));
        EXPECT_EQ(tags.GetTagDataType(row.tag), row.type);
        EXPECT_EQ(tags.CanCompareTag(row.tag), row.canCompare);
        EXPECT_EQ(tags.GetTagFriendlyName(row.tag), row.friendlyName);
    }
}

TEST_F(Tags, ADeepChainIsReadInOnePass) {
    Text const tag((u"<picture(createdate" + Repeated(100'000, u"(d") + Repeated(100'001, u")") + u">").c_str());
    EXPECT_EQ(tags.GetTagDataType(tag), TAGDATA_TEXT);
    CTagInfo info;
    CTagValue value;
    tags.GetTagInfo(tag, info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 1);
}

TEST_F(Tags, ExtractParamPartsNameAndChain) {
    char16_t const* const rows[][3] = {
        {u"<NAME( ext )>", u"<name>", u"(ext)"},
        {u"<My Tag>", u"<my tag>", u""},
        {u"< a b (C ( D+H ) )>", u"<ab>", u"(c(d+h))"},
        {u"<a(ext)", u"<a>", u"(ext"}, // the last character goes whatever it is
        {u"(", u">", u""},
        {u"<\u00C9 (\u00C9)>", u"<\u00C9>", u"(\u00C9)"},
    };
    for (auto const& row : rows) {
        Text tag(row[0]), parameters(u"old");
        tags.ExtractParam(tag, parameters);
        EXPECT_EQ(tag, row[1]);
        EXPECT_EQ(parameters, row[2]);
    }
}

TEST_F(Tags, AStageIsANameAndTheRestOfTheChain) {
    struct Row {
        char16_t const* chain;
        int stage;
        bool known;
        char16_t const* inner;
        char16_t const* name;
    };
    Row const rows[] = {
        {u"(ext(d+h))", 0, true, u"ext(d+h)", u"ext"}, {u"(ext(d+h))", 1, true, u"d+h", u"d+h"},
        {u"(ext(d+h))", 2, false, u"-", u"-"},         {u"(ext", 0, false, u"-", u"-"},
        {u"(ext)(d)", 0, false, u"ext)(d", u"ext)"}, // the last closing bracket belongs to the first opening one
        {u"x(ext)y", 0, true, u"ext", u"ext"},         {u")(", 0, false, u"-", u"-"},
    };
    for (Row const& row : rows) {
        Text inner(u"-"), name(u"-");
        EXPECT_EQ(detail::ExtractParameterStage(row.chain, row.stage, inner, name), row.known);
        EXPECT_EQ(inner, row.inner);
        EXPECT_EQ(name, row.name);
    }
}

TEST_F(Tags, DataComesFromTheCallbackAndThroughTheParameters) {
    CTagInfo info;
    CTagValue value;
    tags.GetTagInfo(u"<picture(ext)>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 1);
    EXPECT_EQ(value.GetText(), u".jpg");
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_UINT), 1) << "although no number was read";
    tags.GetTagInfo(u"<taken>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 0);
    tags.Insert(u"<none>", TAGDATA_TEXT, Picture, 3, "", [](CTagInfo const&, CTagValue&, _TAGDATA_INFO) { return 0; });
    tags.GetTagInfo(u"<none>", info);
    EXPECT_EQ(tags.GetDataFromTag(info, value, TAGDATA_TEXT), 0);
}

TEST_F(Tags, ACopyHasTheTagsAndNoScans) {
    tags.StartScan(u"<picture>");
    TableTags copy(tags), assigned;
    assigned.StartScan(u"<taken>");
    assigned = tags;
    tags.RemoveTag(u"<picture>");
    Text text;
    CTagInfo info;
    for (TableTags* each : {&copy, &assigned}) {
        EXPECT_EQ(each->GetTagName(Picture, 1), u"<picture>");
        EXPECT_EQ(each->Scan(text, info), 0);
        EXPECT_EQ(text, u"");
    }
    assigned = *&assigned;
    EXPECT_TRUE(assigned.IsTagValid(u"<taken>"));
}

TEST_F(Tags, TheApplicationsRegistryIsTheOneThatWasSetLast) {
#ifdef NDEBUG
    EXPECT_FALSE(CTags::GetApplicationTags().IsInit());
#else
    EXPECT_DEATH(CTags::GetApplicationTags(), "no registry was set");
#endif
    TableTags other;
    CTags::SetApplicationTags(&other);
    {
        TableTags passing;
        CTags::SetApplicationTags(&tags);
        CTags::SetApplicationTags(nullptr);
    }
    EXPECT_EQ(&CTags::GetApplicationTags(), &tags);
}

// ---- Scans ---------------------------------------------------------------------------------------------------------

/// All that a scan gives: the text, with each tag as [name parameters].
std::u16string ScanAll(CTags& tags, Text const& source) {
    tags.StartScan(source);
    Text text;
    CTagInfo info;
    while (tags.Scan(text, info))
        text += Text(u"[") + info.GetTagName() + info.GetParameters() + u"]";
    EXPECT_EQ(info.GetTagName(), u"");
    EXPECT_EQ(info.GetTagID(), 0u);
    EXPECT_EQ(tags.Scan(text, info), 0) << "nothing more is given";
    return support::Whole(text);
}

TEST_F(Tags, ScanGivesTheTagsWithTheTextInFront) {
    char16_t const* const rows[][2] = {
        {u"", u""},
        {u"a < b <Picture> c", u"a < b [<picture>] c"},
        {u"<x><picture( Ext )><x>", u"<x>[<picture>(ext)]<x>"},
        {u"<<picture>>", u"<[<picture>]>"},
        {u"a<picture<taken>b", u"a<picture[<taken>]b"},
        {u"<picture", u"<picture"},
        {u"<picture><", u"[<picture>]<"},
        {u"<tagifexist>1</tagifexist><tagendifexist>", u"[<tagifexist>]1[</tagifexist>]<tagendifexist>"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Text(ScanAll(tags, row[0]).c_str()), row[1]);

    Text const zero(u"a\0<picture>\0b", 13);
    EXPECT_EQ(ScanAll(tags, zero), std::u16string(u"a\0[<picture>]\0b", 15));
    Text text(u"kept ");
    CTagInfo info;
    tags.StartScan(u"1<picture>2");
    tags.StartScan(u"3<taken>4");
    std::thread([&] { EXPECT_EQ(tags.Scan(text, info), 0) << "a thread has a scan of its own"; }).join();
    EXPECT_EQ(tags.Scan(text, info), 1);
    EXPECT_EQ(text, u"kept 3");
}

// ---- Threads -------------------------------------------------------------------------------------------------------

/// Calls the body with the number of its thread in sixteen that begin together.
template <class Body>
void InSixteenThreads(Body const& body) {
    constexpr int count = 16;
    std::barrier start(count);
    std::vector<std::jthread> threads;
    for (int n = 0; n < count; ++n)
        threads.emplace_back([&, n] {
            start.arrive_and_wait();
            body(n);
        });
}

// Without the fixture: the first registries of the process fill what all share.
TEST(TagsOfManyThreads, SixteenRegistriesBeginAtOnce) {
    InSixteenThreads([](int) {
        TableTags const own;
        EXPECT_EQ(own.GetTagDataType(u"<tagifexist(size)>"), TAGDATA_FILESIZE);
    });
}

TEST_F(Tags, SixteenThreadsReadOneRegistry) {
    class FileTags : public CTags {
        bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
            return GetDataFromTag(info, value, TAGDATA_TEXT) != 0;
        }
    } shared;
    shared.InitTags();
    for (char16_t const* name : {u"<file>", u"<name>"})
        shared.InsertTag(name, TAGDATA_FILENAME, Picture, 1, "", CTagInfo::NoClassName, &GiveFileName, &fileName);
    InSixteenThreads([&](int n) {
        std::u16string source, scanned, expanded;
        for (int i = 0; i < 200; ++i) {
            std::u16string const front(static_cast<std::size_t>(n) + 1, u'.');
            source += front + u"<file(ext)><name><x>";
            scanned += front + u"[<file>(ext)][<name>]<x>";
            expanded += front + u".jpgC:\\tmp\\example.jpg<x>";
        }
        for (int pass = 0; pass < 5; ++pass) {
            EXPECT_TRUE(ScanAll(shared, source.c_str()) == scanned);
            Text text(source.c_str());
            shared.ProcessText(CTags::CTagContext(), text);
            EXPECT_TRUE(text == expanded.c_str());
        }
    });
}

} // namespace
