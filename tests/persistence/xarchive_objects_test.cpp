// SPDX-License-Identifier: MIT
#include "tests/persistence/archive_probe.h"
#include "tests/support/format_page.h"
#include "zeltools/foundation/thread_exceptions.h"

#include <algorithm>
#include <gtest/gtest.h>
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
    CGroup() = default;
    ~CGroup() override {
        std::sort(parts.begin(), parts.end());
        parts.erase(std::unique(parts.begin(), parts.end()), parts.end());
        for (CXObject* const part : parts)
            if (part != this)
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

/// One object inside the other.
class CChain : public CShape {
    ZEL_DECLARE_RUNTIME_CLASS(CChain)
public:
    ~CChain() override { delete next; }
    void Serialize(CXArchive& archive) override {
        if (archive.IsStoring())
            archive << next;
        else
            archive >> next;
    }
    CXObject* next = nullptr;
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CChain, CShape, 1)

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
             {&CShape::classCreatorCShape, &CGroup::classCreatorCGroup, &CChain::classCreatorCChain,
              &CVersions::classCreatorCVersions, &CAbstract::classCreatorCAbstract, &CNever::classCreatorCNever})
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
    EXPECT_TRUE(number == 2026 && narrow == "oak" && wide == u"eau");
    return group;
}

TEST_F(XArchiveObjects, TheExampleOfTheFormatPageIsWrittenAndRead) {
    std::string const example = support::HexExample("archive");
    EXPECT_EQ(HexText(ExampleStream()), HexText(example));
    CXObject* object = nullptr;
    EXPECT_EQ(Load(example, [&](CXArchive& archive) { object = LoadExample(archive); }), 0);
    std::unique_ptr<CGroup> const group(static_cast<CGroup*>(object));
    ASSERT_EQ(group->parts.size(), 5u);
    auto const* const first = static_cast<CShape*>(group->parts[0]);
    auto const* const last = static_cast<CShape*>(group->parts[4]);
    EXPECT_EQ(group->parts[1], first);
    EXPECT_EQ(group->parts[2], nullptr);
    EXPECT_EQ(group->parts[3], group.get());
    EXPECT_TRUE(first->value == 7 && last->value == 8);
    EXPECT_TRUE(first->schemaSeen == 2 && last->schemaSeen == 2);
    EXPECT_EQ(group->schemaSeen, 2u); // the last part's: it stays until the group itself is done
}

TEST_F(XArchiveObjects, AStreamCutAtAnyByteFailsAndLeavesNothing) {
    std::string const example = ExampleStream();
    for (std::size_t cut = 0; cut < example.size(); ++cut) {
        EXPECT_EQ(Load(example.substr(0, cut),
                       [](CXArchive& archive) {
                           CXTString<char> narrow;
                           int number = 0;
                           archive >> number;
                           archive.ReadCount();
                           archive >> narrow >> narrow;
                           archive.ReadObject(nullptr);
                       }),
                  CXArchiveException::endOfFile);
        EXPECT_EQ(CShape::alive, 0) << cut;
    }
}

TEST_F(XArchiveObjects, WrongTagsAndClassesAreRefused) {
    std::string const shape = Record("CShape", 2);
    std::string const value = "\7\0\0\0"s;
    LoadObject("\0\0"s, CXArchiveException::badIndex); // null before any class
    LoadObject("\1\0"s, CXArchiveException::badIndex);
    LoadObject("\0\x80"s, CXArchiveException::badIndex);
    LoadObject("\1\x80"s, CXArchiveException::badIndex);
    LoadObject("\xFF\x7F\xFF\xFF\xFF\xFF"s, CXArchiveException::badIndex);
    LoadObject("\xFF\x7F\xFF\xFF\xFF\x7F"s, CXArchiveException::badIndex);
    LoadObject(Record("CUnknown", 1), CXArchiveException::badClass);
    LoadObject(Record("cshape", 2), CXArchiveException::badClass);
    LoadObject("\xFF\xFF\2\0\x40\1"s + std::string(320, 'C'), CXArchiveException::badClass); // one above the bound
    LoadObject("\xFF\xFF\2\0\xFF\xFF"s, CXArchiveException::badClass);
    LoadObject(Record("CShape", 3), CXArchiveException::badSchema);
    LoadObject(Record("CAbstract", 1), Memory);
    LoadObject(shape + value, CXArchiveException::badClass, CGroup::GetThisRuntimeClassDescriptor());
    LoadObject(shape + value, CXArchiveException::genericException, CNever::GetThisRuntimeClassDescriptor());
    LoadObject(shape + value, 0, CXObject::GetThisRuntimeClassDescriptor());
    LoadObject(Record("CVersions", 3) + value);

    // Behind a first object: null, itself, its class in the place of an object, its object in the place of a class.
    struct {
        std::string bytes;
        int cause;
    } const later[] = {{"\0\0"s, 0},
                       {"\2\0"s, 0},
                       {"\xFF\x7F\2\0\0\0"s, 0}, // the long form of a small tag
                       {"\1\0"s, CXArchiveException::badIndex},
                       {"\3\0"s, CXArchiveException::badIndex},
                       {"\2\x80"s, CXArchiveException::badIndex}};
    for (auto const& row : later) {
        std::unique_ptr<CXObject> first;
        EXPECT_EQ(Load(shape + value + row.bytes,
                       [&](CXArchive& archive) {
                           first.reset(archive.ReadObject(nullptr));
                           CXObject const* second = nullptr;
                           archive >> second;
                           EXPECT_EQ(second, row.bytes == later[0].bytes ? nullptr : first.get());
                       }),
                  row.cause)
            << HexText(row.bytes);
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
    EXPECT_EQ(Load(bytes, [&](CXArchive& archive) { archive.SerializeClass(versions); }), CXArchiveException::badClass);
    EXPECT_EQ(Load("\2\0"s, [&](CXArchive& archive) { archive.SerializeClass(shape); }), CXArchiveException::badIndex);
}

TEST_F(XArchiveObjects, TagsAreShortBelow7FFF) {
    // Tag 1 is the shapes' class, so shape i has the tag i + 2; the class of the last one has a long tag.
    int const count = 0x8000;
    CGroup group;
    for (int i = 0; i < count; ++i)
        group.parts.push_back(new CShape(i));
    CVersions late;
    std::string const bytes = Stored([&](CXArchive& archive) {
        for (CXObject const* part : group.parts)
            archive << part;
        archive << group.parts[0x7FFC] << group.parts[0x7FFD] << &late << &late;
        archive.WriteClass(late.GetRuntimeClassDescriptor());
    });
    std::size_t const objects = 2 + 4 + 6 + count * 4 + (count - 1) * 2;
    EXPECT_EQ(HexText(bytes.substr(objects, 8)), "FE 7F FF 7F FF 7F 00 00");
    EXPECT_EQ(HexText(bytes.substr(bytes.size() - 12)), "FF 7F 03 80 00 00 FF 7F 02 80 00 80");
    EXPECT_EQ(Load(bytes,
                   [&](CXArchive& archive) {
                       CGroup loaded;
                       for (int i = 0; i < count; ++i) {
                           loaded.parts.push_back(archive.ReadObject(nullptr));
                           ASSERT_EQ(static_cast<CShape*>(loaded.parts.back())->value, i);
                       }
                       EXPECT_EQ(archive.ReadObject(nullptr), loaded.parts[0x7FFC]);
                       EXPECT_EQ(archive.ReadObject(nullptr), loaded.parts[0x7FFD]);
                       loaded.parts.push_back(archive.ReadObject(nullptr));
                       EXPECT_EQ(archive.ReadObject(nullptr), loaded.parts.back());
                       archive.SerializeClass(CVersions::GetThisRuntimeClassDescriptor());
                   }),
              0);
}

TEST_F(XArchiveObjects, NestOnlyAsDeepAsAllowed) {
    auto const chainOf = [](unsigned int length) {
        auto chain = std::make_unique<CChain>();
        for (CChain* last = chain.get(); --length > 0;)
            last->next = new CChain, last = static_cast<CChain*>(last->next);
        return chain;
    };
    unsigned int const limit = CXArchive::DefaultMaxDepth;
    std::string bytes;
    EXPECT_EQ(CauseOf([&] { bytes = Stored([&](CXArchive& archive) { archive << chainOf(limit).get(); }); }), 0);
    EXPECT_EQ(CauseOf([&] { Stored([&](CXArchive& archive) { archive << chainOf(limit + 1).get(); }); }),
              CXArchiveException::genericException);
    LoadObject(bytes);
    bytes.erase(bytes.size() - 2); // the null at its end
    LoadObject(bytes + "\1\x80\0\0"s, CXArchiveException::genericException);
    EXPECT_EQ(CShape::alive, 0);
    std::string hostile = bytes;
    for (int i = 0; i < 1000000; ++i)
        hostile += "\1\x80"s;
    LoadObject(hostile, CXArchiveException::genericException);
    EXPECT_EQ(Load(bytes + "\1\x80\0\0"s,
                   [&](CXArchive& archive) {
                       archive.SetMaxDepth(limit + 1);
                       delete archive.ReadObject(nullptr);
                   }),
              0);
    // A refusal leaves the depth as it was.
    EXPECT_EQ(Load(Record("CChain", 1) + "\1\x80\1\x80\1\x80\0\0"s,
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
