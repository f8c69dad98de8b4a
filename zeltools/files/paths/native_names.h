// SPDX-License-Identifier: MIT
// The road between the toolkit's path strings and the names that the system's own tools print and take. Hosts use it
// at their edges: for command-line arguments, and for what they show to a person.
//
//     fileFromNativeName("/home/ana/a.png")       // u"\\home\\ana\\a.png"
//     fileGetNativeName(u"\\home\\ana\\a.png")    // "/home/ana/a.png"
//
// The translation loses nothing, whatever bytes a name is made of: fileGetNativeName(fileFromNativeName(n)) is n.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// The toolkit's form of a native name, absolute or relative. Null gives the empty text.
ZEL_API CXTString<char16_t> fileFromNativeName(char const* nativeName);

/// The native name of a path. A drive or server path that leads nowhere comes as its own text, since there is no
/// native name to show.
ZEL_API CXTString<char> fileGetNativeName(CXTString<char16_t> const& path);
