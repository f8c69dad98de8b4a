// SPDX-License-Identifier: MIT
// What marks a symbol as part of the library's boundary. Everything without the mark is hidden.

#pragma once

/// Stands before every exported class, function and object.
#define ZEL_API __attribute__((visibility("default")))
