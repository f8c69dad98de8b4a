// SPDX-License-Identifier: MIT
// The record that gives a class a name, a base, a schema number and a way to be created by name, and the
// registry that finds a record by its name. The archive stores these names and brings the objects back.
//
//     CXRuntimeClass::DeclareRuntimeClass(CShape::GetThisRuntimeClassDescriptor());
//     CXObject* shape = CShape::GetThisRuntimeClassDescriptor()->CreateObject();   // a new CShape
//
// A class writes ZEL_DECLARE_RUNTIME_CLASS and ZEL_IMPLEMENT_RUNTIME_CLASS (xobject.h) and gets its record.

#pragma once

#include "zeltools/foundation/api.h"

class CXArchive;
class CXObject;

/// The part of CXRuntimeClass::schema that is the number. An archive stores 16 bits of it, so no class has a larger
/// one.
inline constexpr unsigned int RuntimeClassSchemaMask = 0x00FFFFFF;

/// Set in CXRuntimeClass::schema: the class is not serializable.
inline constexpr unsigned int RuntimeClassNotSerializable = 0x10000000;

/// Set in CXRuntimeClass::schema: the class reads objects of any stored schema, and asks the archive for it in
/// Serialize.
inline constexpr unsigned int RuntimeClassVersionable = 0x20000000;

/// The constant record of one class. It lives as long as the module that defines the class.
///
/// Threads: a record never changes, so all const calls may come from any thread. The registry has its own lock.
struct CXRuntimeClass {
    char const* className;           ///< The class's name, as it is stored in archives.
    unsigned int objectSize;         ///< Bytes of an instance.
    unsigned int schema;             ///< The schema number, and the two bits above.
    CXRuntimeClass const* baseClass; ///< The base's record; null for CXObject.
    CXObject* (*createObject)();     ///< Makes a new instance; null for a class that cannot be created by name.
    char const* baseClassName;       ///< The base's name; null for CXObject.

    /// Makes an instance, which the caller owns.
    /// @return the new object, or null for a class without createObject. The calling thread's pending exception is
    ///         deleted after a creation.
    /// Errors:  what the class's default constructor throws.
    ZEL_API CXObject* CreateObject() const;

    /// Whether this class is `record` or stands below it. False for null.
    ZEL_API bool IsDerivedFrom(CXRuntimeClass const* record) const;

    /// Whether objects of this class may be stored in an archive.
    bool IsSerializable() const { return (schema & RuntimeClassNotSerializable) == 0; }

    /// Enters a record in the process-wide registry under its class name; a later record of the same name replaces
    /// an earlier one. A class is declared before an archive can find it by name.
    /// @return false for null or a record without a name.
    /// Threads: any.
    ZEL_API static bool DeclareRuntimeClass(CXRuntimeClass const* record);

    /// Writes the schema's low 16 bits and the name. An archive's WriteClass does this once a stream.
    /// Errors:  those of the archive; CXInvalidArgException for a name of more than 319 characters.
    ZEL_API void Save(CXArchive& archive) const;

    /// Reads what Save wrote and looks the name up among the declared classes.
    /// @param schema  Receives the stored schema.
    /// @return null for a name that is not declared, and for one of more than 319 characters, which is not read.
    /// Errors:  CXArchiveException: archiveIsStoring, endOfFile.
    ZEL_API static CXRuntimeClass const* Load(CXArchive& archive, unsigned int& schema);
};
