// SPDX-License-Identifier: MIT
// Any UTF-16 text as an extension list to register and as a name to parse: the registry stays whole, and walking the
// parsers of a name ends.
#include "zeltools/files/file_info.h"
#include "zeltools/files/file_types.h"
#include "zeltools/files/registered_file.h"
#include "zeltools/foundation/xexception.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

CXTString<char16_t> TakeText(std::uint8_t const* data, std::size_t size) {
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * 2);
    return units.c_str();
}

void Register(CXTString<char16_t> const& extensions, unsigned int classId, unsigned int properties) {
    CFileExt type(u"Fuzzed files", extensions, classId, properties, FileIdPlugin, FileIdUnknown, nullptr);
    try {
        fileRegisterFile(type);
        Require(fileGetProperties(classId) == type.GetProperties());
        Require(type.GetExtension().Find(fileGetMainExtension(classId), 0, false) == 0);
    } catch (CXInvalidArgException* exception) {
        exception->Delete();
    }
}

void WalkParsers(CFileInfo& info) {
    unsigned int const parsers = info.GetParserNbr();
    for (unsigned int tries = 0; info.CanTryAnotherParser(); ++tries) {
        Require(tries < parsers);
        info.TryNextParser();
    }
    CHashTable<unsigned int> classes;
    Require(info.GetClass(classes) == parsers && classes.GetCount() <= parsers);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    std::size_t const cut = 4 + data[0] % (size - 3);
    CXTString<char16_t> const extensions = TakeText(data + 4, cut - 4);
    CXTString<char16_t> const name = TakeText(data + cut, size - cut);

    CRegisteredFile::Free();
    Register(extensions, data[1], data[2] * 0x101u << 8);
    Register(extensions + u"|.bmp", data[1] ^ 1u, data[2] | 0x10801u);

    for (unsigned int const mode : {0u, 1u, 2u, 4u, 5u}) {
        CFileInfo info;
        info.Init(CFileNameSpec(name, data[3] & 1 ? data[1] : 0), mode, nullptr);
        Require(info.IsDirectory() + info.IsFile() + info.IsURL() >= 1);
        Require(info.GetName().GetLength() == info.GetNameWithoutExt().GetLength() + info.GetExtension().GetLength());
        WalkParsers(info);
    }
    fileFindParser(name, 0xFFFF0000, data[3]);
    fileUnregisterFile(data[1], data[3]);
    Require(fileGetMainExtension(name).GetLength() >= 0);
    return 0;
}
