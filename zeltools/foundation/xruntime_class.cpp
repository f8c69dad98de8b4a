// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xruntime_class.h"

#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/thread_exceptions_private.h"
#include "zeltools/foundation/xruntime_class_private.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/critical_section.h"

namespace {

using Registry = CHashMap<CXTString<char>, CXTString<char> const&, CXRuntimeClass const*>;

/// Guards `registry`; nothing else is taken while it is held. It is constant-initialised, since classes may be declared
/// by constructors of static objects.
constinit platform::CriticalSection registryLock;

/// Made by the first declaration.
Registry* registry = nullptr;

} // namespace

CXObject* CXRuntimeClass::CreateObject() const {
    if (!createObject)
        return nullptr;
    CXObject* const object = createObject();
    detail::DropThreadException(); // what the constructor caught and left behind
    return object;
}

bool CXRuntimeClass::IsDerivedFrom(CXRuntimeClass const* record) const {
    if (!record)
        return false;
    CXRuntimeClass const* ancestor = this;
    while (ancestor && ancestor != record)
        ancestor = ancestor->baseClass;
    return ancestor != nullptr;
}

bool CXRuntimeClass::DeclareRuntimeClass(CXRuntimeClass const* record) {
    if (!record || !record->className)
        return false;
    platform::ScopedLock const hold(registryLock);
    if (!registry)
        registry = new Registry;
    registry->Insert(record->className, record);
    return true;
}

namespace detail {

CXRuntimeClass const* FindRuntimeClass(CXTString<char> const& className) {
    platform::ScopedLock const hold(registryLock);
    CXRuntimeClass const** const found = registry ? registry->Find(className) : nullptr;
    return found ? *found : nullptr;
}

void DeleteRuntimeClassRegistry() {
    platform::ScopedLock const hold(registryLock);
    delete registry;
    registry = nullptr;
}

} // namespace detail
