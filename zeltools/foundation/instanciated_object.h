// SPDX-License-Identifier: MIT
// An object with a count of its owners, the last of which deletes it.
//
//     auto* shared = new CPalette;   // count 1; CPalette derives from CInstanciatedObject
//     shared->AddRef();              // 2
//     DeleteMe(shared);              // false: one owner is left
//     DeleteMe(shared);              // true: the object is gone

#pragma once

#include "zeltools/foundation/api.h"

/// The base of objects that count their owners. Made with new, by its first owner.
/// Threads: one at a time; the count has no lock.
class ZEL_API CInstanciatedObject {
protected:
    CInstanciatedObject() = default;
    // It stands before Delete, since the order of the virtual operations is the binary contract.
    virtual ~CInstanciatedObject() = default;

public:
    CInstanciatedObject(CInstanciatedObject const&) = delete;
    CInstanciatedObject& operator=(CInstanciatedObject const&) = delete;

    /// Adds an owner, and gives the count.
    int AddRef() { return ++referenceCount; }
    int GetRefCount() const { return referenceCount; }

    /// Takes an owner away.
    /// @return true when it was the last one and the object is gone.
    virtual bool Delete();

private:
    int referenceCount = 1;
};

/// Takes an owner away from an object that may be null, and answers whether it is gone; true for null.
ZEL_API bool DeleteMe(CInstanciatedObject* object);
