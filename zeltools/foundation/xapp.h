// SPDX-License-Identifier: MIT
// A host's own two words, as an object of the class tree. The library makes none and reads none.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xobject.h"

/// A value: a copy copies both words.
/// Threads: one at a time.
class ZEL_API CXApp : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CXApp)

public:
    void* application = nullptr; ///< the host's application object; the host's
    void* instance = nullptr;    ///< the module that it came from; the host's
};
