// SPDX-License-Identifier: MIT
// The exception of internet sessions.

#pragma once

#include "zeltools/foundation/xexception.h"

/// A failed internet operation.
class ZEL_API CXInternetException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXInternetException)

public:
    /// @param error          The error number; 0 takes the calling thread's last system error.
    /// @param sessionContext What the session was opened with, for the host to find it again.
    explicit CXInternetException(unsigned int error, unsigned long long sessionContext = 0);

    unsigned int errorCode;
    unsigned long long context;

    /// What the system says about the error number, in the thread's language; empty for a number without a text. There
    /// is no message table of internet sessions beside the system's.
    /// @param helpContext  Receives 0 when it is not null.
    virtual CXTString<char16_t> GetErrorMessage(unsigned int* helpContext = nullptr) const;
};
