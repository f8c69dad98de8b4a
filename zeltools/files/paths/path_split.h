// SPDX-License-Identifier: MIT
// Taking path texts apart: root, directory, name, extension. Nothing here asks the disk, and nothing fails: what is not
// there comes as the empty text.
//
// | path              | fileGetRoot | fileStripName | fileStripPath | fileGetExtension |
// |-------------------|-------------|---------------|---------------|------------------|
// | `C:\a\b.tar.gz`   | `C:\`       | `C:\a\`       | `b.tar.gz`    | `.gz`            |
// | `\\srv\share\a\`  | `\\srv\share\` | `\\srv\share\a\` | (empty) | (empty)          |
// | `\home\.profile`  | `\`         | `\home\`      | `.profile`    | `.profile`       |
// | `a\b.c d`         | (empty)     | `a\`          | `b.c d`       | (empty)          |
//
// A trailing backslash says that a path is a directory. Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// The root, slash-terminated: drive, share or a lone backslash. Empty for a relative path and for an address.
ZEL_API CXTString<char16_t> fileGetRoot(CXTString<char16_t> const& path);

/// The deepest directory's own name: `b` of `C:\a\b\c.txt`. A relative path is taken from the current directory.
///
/// @param terminate  Ends the result with a backslash; an empty one becomes a lone backslash.
ZEL_API CXTString<char16_t> fileGetTopDirectory(CXTString<char16_t> const& path, bool terminate);

/// Cuts the deepest directory off: `C:\a\b\` becomes `C:\a\` and the result is `b\`.
///
/// @param path      Keeps what stands before the last occurrence of the cut text. Where it does not occur, as after
///                  a file name that stays, every occurrence of the directory's name and of the file's name goes.
/// @param withName  The name and extension belong to the cut text.
/// @return the cut text; empty, with `path` unchanged, when there is no directory.
ZEL_API CXTString<char16_t> fileRemoveTopDirectory(CXTString<char16_t>& path, bool withName);

/// The last component; empty for a path that ends in a backslash. `\`, `/` and `:` separate components.
///
/// @param removeExtension  Cuts the extension as fileRemoveExtension does.
ZEL_API CXTString<char16_t> fileStripPath(CXTString<char16_t> const& path, bool removeExtension);

/// The last component without its extension.
ZEL_API CXTString<char16_t> fileStripPathAndExtension(CXTString<char16_t> const& path);

/// The directory part, slash-terminated unless empty. A path that ends in a backslash comes back as it is.
ZEL_API CXTString<char16_t> fileStripName(CXTString<char16_t> const& path);

/// The path without its extension; a name that is all extension is cut to nothing.
ZEL_API CXTString<char16_t> fileRemoveExtension(CXTString<char16_t> const& path);

/// The extension with its dot. A blank behind the dot means that there is none. An address is cut at its first `?`
/// and then searched for its last dot.
ZEL_API CXTString<char16_t> fileGetExtension(CXTString<char16_t> const& path);

/// Replaces the path by the directory above its directory: `C:\a\b\c.txt` becomes `C:\a\`.
///
/// @return false, with `path` untouched, when there is none.
ZEL_API bool fileGetParentDirectory(CXTString<char16_t>& path);
