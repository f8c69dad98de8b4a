// SPDX-License-Identifier: MIT
// Where a thread stands in a scan for tags, of a text or of a rich-text control.

#pragma once

#include "zeltools/foundation/stack.h"
#include "zeltools/foundation/xstring.h"

/// A conditional block that a scan of a control has entered: where its opening marker stands.
struct _TagIfInfo {
    int start = 0; ///< the marker's first character
    int end = 0;   ///< just behind the marker
};

/// The scan of one thread; its stack holds the blocks that are open. One thread at a time.
class _TagScanInfo : public CStack<_TagIfInfo> {
public:
    /// The number of blocks that are open.
    int GetDepth() const { return top + 1; }

    CXTString<char16_t> text; ///< the template, in the scan of a text
    int position = 0;         ///< the next character to read
    int emptySeen = 0;        ///< whether a tag of the block was replaced by an empty text, in the scan of a control

    CXTString<char16_t> name, parameters; ///< of the tag that is looked at; kept for their memory
};
