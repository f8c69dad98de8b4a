// SPDX-License-Identifier: MIT
// The exceptions that the toolkit throws by pointer. Each is made with new, entered in the throwing thread's table
// (thread_exceptions.h) and deleted by whoever catches it:
//
//     try {
//         array[-1];
//     } catch (CXInvalidArgException* e) {
//         e->Delete();                 // or XDeleteThreadException() where the pointer is out of reach
//     }

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xstring.h"

class CXException;

namespace detail {

/// The text that an exception was made with; empty for most.
CXTString<char16_t> const& GetStoredMessage(CXException const& exception);

} // namespace detail

/// The base of every exception of the toolkit.
///
/// Ownership: the catching site deletes it. Whoever does, and on whichever thread, the destructor takes it out of
///            every thread's table, so a table never points to a deleted exception.
/// Threads:   one at a time.
class ZEL_API CXException : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CXException)

public:
    CXException();
    explicit CXException(CXTString<char16_t> const& text);
    CXException(CXException const& other);
    CXException& operator=(CXException const& other);
    ~CXException() override;

    /// Shows the text of the base GetErrorMessage in a message box, and answers whether it did. That text is empty,
    /// so this shows nothing and answers false; a caller that wants to tell the user asks the derived class for its
    /// text and shows that.
    /// @param boxType  Buttons and icon, as a message box takes them.
    virtual bool ReportError(unsigned int boxType);

    /// Always empty: the base has no text of its own for a person, and `message` is not handed out. The derived
    /// classes that know what failed have a GetErrorMessage that tells it.
    CXTString<char16_t> GetErrorMessage() const;

    /// Deletes the object, which must have come from new.
    void Delete();

    /// The same for a pointer that may be null, which is ignored.
    static void Delete(CXException* exception);

protected:
    CXTString<char16_t> message;

private:
    friend CXTString<char16_t> const& detail::GetStoredMessage(CXException const& exception);
};

/// The user stopped what was going on; it is no fault, and nobody is told.
class ZEL_API CXUserException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXUserException)
};

/// Memory could not be had.
class ZEL_API CXMemoryException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXMemoryException)
};

/// A call was given an argument that it cannot work with: an index outside its array, a null record.
class ZEL_API CXInvalidArgException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXInvalidArgException)
};
