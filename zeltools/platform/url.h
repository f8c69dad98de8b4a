// SPDX-License-Identifier: MIT
// Questions about addresses. Each holds for the form with slashes and for the one in which every slash has become a
// backslash, since path texts are stored that way: `http:\\host\a.png?x=1`.
//
// Threads: any.

#pragma once

#include <string_view>

namespace platform {

/// What UrlIsW asks.
enum UrlIs {
    UrlIsUrl = 0,
    UrlIsDirectory = 4
};

/// Result codes of UrlGetPartW.
inline constexpr int UrlOk = 0;
inline constexpr int UrlErrorPointer = static_cast<int>(0x80004003U);
inline constexpr int UrlErrorInvalidArg = static_cast<int>(0x80070057U);

/// The one part that is asked for.
inline constexpr unsigned int UrlPartQuery = 6;

/// Whether the text has a scheme (UrlIsUrl), or is an address whose path ends in a separator of either kind
/// (UrlIsDirectory). Query and fragment are no part of the path.
bool UrlIsW(std::u16string_view url, UrlIs what);

/// Gives the part behind the first `?`, up to a fragment; empty without one and for what is no address.
std::u16string_view UrlQuery(std::u16string_view url);

/// Copies the query, without `?` and without the scheme, to `out`.
///
/// @param length  In: units that `out` has room for. Out: the length without terminator; where there is not enough
///                room, what would be needed with it.
/// @param part    UrlPartQuery; any other gives UrlErrorInvalidArg.
/// @param flags   Unused: a query has no scheme to keep.
/// @return UrlOk, or UrlErrorPointer when there is not enough room; then `out` is untouched.
int UrlGetPartW(std::u16string_view url, char16_t* out, unsigned int* length, unsigned int part, unsigned int flags);

} // namespace platform
