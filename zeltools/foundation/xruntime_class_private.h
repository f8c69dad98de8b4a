// SPDX-License-Identifier: MIT
// The registry of run-time classes, for those who read a class name from outside and for the close of the library.

#pragma once

struct CXRuntimeClass;
template <class T>
class CXTString;

namespace detail {

/// The record that was declared under a name, which is case-sensitive; null for an unknown one. Any thread.
CXRuntimeClass const* FindRuntimeClass(CXTString<char> const& className);

/// Deletes the registry; a later declaration makes a new one.
void DeleteRuntimeClassRegistry();

} // namespace detail
