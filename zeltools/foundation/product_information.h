// SPDX-License-Identifier: MIT
// The block of text that says which product this is, on which system: for crash reports and for whoever asks for help.
//
//     ------------------------------------------
//     Product information
//     ------------------------------------------
//     Debian GNU/Linux 12 (bookworm) (110)
//     Catalogue 3.1
//     64-bit version
//     No licence information
//     ------------------------------------------

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Gives one line of the block, without its end.
using ProductTextCallback = CXTString<char16_t> (*)();

/// Says where the two lines come from that only a host with a licence knows.
///
/// @param productText  The product's name as it is sold; null for GetInternalProductName(false).
/// @param licenceText  The state of its licence; null for "No licence information".
/// Threads: any. The callbacks may be called on any thread, a crashing one too.
ZEL_API void SetProductInformationCallbacks(ProductTextCallback productText, ProductTextCallback licenceText);

/// Builds the block. Each line ends in "\r\n".
/// @param version  What follows the product's name, behind a blank.
/// Threads: any.
ZEL_API CXTString<char16_t> BuildProductInformationText(CXTString<char16_t> const& version);
