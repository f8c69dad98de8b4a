// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xexception.h"

#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/foundation/thread_exceptions_private.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXException, CXObject, 1 | RuntimeClassNotSerializable)
ZEL_IMPLEMENT_RUNTIME_CLASS(CXUserException, CXException, 1 | RuntimeClassNotSerializable)
ZEL_IMPLEMENT_RUNTIME_CLASS(CXMemoryException, CXException, 1 | RuntimeClassNotSerializable)
ZEL_IMPLEMENT_RUNTIME_CLASS(CXInvalidArgException, CXException, 1 | RuntimeClassNotSerializable)

CXException::CXException() = default;
CXException::CXException(CXTString<char16_t> const& text) : message(text) {}
CXException::CXException(CXException const& other) = default;
CXException& CXException::operator=(CXException const& other) = default;
CXException::~CXException() {
    detail::ForgetThreadException(this);
}

bool CXException::ReportError(unsigned int) {
    return false;
}

CXTString<char16_t> CXException::GetErrorMessage() const {
    return {};
}

void CXException::Delete() {
    delete this;
}

void CXException::Delete(CXException* exception) {
    delete exception;
}

namespace detail {

CXTString<char16_t> const& GetStoredMessage(CXException const& exception) {
    return exception.message;
}

void ThrowInvalidArg() {
    auto* const exception = new CXInvalidArgException;
    XSetThreadException(exception);
    throw exception;
}

void ThrowMemory() {
    auto* const exception = new CXMemoryException;
    XSetThreadException(exception);
    throw exception;
}

} // namespace detail
