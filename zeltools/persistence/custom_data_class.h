// SPDX-License-Identifier: MIT
// What a host's class offers so that CCustomData can keep its objects as nested stores.
//
//     class CViewSettings : public CCustomDataClass { ... };
//     data.SetCustomClass(FourCC("VIEW"), settings);
//     data.GetCustomClass(FourCC("VIEW"), settings);     // false: it is reset to its defaults

#pragma once

#include "zeltools/foundation/api.h"

class CCustomData;

/// An object whose state goes into a store and comes back from one.
/// Threads: calls come while the lock of the outer store is not held.
class ZEL_API CCustomDataClass {
public:
    /// Gives every value its default; what CCustomData::GetCustomClass does where there is nothing to read.
    virtual void ResetCustomData() = 0;

    /// Writes the object into a store, which is empty.
    virtual void WriteCustomData(CCustomData& data) const = 0;

    /// Takes the object's state from a store.
    /// @return what GetCustomClass then answers.
    virtual bool ReadCustomData(CCustomData& data) = 0;

protected:
    // Not virtual, since the three operations are the whole table: nobody deletes an object through this class.
    ~CCustomDataClass() = default;
};
