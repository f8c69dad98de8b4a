// SPDX-License-Identifier: MIT
#include "zeltools/files/registered_file.h"

#include "zeltools/files/built_in_types_private.h"
#include "zeltools/foundation/xexception.h"
#include "zeltools/process/xsingle_lock.h"

#include <atomic>
#include <memory>

namespace {

using Extensions = CXArray<CXTString<char16_t>>;

constexpr char16_t separator = u'|';

std::atomic<CRegisteredFile*> instance;

CXCriticalSection& CreationLock() {
    // Never destroyed: code that runs at exit may close the library, or ask for a type.
    static CXCriticalSection& lock = *new CXCriticalSection;
    return lock;
}

Extensions SplitExtensions(CXTString<char16_t> const& list) {
    Extensions extensions(false);
    char16_t const separators[] = {separator, 0};
    int position = 0;
    while (position >= 0) {
        CXTString<char16_t> const extension = list.Tokenize(separators, position);
        if (!extension.IsEmpty()) {
            extensions.Add(extension);
        }
    }
    return extensions;
}

CXTString<char16_t> JoinExtensions(Extensions const& extensions) {
    CXTString<char16_t> list;
    for (int i = 0; i < extensions.GetSize(); ++i) {
        if (i > 0) {
            list += separator;
        }
        list += extensions[i];
    }
    return list;
}

/// `.tga` and `.jpg` are what people look for, so they are the main extension of any type that has them.
void PutPreferredExtensionFirst(Extensions& extensions) {
    for (int i = 0; i < extensions.GetSize(); ++i) {
        if (extensions[i] == u".tga" || extensions[i] == u".jpg") {
            CXTString<char16_t> const preferred = extensions[i];
            extensions.RemoveAt(i, 1);
            extensions.InsertAt(0, preferred, 1);
            return;
        }
    }
}

/// `.jpg` and "Photos" make "JPG - Photos".
CXTString<char16_t> PrefixedDescription(CXTString<char16_t> const& mainExtension,
                                        CXTString<char16_t> const& description) {
    CXTString<char16_t> text = mainExtension;
    text.Remove(u'.');
    text.MakeUpper();
    text += u" - ";
    text += description;
    return text;
}

int IndexOf(CXArray<unsigned int, unsigned int> const& classes, unsigned int classId) {
    for (int i = 0; i < classes.GetSize(); ++i) {
        if (classes[i] == classId) {
            return i;
        }
    }
    return -1;
}

/// A type that comes again without a way of loading or saving keeps the one it had.
void KeepOldAbilities(CFileExt& type, CFileExt const& old) {
    if (type.GetLoader() == FileIdUnknown && old.GetLoader() != FileIdUnknown) {
        type.SetLoader(old.GetLoader());
        type.SetProperties(type.GetProperties() | old.GetProperties());
    }
    if (type.GetSaver() == FileIdUnknown && old.GetSaver() != FileIdUnknown) {
        type.SetSaver(old.GetSaver());
        type.SetProperties(type.GetProperties() | old.GetProperties());
    }
}

} // namespace

CRegisteredFile::CRegisteredFile() {
    for (detail::BuiltInType const& row : detail::BuiltInTypes()) {
        CFileExt type;
        type.SetDescription(CXTString<char16_t>(row.description));
        type.SetExtension(CXTString<char16_t>(row.extensions));
        type.SetClass(row.classId);
        type.SetProperties(row.properties);
        type.SetLoader(row.properties & FilePropertyAnyLoad ? FileIdBuiltIn : FileIdUnknown);
        type.SetSaver(row.properties & FilePropertyAnySave ? FileIdBuiltIn : FileIdUnknown);
        Register(type);
    }
}

CRegisteredFile::~CRegisteredFile() {
    for (unsigned int position = classesOfExtension.GetFirst(); position != 0xFFFFFFFF;) {
        delete *classesOfExtension.GetNext(position);
    }
}

void CRegisteredFile::Register(CFileExt& type) {
    CXSingleLock const holder(&lock, true);

    CXTString<char16_t> list = type.GetExtension();
    list.MakeLower();
    Extensions extensions = SplitExtensions(list);
    if (extensions.GetSize() == 0) {
        detail::ThrowInvalidArg();
    }
    PutPreferredExtensionFirst(extensions);
    type.SetExtension(JoinExtensions(extensions)); // without the empty elements that a list may have
    type.SetDescription(PrefixedDescription(extensions[0], type.GetDescription()));

    bool known = false;
    for (int i = 0; i < extensions.GetSize() && !known; ++i) {
        ClassArray* const* const classes = classesOfExtension.Find(extensions[i]);
        known = classes && IndexOf(**classes, type.GetClass()) >= 0;
    }

    for (int i = 0; i < extensions.GetSize(); ++i) {
        ClassArray** entry = classesOfExtension.Find(extensions[i]);
        if (!entry) {
            auto created = std::make_unique<ClassArray>();
            classesOfExtension.Insert(extensions[i], created.get());
            created.release();
            entry = classesOfExtension.Find(extensions[i]);
        }
        ClassArray& classes = **entry;
        if (IndexOf(classes, type.GetClass()) < 0) {
            if (type.GetProperties() & FilePropertyFirstParser) {
                classes.InsertAt(0, type.GetClass(), 1);
            } else {
                classes.Add(type.GetClass());
            }
        }
    }

    if (known) {
        if (CFileExt const* const old = Find(type.GetClass())) {
            KeepOldAbilities(type, *old);
        }
    }
    Insert(type.GetClass(), type);
}

void CRegisteredFile::Unregister(unsigned int classId) {
    CXSingleLock const holder(&lock, true);
    CFileExt const* const type = Find(classId);
    if (!type) {
        return;
    }
    Extensions const extensions = SplitExtensions(type->GetExtension());
    for (int i = 0; i < extensions.GetSize(); ++i) {
        ClassArray* classes = nullptr;
        if (classesOfExtension.Find(extensions[i], classes)) {
            delete classes;
            classesOfExtension.Remove(extensions[i], false);
        }
    }
    Remove(classId, false);
}

CRegisteredFile::ClassArray const* CRegisteredFile::FindClasses(std::u16string_view extension) {
    key.Copy(extension.data(), static_cast<int>(extension.size()));
    key.MakeLower();
    ClassArray* const* const classes = classesOfExtension.Find(key);
    return classes ? *classes : nullptr;
}

bool CRegisteredFile::GetParser(std::u16string_view extension, unsigned int index, CFileExt& type) {
    CXSingleLock const holder(&lock, true);
    ClassArray const* const classes = FindClasses(extension);
    return classes && index < static_cast<unsigned int>(classes->GetSize()) &&
           Find((*classes)[static_cast<int>(index)], type);
}

bool CRegisteredFile::GetParserFacts(std::u16string_view extension, unsigned int index, Parser& parser) {
    CXSingleLock const holder(&lock, true);
    ClassArray const* const classes = FindClasses(extension);
    unsigned int const count = classes ? static_cast<unsigned int>(classes->GetSize()) : 0;
    CFileExt const* const type = index < count ? Find((*classes)[static_cast<int>(index)]) : nullptr;
    if (type) {
        parser = {type->GetClass(), type->GetProperties(),     type->GetLoader(),
                  type->GetSaver(), type->GetInitIoCallback(), count};
    }
    return type != nullptr;
}

unsigned int CRegisteredFile::GetParserCount(std::u16string_view extension) {
    CXSingleLock const holder(&lock, true);
    ClassArray const* const classes = FindClasses(extension);
    return classes ? static_cast<unsigned int>(classes->GetSize()) : 0;
}

unsigned int CRegisteredFile::GetClasses(std::u16string_view extension, CHashTable<unsigned int>& table) {
    CXSingleLock const holder(&lock, true);
    ClassArray const* const classes = FindClasses(extension);
    if (!classes) {
        return 0;
    }
    for (int i = 0; i < classes->GetSize(); ++i) {
        table.Insert((*classes)[i]);
    }
    return static_cast<unsigned int>(classes->GetSize());
}

CRegisteredFile& CRegisteredFile::Instance() {
    if (CRegisteredFile* const existing = instance.load(std::memory_order_acquire)) {
        return *existing;
    }
    CXSingleLock const holder(&CreationLock(), true);
    if (!instance.load(std::memory_order_relaxed)) {
        instance.store(new CRegisteredFile, std::memory_order_release);
    }
    return *instance.load(std::memory_order_relaxed);
}

CRegisteredFile* CRegisteredFile::Existing() {
    return instance.load(std::memory_order_acquire);
}

void CRegisteredFile::Free() {
    CXSingleLock const holder(&CreationLock(), true);
    delete instance.exchange(nullptr, std::memory_order_acq_rel);
}
