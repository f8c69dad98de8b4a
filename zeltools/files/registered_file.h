// SPDX-License-Identifier: MIT
// The one registry object behind the functions of file_types.h: types by class, and for each extension the classes
// that claim it in the order in which their parsers are tried.

#pragma once

#include "zeltools/files/file_ext.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xlc_string.h"
#include "zeltools/process/xcritical_section.h"

#include <string_view>

/// Maps a class to its type; the base map is read without a lock. Operations by extension lock for themselves.
class ZEL_API CRegisteredFile : public CHashMap<unsigned int, unsigned int, CFileExt> {
public:
    /// A registry with the built-in types.
    CRegisteredFile();
    ~CRegisteredFile() override;
    CRegisteredFile(CRegisteredFile const&) = delete;
    CRegisteredFile& operator=(CRegisteredFile const&) = delete;

    /// Adds or changes a type under its own class. Throws CXInvalidArgException for an empty extension list.
    void Register(CFileExt& type);

    /// Removes a type and all the extensions it has, whoever else used them.
    void Unregister(unsigned int classId);

    /// Copies the n-th type of an extension; false when the extension is unknown or n out of range.
    bool GetParser(std::u16string_view extension, unsigned int index, CFileExt& type);

    /// The facts of a parser that a parsed file name carries.
    struct Parser {
        unsigned int classId = 0;
        unsigned int properties = 0;
        unsigned int loader = FileIdUnknown;
        unsigned int saver = FileIdUnknown;
        IoPluginCallback callback = nullptr;
        unsigned int siblings = 0; ///< How many types claim the extension, this one included.
    };
    /// Like GetParser, without copying texts.
    bool GetParserFacts(std::u16string_view extension, unsigned int index, Parser& parser);

    /// How many types claim an extension; 0 for an unknown one.
    unsigned int GetParserCount(std::u16string_view extension);

    /// Adds the class of every type of an extension to a set.
    unsigned int GetClasses(std::u16string_view extension, CHashTable<unsigned int>& table);

    /// The registry of the process, created on first use.
    static CRegisteredFile& Instance();
    /// The registry of the process, or null when nobody has used it yet.
    static CRegisteredFile* Existing();
    /// Deletes the registry of the process; the next use creates a new one.
    static void Free();

private:
    using ClassArray = CXArray<unsigned int, unsigned int>;

    /// The classes of an extension in any case, or null. To be called under `lock`.
    ClassArray const* FindClasses(std::u16string_view extension);

    /// The classes of each extension, in lower case and with its dot; owned. Guarded by `lock`.
    CHashMap<CExLCString, CExLCString const&, ClassArray*> classesOfExtension;
    CXCriticalSection lock;
    /// The extension that is looked for. One for all look-ups, so that none allocates. Guarded by `lock`.
    CExLCString key;
};
