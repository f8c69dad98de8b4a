// SPDX-License-Identifier: MIT
// Which program a registry value names: commands that open a document stand there with quotes and switches.
//
//     GetNameFromRegistry(u"\"\\usr\\bin\\Viewer.EXE\" /open", RegString, name)     // 1; name == \usr\bin\viewer.exe

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/registry_types.h"

/// Takes the path of a program out of a command.
///
/// The text is cut behind the first ".exe", and what follows a first quote is kept. A folder gets a backslash. The
/// path is lower-cased, so that commands can be compared; it need not exist.
///
/// @param value   The command as the registry has it.
/// @param type    RegString, RegMultiString, or RegExpandString, whose variables are put in; others fail.
/// @param result  Receives the path; empty on failure.
/// @return 1; 0 when there is no ".exe", or an expanded text has 260 characters or more.
/// Threads: any. It asks the disk, so it can block as any file call can.
ZEL_API int GetNameFromRegistry(CXTString<char16_t> const& value, unsigned int type, CXTString<char16_t>& result);
