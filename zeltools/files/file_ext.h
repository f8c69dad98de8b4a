// SPDX-License-Identifier: MIT
// The description of one file type, as the registry holds it: what it is called, which extensions it uses, which
// kind of data it holds, and who loads and saves it.
//
//     CFileExt cloud(u"Point cloud files", u".xyz|.pts", FourCC("PTCL"), FilePropertyLoad | FileKind3D,
//                    FourCC("QUEN"), FileIdUnknown, nullptr);
//     fileRegisterFile(cloud);    // cloud.GetDescription() is now u"XYZ - Point cloud files"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/foundation/xstring.h"

/// What a plug-in's entry point is asked to do; its second argument depends on it.
enum IoPluginMode : int {
    /// The argument is a `CXArray<CFileExt>*` that the entry fills with its file types.
    IoPluginEnumerate = 0,
    /// The argument is the record that receives a new parser.
    IoPluginCreateParser = 1,
    /// Sent before unloading; the argument holds the library's handle.
    IoPluginRelease = 2,
};

/// A plug-in's entry point: true when it did what the mode asks.
using IoPluginCallback = bool (*)(IoPluginMode mode, void* argument);

/// Bits of a type's properties word. The high half tells the kind of data. Bits 0x10, 0x1000 and 0x20000 occur in
/// registered types too; the toolkit carries them for its hosts and tests none of them.
enum FileProperty : unsigned int {
    FilePropertyLoad = 0x1,               ///< Can be loaded.
    FilePropertySave = 0x2,               ///< Can be saved.
    FilePropertyLoadOther = 0x4,          ///< Can be loaded by a second means; counts as loadable.
    FilePropertySaveOther = 0x8,          ///< Can be saved by a second means; counts as savable.
    FilePropertyAnyLoad = 0x5,            ///< Either way of loading.
    FilePropertyAnySave = 0xA,            ///< Either way of saving.
    FilePropertyLoadDialog = 0x20,        ///< Loading has an optional dialog.
    FilePropertyLoadDialogAlways = 0x40,  ///< Loading always shows its dialog.
    FilePropertySavable3D = 0x80,         ///< Set at registration on a savable 3D type.
    FilePropertySaveDialogAlways = 0x100, ///< Saving always shows its dialog.
    FilePropertyFirstParser = 0x800,      ///< Goes in front of the other parsers of its extensions.
    FilePropertySaveDialog = 0x80000000,  ///< Saving has an optional dialog.
    FileKindBitmap = 0x10000,
    FileKind3D = 0x40000,
    FileKindAudio = 0x80000,
    FileKindVideo = 0x100000,
    FileKindWeb = 0x200000,
    FileKindArchive = 0x400000,
    FileKindDirectory = 0x1000000,
    FileKindMask = 0xFFFF0000, ///< All kinds, and the other bits of the high half.
};

/// Ids with a meaning of their own, as class, loader or saver.
inline constexpr unsigned int FileIdUnknown = FourCC("UNKN");   ///< None.
inline constexpr unsigned int FileIdBuiltIn = FourCC("QUEN");   ///< Handled by the host, not by a parser object.
inline constexpr unsigned int FileIdPlugin = FourCC("PLGP");    ///< Parser of a plug-in.
inline constexpr unsigned int FileIdCallback = FourCC("CALK");  ///< Parser reached by its callback.
inline constexpr unsigned int FileIdExternal = FourCC("MAGI");  ///< Handled outside the parser interface.
inline constexpr unsigned int FileIdDirectory = FourCC("FLDR"); ///< Class of directories.
inline constexpr unsigned int FileIdAllFiles = FourCC("ALLF");  ///< The all-files entry of file dialogs.

/// One file type. A plain value; one thread at a time.
class ZEL_API CFileExt {
public:
    /// An empty type: no texts, class and properties 0, loader and saver `UNKN`, no callback.
    CFileExt() = default;

    /// @param description Shown in file dialogs; registration puts the main extension in front.
    /// @param extension   Dotted extensions separated by `|`, the main one first.
    CFileExt(char16_t const* description, char16_t const* extension, unsigned int classId, unsigned int properties,
             unsigned int loader, unsigned int saver, IoPluginCallback callback);

    /// Makes it the empty type again.
    void Init();

    CXTString<char16_t> const& GetDescription() const { return description; }
    CXTString<char16_t> const& GetExtension() const { return extension; }
    unsigned int GetClass() const { return classId; }
    unsigned int GetProperties() const { return properties; }
    /// The high half of the properties, in place.
    unsigned int GetKindOf() const { return properties & FileKindMask; }
    unsigned int GetLoader() const { return loader; }
    unsigned int GetSaver() const { return saver; }
    IoPluginCallback GetInitIoCallback() const { return callback; }

    void SetDescription(CXTString<char16_t> const& text) { description = text; }
    void SetExtension(CXTString<char16_t> const& list) { extension = list; }
    void SetClass(unsigned int id) { classId = id; }
    void SetProperties(unsigned int bits) { properties = bits; }
    void SetLoader(unsigned int id) { loader = id; }
    void SetSaver(unsigned int id) { saver = id; }
    void SetInitIoCallback(IoPluginCallback entry) { callback = entry; }

private:
    CXTString<char16_t> description;
    CXTString<char16_t> extension;
    unsigned int classId = 0;
    unsigned int properties = 0;
    unsigned int loader = FileIdUnknown;
    unsigned int saver = FileIdUnknown;
    IoPluginCallback callback = nullptr;
};
