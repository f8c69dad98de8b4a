// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xobject.h"

constinit CXRuntimeClass const CXObject::classCreatorCXObject = {"CXObject", sizeof(CXObject), 1,
                                                                 nullptr,    nullptr,          nullptr};

CXRuntimeClass const* CXObject::GetRuntimeClassDescriptor() const {
    return &classCreatorCXObject;
}

void CXObject::Serialize(CXArchive&) {}

bool CXObject::IsKindOf(CXRuntimeClass const* record) const {
    CXRuntimeClass const* const own = GetRuntimeClassDescriptor();
    return own && own->IsDerivedFrom(record);
}
