// SPDX-License-Identifier: MIT
// The form of a CXRuntimeClass in an archive: 16 bits of schema, 16 bits of length, the name without a terminator.

#include "zeltools/foundation/xruntime_class.h"
#include "zeltools/foundation/xruntime_class_private.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xarchive_private.h"

#include <cassert>
#include <cstring>

void CXRuntimeClass::Save(CXArchive& archive) const {
    assert((schema & RuntimeClassSchemaMask) <= 0xFFFF);
    std::size_t const length = std::strlen(className);
    if (length > detail::MaxClassNameLength)
        detail::ThrowInvalidArg(); // no reader would find it
    archive << static_cast<unsigned short>(schema) << static_cast<unsigned short>(length);
    archive.Write(className, length);
}

CXRuntimeClass const* CXRuntimeClass::Load(CXArchive& archive, unsigned int& schema) {
    unsigned short storedSchema;
    unsigned short length;
    archive >> storedSchema;
    schema = storedSchema;
    archive >> length;
    if (length > detail::MaxClassNameLength)
        return nullptr;
    char name[detail::MaxClassNameLength + 1] = {};
    archive.EnsureRead(name, length);
    return detail::FindRuntimeClass(name);
}
