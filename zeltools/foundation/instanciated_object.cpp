// SPDX-License-Identifier: MIT
#include "zeltools/foundation/instanciated_object.h"

bool CInstanciatedObject::Delete() {
    if (referenceCount != 1) {
        --referenceCount;
        return false;
    }
    delete this;
    return true;
}

bool DeleteMe(CInstanciatedObject* object) {
    return !object || object->Delete();
}
