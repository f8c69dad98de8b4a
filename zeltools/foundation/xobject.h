// SPDX-License-Identifier: MIT
// The root of the class tree: run-time type tests and serialisation. A class joins the tree with two macros:
//
//     class ZEL_API CShape : public CXObject {
//         ZEL_DECLARE_RUNTIME_CLASS(CShape)
//       public:
//         void Serialize(CXArchive& archive) override;
//     };
//     ZEL_IMPLEMENT_RUNTIME_CLASS(CShape, CXObject, 1)   // in the source; 1 is the schema number
//
//     shape->IsKindOf(CXObject::GetThisRuntimeClassDescriptor());   // true
//
// A class with a default constructor can then be created by name; an abstract one, or one without, cannot.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xruntime_class.h"

#include <type_traits>

class CXArchive;

/// The common root. It has no fields, and only derived classes can make or copy one.
///
/// Threads: the calls here only read the constant records, so any thread may make them.
class ZEL_API CXObject {
public:
    static CXRuntimeClass const classCreatorCXObject;

    virtual ~CXObject() = default;

    /// The record of the object's own class.
    virtual CXRuntimeClass const* GetRuntimeClassDescriptor() const;

    /// Writes the object to a storing archive or reads it from a loading one. The root has nothing to store.
    /// Errors:  CXArchiveException of the archive; what an override adds.
    virtual void Serialize(CXArchive& archive);

    /// The record of CXObject itself; each class of the tree has a like static.
    static CXRuntimeClass const* GetThisRuntimeClassDescriptor() { return &classCreatorCXObject; }

    /// Whether the object's class is `record` or stands below it. False for null.
    bool IsKindOf(CXRuntimeClass const* record) const;

    /// The same for an object that may be null, which is of no kind.
    static bool IsKindOf(CXObject const* object, CXRuntimeClass const* record) {
        return object && object->IsKindOf(record);
    }

protected:
    CXObject() = default;
    CXObject(CXObject const&) = default;
    CXObject& operator=(CXObject const&) = default;
};

namespace detail {

/// The creator of a class's record: null where there is no public default constructor.
template <class T>
constexpr auto ObjectCreator() -> CXObject* (*)() {
    if constexpr (std::is_default_constructible_v<T>)
        return []() -> CXObject* { return new T; };
    else
        return nullptr;
}

} // namespace detail

/// Declares, inside a class of the tree, its record and the two calls that give it. Members behind it are private.
#define ZEL_DECLARE_RUNTIME_CLASS(Class)                                                                               \
public:                                                                                                                \
    static CXRuntimeClass const classCreator##Class;                                                                   \
    static CXRuntimeClass const* GetThisRuntimeClassDescriptor() {                                                     \
        return &classCreator##Class;                                                                                   \
    }                                                                                                                  \
    CXRuntimeClass const* GetRuntimeClassDescriptor() const override;                                                  \
                                                                                                                       \
private:

/// Defines the record in one source file. `schemaNumber` is the class's schema, with RuntimeClassNotSerializable
/// for a class whose objects cannot be stored. The record is constant data, so it is there before any constructor
/// of a static object runs.
#define ZEL_IMPLEMENT_RUNTIME_CLASS(Class, Base, schemaNumber)                                                         \
    constinit CXRuntimeClass const Class::classCreator##Class = {                                                      \
        #Class, sizeof(Class), schemaNumber, &Base::classCreator##Base, detail::ObjectCreator<Class>(), #Base};        \
    CXRuntimeClass const* Class::GetRuntimeClassDescriptor() const {                                                   \
        return &classCreator##Class;                                                                                   \
    }
