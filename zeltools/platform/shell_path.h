// SPDX-License-Identifier: MIT
// The shell's path functions: pure text, no system call except where PathIsNetworkPathW asks about a drive letter.
//
// Each operation stands here twice where speed matters: as a function over a view that answers a position or a
// length, and under the shell's name, working in place on a terminated buffer. Path texts have backslashes; to the
// shell a slash is an ordinary character except in front of a file name. Nothing here is bounded to 260 characters
// but PathRelativePathToW and PathCompactPathW, whose callers bring a buffer of that size.
//
//     PathRootLength(u"C:\\a\\b")            == 3     the root is C:\,
//     PathRootLength(u"\\\\srv\\share\\a")   == 11    \\srv\share
//     PathExtensionPosition(u"a.tar.gz")     == 5
//     PathFileNamePosition(u"C:\\a\\b.c")    == 5
//
// Threads: any; the functions touch only their arguments.

#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace platform {

/// Size of the buffers that the bounded functions fill, terminator included.
inline constexpr std::size_t MaxPath = 260;

// Asking ------------------------------------------------------------------------------------------------------------

/// Gives the length of the root: `X:`, `X:\`, `\`, `\\server`, `\\server\share`, `\\?\X:\`, `\\?\UNC\server\share`,
/// `\\?\Volume{...}\`. A share's root has no trailing backslash. 0 for a relative path, which an address is too.
std::size_t PathRootLength(std::u16string_view path);

/// Gives the index of the last dot of the last component, or the path's length when there is none. Only a backslash
/// or a blank behind the dot takes it away, so `a.b/c` has the extension `.b/c`.
std::size_t PathExtensionPosition(std::u16string_view path);

/// Gives the index behind the last `\`, `/` or `:` that something other than a separator follows; 0 without one.
std::size_t PathFileNamePosition(std::u16string_view path);

/// Gives the length of what PathRemoveFileSpecW leaves.
std::size_t PathDirectoryLength(std::u16string_view path);

/// `\\` at the start, and not `\\?\` unless `UNC\` follows.
bool PathIsUNCW(std::u16string_view path);

/// A UNC path without a further separator: `\\server`, and `\\` too.
bool PathIsUNCServerW(std::u16string_view path);

/// A UNC path with exactly one further separator: `\\server\share`, and `\\server\` too.
bool PathIsUNCServerShareW(std::u16string_view path);

/// Neither a backslash nor a drive letter at the start. The empty text, slashes and addresses are relative.
bool PathIsRelativeW(std::u16string_view path);

/// `\`, `X:\`, `\\`, `\\server` or `\\server\share`, each without anything behind.
bool PathIsRootW(std::u16string_view path);

/// A scheme of two or more of [A-Za-z0-9+.-] in front of the first colon, whatever follows.
bool PathIsURLW(std::u16string_view path);

/// A UNC path, or a drive that the drive table leads to a share, mounted or not.
bool PathIsNetworkPathW(std::u16string_view path);

/// Whether PathCanonicalize would change the text; a single scan without a copy.
bool PathNeedsCanonicalization(std::u16string_view path);

char16_t const* PathFindExtensionW(char16_t const* path);
char16_t const* PathFindFileNameW(char16_t const* path);

// Changing ----------------------------------------------------------------------------------------------------------

/// Writes the canonical form of `path` to `out`, unterminated, and gives its length. `out` has room for
/// `path.size() + 1` units and may be where `path` stands.
///
/// A segment `.` goes, `..` goes with the segment before it, trailing dots go unless a `*` is in front of them.
/// Backing out of the first segment of a relative path leaves `\`, and so does a text of which nothing is left;
/// `X:` becomes `X:\`. Repeated separators and slashes stay.
std::size_t PathCanonicalize(std::u16string_view path, char16_t* out);

/// PathCanonicalize of a terminated text. `out` has room for two units more than `path` is long and may be `path`.
/// Never fails on a text.
bool PathCanonicalizeW(char16_t* out, char16_t const* path);

/// Cuts the text behind its root. False, and an empty text, without a root.
bool PathStripToRootW(char16_t* path);

/// Cuts the extension with its dot.
void PathRemoveExtensionW(char16_t* path);

/// Moves the last component to the front of the buffer.
void PathStripPathW(char16_t* path);

/// Cuts the last component with the separator in front of it, a doubled one whole; a root stays. True when something
/// was cut. `\\server\share` gives `\\server`.
bool PathRemoveFileSpecW(char16_t* path);

/// Writes to `out` (MaxPath units) how `to` is reached from `from`, beginning with `.` or `..`.
///
/// @param fromIsDirectory  false: the last component of `from` is a file and does not count.
/// @param toIsDirectory    false: the last component of `to` is a file and is never part of what both share.
/// @return false, with an empty `out`, when nothing is shared (a lone `\` is nothing, and so is `\\`) or the result
///         has MaxPath units or more. Case is ignored, beyond ASCII too. `.` and `..` are segments like any other.
bool PathRelativePathToW(char16_t* out, char16_t const* from, bool fromIsDirectory, char16_t const* to,
                         bool toIsDirectory);

/// Shortens `path` (a buffer of MaxPath units) until `measure` gives no more than `width`. The end of the directory
/// gives way to `...` first; where not even `...\name` fits, the end of the name:
///
///     C:\path1\path2\sample    C:\path1\...\sample    C:\p...\sample    ...\sample    sam...    ...
///
/// @param measure  Gives the width of a text, in the unit of `width`; it grows with the text.
/// @return true when the result fits; false, with `path` unchanged, when not even `...` does or the text is too long
///         for its buffer.
bool PathCompactPathW(char16_t* path, int width, std::function<int(std::u16string_view)> const& measure);

} // namespace platform
