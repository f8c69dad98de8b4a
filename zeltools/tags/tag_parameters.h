// SPDX-License-Identifier: MIT
// The parameters that a template may write behind a tag: `<picture(createdate(d+h))>` takes the creation date of a
// file, and its day and time. They are the same for every tag; which of them apply depends on the type of the tag's
// value.
//
//     _TagParametersList const* row = GetTagParametersList();
//     for (; row->name; ++row)
//         if (row->inputType == TAGDATA_DATE)
//             ...                                 // d, h, d+h, d+t, d+h+t

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/tags/tag_data_types.h"

/// A parameter: what it works on and what it gives.
struct _TagParametersList {
    char16_t const* name;            ///< As a template writes it; null ends the table.
    unsigned int inputType;          ///< The _TAGDATA_INFO of the values that it works on.
    unsigned int outputTypeAndFlags; ///< The _TAGDATA_INFO of the result, and TAGFLAG_ bits.
    unsigned int friendlyId;         ///< String resource: what a menu calls it.
    unsigned int exampleId;          ///< String resource: an example in brackets; 0 for none.
};

/// The sixteen parameters in the order in which a menu shows them, and a row with a null name behind them.
/// Threads: any; the table is constant.
ZEL_API _TagParametersList const* GetTagParametersList();
