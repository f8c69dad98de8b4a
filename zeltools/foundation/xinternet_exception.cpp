// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xinternet_exception.h"

#include "zeltools/platform/errors.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXInternetException, CXException, 1 | RuntimeClassNotSerializable)

CXInternetException::CXInternetException(unsigned int error, unsigned long long sessionContext)
    : errorCode(error != 0 ? error : platform::GetLastError()), context(sessionContext) {}

CXTString<char16_t> CXInternetException::GetErrorMessage(unsigned int* helpContext) const {
    if (helpContext)
        *helpContext = 0;
    return platform::FormatMessageW(errorCode).c_str();
}
