// SPDX-License-Identifier: MIT
// Named values beside an image or a scene: "Exif:Make" and "Canon". They live in one property store, so that they can
// be kept, dumped and sent like any other: each name and its value are a store of their own, under the ids 1, 2, 3, ...
//
//     metadata.SetText(u"Exif:Make", u"Canon");
//     metadata.SetNumber(u"Exif:FNumber", 2.8);
//     metadata.GetText(u"exif:make")                  // u"Canon": names are found without regard to case
//
// Threads: one at a time.

#pragma once

#include "media/media_api.h"
#include <zeltools/foundation/hash_map.h>
#include <zeltools/foundation/xlc_string.h>
#include <zeltools/foundation/xstring.h>
#include <zeltools/persistence/custom_data.h>

class ZEL_MEDIA_API CMetadata {
public:
    /// Enters a value; one that has the name already is replaced.
    void SetText(CXTString<char16_t> const& name, CXTString<char16_t> const& value);
    void SetInteger(CXTString<char16_t> const& name, long long value);
    void SetNumber(CXTString<char16_t> const& name, double value);
    /// Bytes that only a program understands, such as a colour profile. As a text they are their number.
    void SetBinary(CXTString<char16_t> const& name, void const* data, unsigned int size);

    /// The number of values.
    unsigned int GetCount() const { return store.GetIDCount(); }
    /// The name and the value, as a text, of the n-th one in the order of entering; false past the end.
    bool GetAt(unsigned int index, CXTString<char16_t>& name, CXTString<char16_t>& value) const;
    /// Whether the n-th value is a text of its own, and neither a number nor bytes; false past the end.
    bool IsTextAt(unsigned int index) const;
    /// A value as a text; empty when there is none of this name.
    CXTString<char16_t> GetText(CXTString<char16_t> const& name) const;
    bool HasName(CXTString<char16_t> const& name) const { return FindID(name) != 0; }

    /// The store itself: ids 1 to GetCount(), each a store with 'NAME' and 'VALU'.
    CCustomData const& GetStore() const { return store; }

private:
    /// The id of a name; 0 when there is none.
    unsigned int FindID(CXTString<char16_t> const& name) const;
    /// Stores `entry`, which holds the value, under the name.
    void Put(CXTString<char16_t> const& name, CCustomData& entry);

    CCustomData store;
    CHashMap<CExLCString, CExLCString const&, unsigned int> idOfName; ///< So that a thousand names are no burden.
};
