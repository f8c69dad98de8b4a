// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xarchive_exception.h"

#include "zeltools/foundation/exception_text_private.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXArchiveException, CXException, 1 | RuntimeClassNotSerializable)

CXTString<char16_t> CXArchiveException::GetErrorMessage() const {
    constexpr unsigned int FirstArchiveText = 61872; // of cause 0; the others follow
    return detail::FormatFileText(FirstArchiveText + static_cast<unsigned int>(cause), fileName);
}
