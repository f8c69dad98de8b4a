// SPDX-License-Identifier: MIT
// How an exception that ends leaves the table of the threads' last exceptions.

#pragma once

class CXException;

namespace detail {

/// Takes an exception out of the table, under whichever thread it stands there. It is not looked at. Any thread.
void ForgetThreadException(CXException const* exception);

} // namespace detail
