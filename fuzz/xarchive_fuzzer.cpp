// SPDX-License-Identifier: MIT
// Any bytes as an archive stream: objects that hold scalars, strings, arrays and each other, from memory and from a
// file that does not know its length. Whatever the bytes, a load ends in an archive's exception or in objects, all of
// which are released; what was loaded stores and loads again to the same bytes.

#include "zeltools/foundation/xexception.h"
#include "zeltools/foundation/xtime.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xmem_file.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

/// Owns the parts that it made. References to others stay references.
class CPart : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CPart)
public:
    CPart() { made.push_back(this); }
    ~CPart() override { std::erase(made, this); }

    void Serialize(CXArchive& archive) override {
        if (archive.IsStoring()) {
            archive << flag << number << narrow << wide;
            numbers.Serialize(archive);
            texts.Serialize(archive);
            times.Serialize(archive);
            archive << first << second;
        } else {
            archive >> flag >> number >> narrow >> wide;
            numbers.Serialize(archive);
            texts.Serialize(archive);
            times.Serialize(archive);
            archive >> first;
            second = archive.ReadObject(GetThisRuntimeClassDescriptor());
        }
    }

    unsigned char flag = 0;
    long long number = 0;
    CXTString<char> narrow;
    CXTString<char16_t> wide;
    CXArray<short> numbers;
    CXArray<CXTString<char16_t>> texts;
    CXArray<CXTime> times;
    CXObject* first = nullptr;
    CXObject* second = nullptr;

    inline static std::vector<CPart*> made; ///< those alive
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CPart, CXObject, 1)

class CAny : public CPart {
    ZEL_DECLARE_RUNTIME_CLASS(CAny)
};
ZEL_IMPLEMENT_RUNTIME_CLASS(CAny, CPart, 2 | RuntimeClassVersionable)

/// A memory file that does not tell its length, as a pipe.
class CPipe : public CXMemFile {
public:
    using CXMemFile::CXMemFile;
    unsigned long long GetLength() const override { return 0; }
};

/// The objects of a stream, one after the other until one fails.
std::vector<CXObject*> LoadAll(CXFile& file, void* buffer) {
    std::vector<CXObject*> objects;
    CXArchive archive(&file, CXArchive::Loading, 128, buffer);
    archive.SetMaxDepth(100);
    try {
        for (;;)
            objects.push_back(archive.ReadObject(nullptr));
    } catch (CXArchiveException* exception) {
        exception->Delete();
    } catch (CXInvalidArgException* exception) {
        exception->Delete(); // a count that no array holds
    } catch (CXMemoryException* exception) {
        exception->Delete(); // a length that no string holds
    }
    return objects;
}

std::string StoreAll(std::vector<CXObject*> const& objects) {
    CXMemFile file;
    CXArchive archive(&file, CXArchive::Storing);
    archive.WriteClass(CPart::GetThisRuntimeClassDescriptor()); // so that a null may come first
    for (CXObject const* const object : objects)
        archive << object;
    archive.Close();
    return {reinterpret_cast<char const*>(file.GetBuffer()), static_cast<std::size_t>(file.GetLength())};
}

void DeleteAll() {
    while (!CPart::made.empty())
        delete CPart::made.back();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static bool const isDeclared = CXRuntimeClass::DeclareRuntimeClass(CPart::GetThisRuntimeClassDescriptor()) &&
                                   CXRuntimeClass::DeclareRuntimeClass(CAny::GetThisRuntimeClassDescriptor());
    Require(isDeclared);
    unsigned char buffer[128];
    CPipe pipe(data, size, false, true);
    std::size_t const fromPipe = LoadAll(pipe, buffer).size();
    DeleteAll();

    CXMemFile file(data, size, false, true);
    std::vector<CXObject*> const objects = LoadAll(file, nullptr);
    Require(objects.size() == fromPipe);
    // What was read whole before the first failure refers to nothing that failed.
    if (!objects.empty()) {
        std::string const stored = StoreAll(objects);
        CXMemFile again(reinterpret_cast<unsigned char const*>(stored.data()), stored.size(), false, true);
        CXArchive archive(&again, CXArchive::Loading);
        archive.ReadClass(nullptr);
        std::vector<CXObject*> second;
        for (std::size_t i = 0; i < objects.size(); ++i)
            second.push_back(archive.ReadObject(nullptr));
        Require(StoreAll(second) == stored);
    }
    DeleteAll();
    return 0;
}
