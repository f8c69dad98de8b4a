// SPDX-License-Identifier: MIT
// Classes and objects in the archive. Each class and each object that is new to the stream takes the next tag, from 1
// on, and both sides count alike:
//
//     tag    stored as                            bytes
//     1      the class CShape, by its record      FFFF, schema, length, name
//     2      an object of it                      what its Serialize stores
//     -      the same object again                0002
//     3      another object of the class          8001, what its Serialize stores
//
// An object takes its tag before its Serialize runs, so a part that points back to it finds it there.

#include "zeltools/foundation/thread_exceptions_private.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xarchive_private.h"

#include <optional>

namespace {

/// The load array's first room and its step while it is small.
constexpr int LoadArrayStep = 128;

/// From here on the load array doubles: a step would move a million entries eight thousand times.
constexpr int LargeLoadArray = 8 * LoadArrayStep;

} // namespace

/// One level of objects inside objects, for as long as it lives.
class CXArchive::Nesting {
public:
    explicit Nesting(CXArchive& within) : archive(within) {
        if (archive.depth >= archive.maxDepth)
            archive.Throw(CXArchiveException::genericException); // a chain that would overflow the stack
        ++archive.depth;
    }
    ~Nesting() { --archive.depth; }
    Nesting(Nesting const&) = delete;
    Nesting& operator=(Nesting const&) = delete;

private:
    CXArchive& archive;
};

/// Gives the next tag, which must leave bit 31 free.
inline unsigned int CXArchive::TakeTag() {
    if (mapCount >= detail::ClassTagBit) [[unlikely]]
        detail::ThrowInvalidArg();
    return mapCount++;
}

// ---------------------------------------------------------------------------------------------------------------
// Storing

void CXArchive::WriteReference(unsigned int tag, unsigned int classBit) {
    if (tag < detail::LongTag)
        *this << static_cast<unsigned short>(tag | classBit >> 16);
    else
        *this << detail::LongTag << (tag | classBit);
}

CXArchive::StoreMap& CXArchive::Stored() {
    if (!storeMap)
        storeMap = std::make_unique<StoreMap>();
    return *storeMap;
}

void CXArchive::WriteObject(CXObject const* object) {
    if (IsLoading())
        Throw(CXArchiveException::archiveIsLoading);
    if (!object) {
        WriteReference(0, 0);
        return;
    }
    unsigned int const expected = mapCount;
    unsigned int tag = expected;
    if (!Stored().Enter({object}, tag)) {
        WriteReference(tag, 0);
        return;
    }
    std::optional<Nesting> level;
    try {
        level.emplace(*this);
        WriteClass(object->GetRuntimeClassDescriptor());
    } catch (...) {
        storeMap->Remove({object}, false);
        throw;
    }
    tag = TakeTag();
    if (tag != expected) // which a new class took
        storeMap->Insert({object}, tag);
    const_cast<CXObject*>(object)->Serialize(*this); // which changes nothing while it stores
}

void CXArchive::WriteClass(CXRuntimeClass const* record) {
    if (!record)
        Throw(CXArchiveException::badClass);
    if (IsLoading() || !record->IsSerializable())
        Throw(CXArchiveException::genericException);
    if (unsigned int const* const tag = Stored().Find({record})) {
        WriteReference(*tag, detail::ClassTagBit);
        return;
    }
    *this << detail::NewClassTag;
    record->Save(*this);
    storeMap->Insert({record}, TakeTag());
}

void CXArchive::SerializeClass(CXRuntimeClass const* record) {
    if (IsStoring())
        WriteClass(record);
    else
        ReadClass(record);
}

// ---------------------------------------------------------------------------------------------------------------
// Loading

// A stream of a million objects comes through here a million times, so what an object needs is inline.

/// Reads the tag of what comes next: bit 31 tells a class.
inline unsigned int CXArchive::ReadTag(bool& isNewClass) {
    unsigned short shortTag;
    *this >> shortTag;
    isNewClass = shortTag == detail::NewClassTag;
    unsigned int tag = (shortTag & 0x8000u) << 16 | (shortTag & 0x7FFFu);
    if (shortTag == detail::LongTag)
        *this >> tag;
    return tag;
}

/// The class that an earlier place of the stream gave this tag.
inline CXArchive::loadedPtr CXArchive::FindClass(unsigned int tag) const {
    if (tag == 0 || tag >= static_cast<unsigned int>(loadArray.GetSize()) ||
        loadArray.GetData()[tag].kind != loadedPtr::Class)
        Throw(CXArchiveException::badIndex);
    return loadArray.GetData()[tag];
}

/// Reads a class's record and gives it the next tag.
CXArchive::loadedPtr CXArchive::ReadNewClass() {
    loadedPtr entry;
    entry.kind = loadedPtr::Class;
    CXRuntimeClass const* const record = CXRuntimeClass::Load(*this, entry.schema);
    if (!record)
        Throw(CXArchiveException::badClass);
    bool const isVersionable = (record->schema & RuntimeClassVersionable) != 0;
    if (!isVersionable && entry.schema != (record->schema & RuntimeClassSchemaMask))
        Throw(CXArchiveException::badSchema);
    entry.pointer = record;
    if (loadArray.IsEmpty())
        loadArray.PreAllocate(LoadArrayStep, LoadArrayStep);
    loadArray.SetAtGrow(static_cast<int>(TakeTag()), entry);
    return entry;
}

/// The class that a tag of one stands for, which must be `requested` or derive from it.
inline CXArchive::loadedPtr CXArchive::ClassOf(unsigned int tag, bool isNewClass, CXRuntimeClass const* requested) {
    schema = detail::NoSchema;
    loadedPtr const found = isNewClass ? ReadNewClass() : FindClass(tag & ~detail::ClassTagBit);
    auto const* const record = static_cast<CXRuntimeClass const*>(found.pointer);
    if (requested && record != requested && !record->IsDerivedFrom(requested))
        Throw(CXArchiveException::badClass);
    return found;
}

CXRuntimeClass const* CXArchive::ReadClass(CXRuntimeClass const* requested, unsigned int* storedSchema,
                                           unsigned int* objectTag) {
    if (IsStoring() || (requested && !requested->IsSerializable()))
        Throw(CXArchiveException::genericException);
    bool isNewClass = false;
    unsigned int const tag = ReadTag(isNewClass);
    if ((tag & detail::ClassTagBit) == 0) {
        if (!objectTag)
            Throw(CXArchiveException::badIndex);
        *objectTag = tag;
        return nullptr;
    }
    loadedPtr const found = ClassOf(tag, isNewClass, requested);
    if (storedSchema)
        *storedSchema = found.schema;
    if (objectTag)
        *objectTag = tag;
    return static_cast<CXRuntimeClass const*>(found.pointer);
}

/// The object that an earlier place of the stream gave this tag; null for one that could not be read.
inline CXObject* CXArchive::FindObject(unsigned int tag, CXRuntimeClass const* requested) const {
    if (tag >= static_cast<unsigned int>(loadArray.GetSize()))
        Throw(CXArchiveException::badIndex);
    loadedPtr const& entry = loadArray.GetData()[tag];
    if (entry.kind == loadedPtr::Class)
        Throw(CXArchiveException::badIndex);
    auto* const object = static_cast<CXObject*>(const_cast<void*>(entry.pointer));
    if (requested && object && !object->IsKindOf(requested))
        Throw(CXArchiveException::badClass);
    return object;
}

inline CXObject* CXArchive::ReadNewObject(CXRuntimeClass const& record, unsigned int storedSchema) {
    Nesting const level(*this);
    std::unique_ptr<CXObject> object(record.CreateObject());
    if (!object)
        detail::ThrowMemory();
    loadedPtr entry;
    entry.pointer = object.get();
    entry.kind = loadedPtr::Object;
    int const tag = static_cast<int>(TakeTag());
    if (tag == LargeLoadArray)
        loadArray.SetSize(loadArray.GetSize(), decltype(loadArray)::GrowByDoubling);
    if (tag == loadArray.GetSize())
        loadArray.Add(entry);
    else
        loadArray.InsertAt(tag, entry);
    try {
        schema = storedSchema;
        object->Serialize(*this);
        schema = storedSchema; // its parts had theirs
    } catch (...) {
        loadArray[tag].pointer = nullptr; // the tag stays, so that the count goes on, but leads to no deleted object
        throw;
    }
    detail::DropThreadException(); // what Serialize caught and left behind
    return object.release();
}

CXObject* CXArchive::ReadObject(CXRuntimeClass const* requested) {
    if (IsStoring())
        Throw(CXArchiveException::archiveIsStoring);
    if (requested && !requested->IsSerializable())
        Throw(CXArchiveException::genericException);
    bool isNewClass = false;
    unsigned int const tag = ReadTag(isNewClass);
    if ((tag & detail::ClassTagBit) == 0)
        return FindObject(tag, requested);
    loadedPtr const found = ClassOf(tag, isNewClass, requested);
    return ReadNewObject(*static_cast<CXRuntimeClass const*>(found.pointer), found.schema);
}
