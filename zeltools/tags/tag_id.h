// SPDX-License-Identifier: MIT
// The key of a tag: a class, which says who registered it, and an id within the class; both are chosen as
// four-character codes.
//
//     CTagID const width{FourCC("PICT"), FourCC("WIDT")};

#pragma once

#include "zeltools/foundation/hash_methods.h"

/// Two codes that name one tag.
struct CTagID {
    unsigned int tagClass = 0;
    unsigned int id = 0;
};

/// The hash mixes the id alone, since the tags of a registry have few classes and many ids, and adds the class at the
/// end. It is fixed for ever: it decides the order in which a table of tags is walked.
template <>
struct CHashMethods<CTagID> {
    static constexpr unsigned int Hash(CTagID const& key) {
        unsigned int h = key.id;
        h = ~(h << 15) + h;
        h ^= h >> 10;
        h *= 9;
        h ^= h >> 6;
        h = ~(h << 11) + h;
        h ^= h >> 16;
        return h + key.tagClass;
    }
    static constexpr bool IsEqual(CTagID const& a, CTagID const& b) { return a.id == b.id && a.tagClass == b.tagClass; }
    static constexpr bool LooksAtKeysOnly = true;
};
