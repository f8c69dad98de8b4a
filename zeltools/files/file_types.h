// SPDX-License-Identifier: MIT
// The file type registry: for every file type known to the running process, what it is called, which extensions it
// uses, which kind of data it holds, and who loads and saves it. It starts with the built-in types; plug-ins and
// hosts add theirs. Several types may claim one extension; their order is the order in which parsers are tried.
//
//     fileGetClass(u"C:\\a\\photo.BMP")          // FourCC("BMP ")
//     fileGetMainExtension(FourCC("MPG4"))       // u".mpeg"
//
// Every function but fileUnregisterFile creates the registry when it does not exist yet. Unknown ids and extensions
// give 0, false or an empty text.
//
// Threads: registering and the look-ups by extension may be called from any thread. Look-ups by id and the lists take
// no lock, so a host registers its types before it starts worker threads.

#pragma once

#include "zeltools/files/file_ext.h"
#include "zeltools/files/file_name_spec.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"

// ---- Changing the registry ------------------------------------------------------------------------------------

/// Adds a type, or changes the one of the same class.
///
/// A type that is already known under one of the extensions keeps its loader where the new one has none, and its saver
/// likewise, so that a plug-in which adds saving does not lose loading. `.tga` and `.jpg` become the main extension of
/// any type that has them.
///
/// @param type  Changed as it is stored: the extension list in lower case and in its final order, the description
///              with its main extension in front (`BMP - Bmp files`), 0x80 added to a savable 3D type.
/// Errors: an empty extension list throws CXInvalidArgException; the registry is unchanged.
ZEL_API void fileRegisterFile(CFileExt& type);

/// Takes a type away, in whole or in part.
///
/// @param mode  1 removes its loading, 2 its saving; 3 removes the type and every extension it has, for the other
///              types of these extensions too. 0 changes nothing. Only the two low bits count.
ZEL_API void fileUnregisterFile(unsigned int classId, unsigned int mode);

// ---- By class -------------------------------------------------------------------------------------------------

/// Copies the record of a class; false and `type` untouched when it is unknown.
ZEL_API bool fileGetExtensionInfo(unsigned int classId, CFileExt& type);
ZEL_API unsigned int fileGetProperties(unsigned int classId);
/// The high half of the properties, in place.
ZEL_API unsigned int fileGetKindOf(unsigned int classId);
/// The first extension of the class, with its dot.
ZEL_API CXTString<char16_t> fileGetMainExtension(unsigned int classId);
/// Fills `extensions` with all extensions of the class, each with `*` in front when `star` is set.
/// @return their number; 0 and an empty array for an unknown class.
ZEL_API int fileGetExtensionArray(unsigned int classId, CXArray<CXTString<char16_t>>& extensions, bool star);

// ---- By path --------------------------------------------------------------------------------------------------

/// The properties of the parser that the name would be loaded with; an explicit class in it decides.
ZEL_API unsigned int fileGetProperties(CFileNameSpec const& path);
ZEL_API unsigned int fileGetKindOf(CFileNameSpec const& path);
/// Class, loader and saver of the first parser of the path's extension; 0 for an unknown extension.
ZEL_API unsigned int fileGetClass(CXTString<char16_t> const& path);
ZEL_API unsigned int fileGetLoader(CXTString<char16_t> const& path);
ZEL_API unsigned int fileGetSaver(CXTString<char16_t> const& path);
/// The class of the first parser of the path's extension that suits.
/// @param kindMask      Its properties share a bit of the high half with this.
/// @param propertyMask  Its properties hold all of this word's low half.
ZEL_API unsigned int fileFindParser(CXTString<char16_t> const& path, unsigned int kindMask, unsigned int propertyMask);
/// The main extension of the path's class; the path itself when it has no class.
ZEL_API CXTString<char16_t> fileGetMainExtension(CXTString<char16_t> const& path);

// ---- By extension ---------------------------------------------------------------------------------------------

/// Copies the first type of an extension, which is given with its dot and in any case.
ZEL_API bool fileGetFileExt(CXTString<char16_t> const& extension, CFileExt& type);

// ---- Lists ----------------------------------------------------------------------------------------------------

/// All types that pass a filter, sorted by description without case.
///
/// @param count   Receives their number.
/// @param filter  0 passes all. Bits of the high half: at least one must be set in the properties. 0x1: only what can
///                be loaded. 0x2: only what can be saved.
/// @return an array to be given to fileFreeRegisteredFiles; null when nothing passes.
ZEL_API CFileExt* fileGetRegisteredFiles(unsigned int& count, unsigned int filter);
/// Frees what fileGetRegisteredFiles returned; the array knows its own size, so the count is ignored.
ZEL_API void fileFreeRegisteredFiles(CFileExt* types, unsigned int count);

/// Appends the extensions of all types that pass a mask; the array is not cleared.
///
/// @param mask      Bits of the high half: at least one must be shared, where there are any. Low half: all must be
///                  set in the properties.
/// @param star      Puts `*` in front of each extension (with mainOnly unset).
/// @param mainOnly  Only the main extension of each type.
/// @return the size of the array.
ZEL_API int fileGetExtensionArrayByProperty(unsigned int mask, CXArray<CXTString<char16_t>>& extensions, bool star,
                                            bool mainOnly);
