// SPDX-License-Identifier: MIT
#include "zeltools/files/file_types.h"

#include "zeltools/files/file_info.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/files/registered_file.h"

#include <algorithm>

namespace {

constexpr unsigned int noPosition = 0xFFFFFFFF;

/// Calls `visit` with the record of every registered type, in table order.
template <typename Visit>
void ForEachType(Visit visit) {
    CRegisteredFile& registry = CRegisteredFile::Instance();
    for (unsigned int position = registry.GetFirst(); position != noPosition;) {
        visit(*registry.GetNext(position));
    }
}

bool PassesListFilter(unsigned int properties, unsigned int filter) {
    unsigned int const kinds = filter & FileKindMask;
    return (!kinds || properties & kinds) && (!(filter & 0x1) || properties & FilePropertyAnyLoad) &&
           (!(filter & 0x2) || properties & FilePropertyAnySave);
}

bool PassesMask(unsigned int properties, unsigned int mask) {
    unsigned int const kinds = mask & FileKindMask;
    unsigned int const abilities = mask & ~FileKindMask;
    return (!kinds || properties & kinds) && (properties & abilities) == abilities;
}

CXTString<char16_t> MainExtension(CFileExt const& type) {
    int const end = type.GetExtension().Find(u'|');
    return end < 0 ? type.GetExtension() : type.GetExtension().Left(end);
}

void AppendExtensions(CFileExt const& type, CXArray<CXTString<char16_t>>& extensions, bool star) {
    int position = 0;
    while (position >= 0) {
        CXTString<char16_t> const extension = type.GetExtension().Tokenize(u"|", position);
        if (!extension.IsEmpty()) {
            extensions.Add(star ? u'*' + extension : extension);
        }
    }
}

CRegisteredFile::Parser FirstParser(CXTString<char16_t> const& path) {
    CRegisteredFile::Parser parser{0, 0, 0, 0, nullptr, 0};
    if (!path.IsEmpty()) {
        CRegisteredFile::Instance().GetParserFacts(detail::View(fileGetExtension(path)), 0, parser);
    }
    return parser;
}

} // namespace

void fileRegisterFile(CFileExt& type) {
    unsigned int const savable3D = FileKind3D | FilePropertySave;
    if ((type.GetProperties() & savable3D) == savable3D) {
        type.SetProperties(type.GetProperties() | FilePropertySavable3D);
    }
    CRegisteredFile::Instance().Register(type);
}

void fileUnregisterFile(unsigned int classId, unsigned int mode) {
    CRegisteredFile* const registry = CRegisteredFile::Existing();
    if (!registry || classId == 0) {
        return;
    }
    if ((mode & 3) == 3) {
        registry->Unregister(classId);
        return;
    }
    CFileExt* const type = registry->Find(classId);
    if (!type) {
        return;
    }
    if (mode & 1) {
        type->SetLoader(FileIdUnknown);
        type->SetProperties(type->GetProperties() & ~FilePropertyAnyLoad);
    } else if (mode & 2) {
        type->SetSaver(FileIdUnknown);
        type->SetProperties(type->GetProperties() & ~FilePropertyAnySave);
    }
}

bool fileGetExtensionInfo(unsigned int classId, CFileExt& type) {
    return CRegisteredFile::Instance().Find(classId, type);
}

unsigned int fileGetProperties(unsigned int classId) {
    CFileExt const* const type = CRegisteredFile::Instance().Find(classId);
    return type ? type->GetProperties() : 0;
}

unsigned int fileGetKindOf(unsigned int classId) {
    return fileGetProperties(classId) & FileKindMask;
}

CXTString<char16_t> fileGetMainExtension(unsigned int classId) {
    CFileExt const* const type = CRegisteredFile::Instance().Find(classId);
    return type ? MainExtension(*type) : CXTString<char16_t>();
}

int fileGetExtensionArray(unsigned int classId, CXArray<CXTString<char16_t>>& extensions, bool star) {
    extensions.RemoveAll(false);
    if (CFileExt const* const type = CRegisteredFile::Instance().Find(classId)) {
        AppendExtensions(*type, extensions, star);
    }
    return extensions.GetSize();
}

unsigned int fileGetProperties(CFileNameSpec const& path) {
    CFileInfo info;
    info.Init(path, FileNameTypeAuto, nullptr);
    return info.GetProperties();
}

unsigned int fileGetKindOf(CFileNameSpec const& path) {
    return fileGetProperties(path) & FileKindMask;
}

unsigned int fileGetClass(CXTString<char16_t> const& path) {
    return FirstParser(path).classId;
}

unsigned int fileGetLoader(CXTString<char16_t> const& path) {
    return FirstParser(path).loader;
}

unsigned int fileGetSaver(CXTString<char16_t> const& path) {
    return FirstParser(path).saver;
}

unsigned int fileFindParser(CXTString<char16_t> const& path, unsigned int kindMask, unsigned int propertyMask) {
    unsigned int const abilities = propertyMask & ~FileKindMask;
    CFileInfo info;
    info.Init(CFileNameSpec(path), FileNameTypeAuto, nullptr);
    for (;;) {
        unsigned int const properties = info.GetProperties();
        if (properties & kindMask & FileKindMask && (properties & abilities) == abilities) {
            return info.GetClass();
        }
        if (!info.CanTryAnotherParser()) {
            return 0;
        }
        info.TryNextParser();
    }
}

CXTString<char16_t> fileGetMainExtension(CXTString<char16_t> const& path) {
    unsigned int const classId = fileGetClass(path);
    return classId ? fileGetMainExtension(classId) : path;
}

bool fileGetFileExt(CXTString<char16_t> const& extension, CFileExt& type) {
    return CRegisteredFile::Instance().GetParser(detail::View(extension), 0, type);
}

CFileExt* fileGetRegisteredFiles(unsigned int& count, unsigned int filter) {
    count = 0;
    ForEachType([&](CFileExt const& type) { count += PassesListFilter(type.GetProperties(), filter); });
    if (count == 0) {
        return nullptr;
    }
    // The array form of new keeps the element count in front of the array, which is what delete[] destroys by.
    CFileExt* const types = new CFileExt[count];
    unsigned int filled = 0;
    ForEachType([&](CFileExt const& type) {
        if (PassesListFilter(type.GetProperties(), filter) && filled < count) {
            types[filled++] = type;
        }
    });
    std::stable_sort(types, types + filled, [](CFileExt const& a, CFileExt const& b) {
        return a.GetDescription().CompareNoCase(b.GetDescription()) < 0;
    });
    return types;
}

void fileFreeRegisteredFiles(CFileExt* types, unsigned int) {
    delete[] types;
}

int fileGetExtensionArrayByProperty(unsigned int mask, CXArray<CXTString<char16_t>>& extensions, bool star,
                                    bool mainOnly) {
    ForEachType([&](CFileExt const& type) {
        if (!PassesMask(type.GetProperties(), mask)) {
            return;
        }
        if (mainOnly) {
            extensions.Add(MainExtension(type));
        } else {
            AppendExtensions(type, extensions, star);
        }
    });
    return extensions.GetSize();
}
