// SPDX-License-Identifier: MIT
#include "tests/persistence/archive_probe.h"
#include "tests/support/format_page.h"
#include "zeltools/foundation/thread_exceptions.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

using namespace probe;
using namespace std::string_literals;
using support::HexText;

namespace {

/// Counts its objects, so that a test sees what a failed load left behind.
class CShape : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CShape)
public:
    explicit CShape(int v = 0) : value(v) { ++alive; }
    ~CShape() override { --alive; }
    void Serialize(CXArchive& archive) override {
        if (archive.IsStoring())
            archive << value;
        else
            archive >> value;
        schemaSeen = archive.GetObjectSchema();
    }
    int value;
    unsigned int schemaSeen = 0;
    inline static int alive = 0;
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CShape, CXObject, 2)

/// Owns its parts, each of them once; a part that is the group itself is not owned.
class CGroup : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CGroup)
public:
    ~CGroup() override {
        std::set<CXObject*> owned(parts.begin(), parts.end());
        owned.erase(this);
        for (CXObject* const part : owned)
            delete part;
    }
    void Serialize(CXArchive& archive) override {
        if (archive.IsStoring()) {
            archive.WriteCount(parts.size());
            for (CXObject* const part : parts)
                archive << part;
        } else {
            for (unsigned long long count = archive.ReadCount(); count > 0; --count)
                parts.push_back(archive.ReadObject(CShape::GetThisRuntimeClassDescriptor()));
            schemaSeen = archive.GetObjectSchema();
        }
    }
    std::vector<CXObject*> parts;
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CGroup, CShape, 1)

/// Reads objects of every schema; it was of schema 3 once.
class CVersions : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CVersions)
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CVersions, CShape, 4 | RuntimeClassVersionable)

/// Cannot be made by name.
class CAbstract : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CAbstract)
public:
    explicit CAbstract(char) {}
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CAbstract, CShape, 1)

class CNever : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CNever)
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CNever, CShape, 1 | RuntimeClassNotSerializable)

class XArchiveObjects : public testing::Test {
protected:
    XArchiveObjects() {
        for (CXRuntimeClass const* record :
             {&CShape::classCreatorCShape, &CGroup::classCreatorCGroup, &CVersions::classCreatorCVersions,
              &CAbstract::classCreatorCAbstract, &CNever::classCreatorCNever})
            CXRuntimeClass::DeclareRuntimeClass(record);
    }
    ~XArchiveObjects() override { EXPECT_EQ(CShape::alive, 0); }
};

/// A class record as it lies behind FFFF.
std::string Record(std::string const& name, char schema) {
    return "\xFF\xFF"s + schema + '\0' + static_cast<char>(name.size()) + '\0' + name;
}

/// Loads one object, expects `cause`, and gives it back when there is one.
std::unique_ptr<CXObject> LoadObject(std::string const& bytes, int cause = 0,
                                     CXRuntimeClass const* requested = nullptr) {
    CXObject* object = nullptr;
    EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { object = archive.ReadObject(requested); }), cause)
        << HexText(bytes);
    return std::unique_ptr<CXObject>(object);
}

std::string ExampleStream() {
    CGroup group;
    CShape* const first = new CShape(7);
    group.parts = {first, first, nullptr, &group, new CShape(8)};
    return Stored([&](CXArchive& archive) {
        archive << 2026;
        archive.WriteCount(70000);
        archive << CXTString<char>("oak") << CXTString<char16_t>(u"eau") << &group;
    });
}

/// Loads the example's parts, and gives the group.
CXObject* LoadExample(CXArchive& archive) {
    int number = 0;
    CXTString<char> narrow;
    CXTString<char16_t> wide;
    archive >> number;
    EXPECT_EQ(archive.ReadCount(), 70000u);
    archive >> narrow >> wide;
    CXObject* group = nullptr;
    archive >> group;
    EXPECT_EQ(archive.GetObjectSchema(), 1u); // the group's again, after those of its parts
    EXPECT_TRUE(number == 2026 && narrow == "oak" && wide == u"eau");
    return group;
}

TEST_F(XArchiveObjects, TheExampleOfTheFormatPageIsWrittenAndReadOrFailsWhole) {
    std::string const example = support::HexExample("archive");
    EXPECT_EQ(HexText(ExampleStream()), HexText(example));
    for (std::size_t cut = 0; cut < example.size(); ++cut) {
        EXPECT_EQ(Load(example.substr(0, cut), LoadExample), CXArchiveException::endOfFile);
        EXPECT_EQ(CShape::alive, 0) << cut;
    }
    CXObject* object = nullptr;
    EXPECT_EQ(Load(example, [&](CXArchive& archive) { object = LoadExample(archive); }), 0);
    std::unique_ptr<CGroup> const group(static_cast<CGroup*>(object));
    ASSERT_EQ(group->parts.size(), 5u);
    auto const* const first = static_cast<CShape*>(group->parts[0]);
    auto const* const last = static_cast<CShape*>(group->parts[4]);
    EXPECT_EQ(group->parts,
              (std::vector<CXObject*>{group->parts[0], group->parts[0], nullptr, object, group->parts[4]}));
    EXPECT_TRUE(first->value == 7 && last->value == 8 && first->schemaSeen == 2 && last->schemaSeen == 2);
    EXPECT_EQ(group->schemaSeen, 2u); // the last part's: it stays until the group itself is done
}

TEST_F(XArchiveObjects, WrongTagsAndClassesAreRefused) {
    std::string const shape = Record("CShape", 2);
    std::string const value = "\7\0\0\0"s;
    for (std::string const& bytes : {"\0\0"s /* null before any class */, "\1\0"s, "\0\x80"s, "\1\x80"s,
                                     "\xFF\x7F\xFF\xFF\xFF\xFF"s, "\xFF\x7F\xFF\xFF\xFF\x7F"s})
        LoadObject(bytes, CXArchiveException::badIndex);
    for (std::string const& bytes : {Record("CUnknown", 1), Record("cshape", 2), "\xFF\xFF\2\0\xFF\xFF"s,
                                     "\xFF\xFF\2\0\x40\1"s + std::string(320, 'C')}) // one above the bound
        LoadObject(bytes, CXArchiveException::badClass);
    LoadObject(Record("CShape", 3), CXArchiveException::badSchema);
    LoadObject(Record("CAbstract", 1), Memory);
    LoadObject(shape + value, CXArchiveException::badClass, CGroup::GetThisRuntimeClassDescriptor());
    LoadObject(shape + value, CXArchiveException::genericException, CNever::GetThisRuntimeClassDescriptor());
    LoadObject(shape + value, 0, CXObject::GetThisRuntimeClassDescriptor());
    LoadObject(Record("CVersions", 3) + value);

    // Behind a first object: its tag in the long form, its class in the place of an object, nothing, and its tag in the
    // place of a class.
    std::pair<std::string, int> const later[] = {{"\xFF\x7F\2\0\0\0"s, 0},
                                                 {"\1\0"s, CXArchiveException::badIndex},
                                                 {"\3\0"s, CXArchiveException::badIndex},
                                                 {"\2\x80"s, CXArchiveException::badIndex}};
    for (auto const& [bytes, cause] : later) {
        std::unique_ptr<CXObject> first;
        CXObject const* second = nullptr;
        EXPECT_EQ(Load(shape + value + bytes,
                       [&](CXArchive& archive) {
                           first.reset(archive.ReadObject(nullptr));
                           archive >> second;
                       }),
                  cause);
        EXPECT_EQ(second, cause == 0 ? first.get() : nullptr) << HexText(bytes);
    }
    CNever never;
    EXPECT_EQ(CauseOf([&] { Stored([&](CXArchive& archive) { archive << &never; }); }),
              CXArchiveException::genericException);
}

TEST_F(XArchiveObjects, ClassesStandByThemselves) {
    auto const* const shape = CShape::GetThisRuntimeClassDescriptor();
    auto const* const versions = CVersions::GetThisRuntimeClassDescriptor();
    std::string const bytes = Stored([&](CXArchive& archive) {
        archive.SerializeClass(shape);
        archive.SerializeClass(versions);
        archive.SerializeClass(shape);
    });
    EXPECT_EQ(bytes, Record("CShape", 2) + Record("CVersions", 4) + "\1\x80"s);
    EXPECT_EQ(Load(Record("CShape", 2) + Record("CVersions", 3) + "\2\x80\0\0"s,
                   [&](CXArchive& archive) {
                       unsigned int schema = 0;
                       unsigned int tag = 0;
                       archive.SerializeClass(shape);
                       EXPECT_EQ(archive.ReadClass(shape, &schema), versions);
                       EXPECT_EQ(schema, 3u);
                       EXPECT_EQ(archive.ReadClass(nullptr, &schema, &tag), versions);
                       EXPECT_EQ(tag, 0x80000002);
                       EXPECT_EQ(archive.ReadClass(nullptr, &schema, &tag), nullptr);
                       EXPECT_EQ(tag, 0u);
                   }),
              0);
    EXPECT_EQ(Load("\2\0"s, [&](CXArchive& archive) { archive.SerializeClass(shape); }), CXArchiveException::badIndex);
}

TEST_F(XArchiveObjects, TagsAreShortBelow7FFF) {
    // Tag 1 is the shapes' class, so shape i has the tag i + 2; the class of the last one has a long tag.
    int const count = 0x8000;
    CGroup group;
    for (int i = 0; i < count; ++i)
        group.parts.push_back(new CShape(i));
    group.parts.insert(group.parts.end(), {group.parts[0x7FFC], group.parts[0x7FFD], new CVersions});
    group.parts.push_back(group.parts.back());
    std::string const bytes = Stored([&](CXArchive& archive) {
        for (CXObject const* part : group.parts)
            archive << part;
        archive.WriteClass(CVersions::GetThisRuntimeClassDescriptor());
    });
    std::size_t const objects = 2 + 4 + 6 + count * 4 + (count - 1) * 2;
    EXPECT_EQ(HexText(bytes.substr(objects, 8)), "FE 7F FF 7F FF 7F 00 00");
    EXPECT_EQ(HexText(bytes.substr(bytes.size() - 12)), "FF 7F 03 80 00 00 FF 7F 02 80 00 80");
    CGroup loaded;
    EXPECT_EQ(Load(bytes,
                   [&](CXArchive& archive) {
                       while (loaded.parts.size() < group.parts.size())
                           loaded.parts.push_back(archive.ReadObject(nullptr));
                       archive.SerializeClass(CVersions::GetThisRuntimeClassDescriptor());
                   }),
              0);
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(static_cast<CShape*>(loaded.parts[i])->value, i);
    EXPECT_TRUE(loaded.parts[count] == loaded.parts[0x7FFC] && loaded.parts[count + 1] == loaded.parts[0x7FFD]);
    EXPECT_EQ(loaded.parts[count + 2], loaded.parts[count + 3]);
}

TEST_F(XArchiveObjects, NestOnlyAsDeepAsAllowed) {
    unsigned int const limit = CXArchive::DefaultMaxDepth;
    std::string const level = "\1\0\1\x80"s; // one part, a group
    std::string const end = "\0\0"s;
    std::string deepest = Record("CGroup", 1);
    for (unsigned int i = 1; i < limit; ++i)
        deepest += level;
    std::unique_ptr<CXObject> const chain = LoadObject(deepest + end);
    EXPECT_EQ(Stored([&](CXArchive& archive) { archive << chain.get(); }), deepest + end);
    LoadObject(deepest + level + end, CXArchiveException::genericException);
    CGroup longer;
    longer.parts = {chain.get()};
    EXPECT_EQ(CauseOf([&] { Stored([&](CXArchive& archive) { archive << &longer; }); }),
              CXArchiveException::genericException);
    longer.parts.clear();
    std::string hostile = deepest;
    for (int i = 0; i < 1000000; ++i)
        hostile += level;
    LoadObject(hostile, CXArchiveException::genericException);
    // A refusal leaves the depth as it was.
    EXPECT_EQ(Load(Record("CGroup", 1) + level + level + "\1\x80"s + level + end,
                   [&](CXArchive& archive) {
                       archive.SetMaxDepth(2);
                       EXPECT_EQ(CauseOf([&] { archive.ReadObject(nullptr); }), CXArchiveException::genericException);
                       delete archive.ReadObject(nullptr);
                   }),
              0);
}

TEST_F(XArchiveObjects, AReferenceToAnObjectThatFailedIsNull) {
    // A group whose second part is of an unknown class, and then a reference to the group.
    EXPECT_EQ(Load(Record("CGroup", 1) + "\1\0"s + Record("CUnknown", 1) + "\2\0\1\x80\0\0\4\0"s,
                   [](CXArchive& archive) {
                       EXPECT_EQ(CauseOf([&] { archive.ReadObject(nullptr); }), CXArchiveException::badClass);
                       EXPECT_EQ(CShape::alive, 0);
                       EXPECT_EQ(archive.ReadObject(nullptr), nullptr);
                       std::unique_ptr<CXObject> const next(archive.ReadObject(nullptr)); // takes tag 3
                       EXPECT_NE(next, nullptr);
                       EXPECT_EQ(CauseOf([&] { archive.ReadObject(nullptr); }), CXArchiveException::badIndex);
                   }),
              0);
}

} // namespace
