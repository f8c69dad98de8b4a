// SPDX-License-Identifier: MIT
#include "zeltools/files/built_in_types_private.h"
#include "zeltools/foundation/four_cc.h"

namespace detail {

namespace {

// `.wmv` stands in two rows with two classes, so it has two parsers. `MOV ` stands in two rows too: the second one
// replaces the record, while both extensions keep pointing at the class.
constexpr BuiltInType builtInTypes[] = {
    {"Bmp files", ".bmp|.dib", FourCC("BMP "), 0x10011},
    {"Rla files", ".rla|.rpf", FourCC("RLA "), 0x10001},
    {"Icon files", ".ico", FourCC("ICON"), 0x10001},
    {"Z-Buffer files", ".zel", FourCC("ZFIL"), 0x1000B},
    {"Zpic softimage files", ".zpic", FourCC("ZPIC"), 0x10041},
    {"Pic softimage files", ".pic", FourCC("PIC "), 0x10001},
    {"Iff files", ".iff", FourCC("IFF "), 0x10011},
    {"Cursor files", ".cur|.ani", FourCC("CURS"), 0x10001},
    {"HDR files", ".hdr", FourCC("HDR "), 0x10001},
    {"3ds Max files (Dynamic Data Format Exchange)", ".max", FourCC("3MAX"), 0x41013},
    {"XSI Softimage files", ".xsi", FourCC("XSI "), 0x40013},
    {"Maya files (Dynamic Data Format Exchange)", ".mb|.ma", FourCC("MAYA"), 0x40013},
    {"Quenby 3D Format files", ".3dif", FourCC("3DIF"), 0x40013},
    {"Windows audio files", ".wav", FourCC("AIWV"), 0x80011},
    {"Windows Media audio files", ".wma", FourCC("AIWM"), 0x80011},
    {"MPEG Audio files", ".mp3|.mp2|.mpa", FourCC("AIMG"), 0x80011},
    {"Macintosh audio files", ".aif|.aifc|.aiff", FourCC("AIMC"), 0x80011},
    {"Unix audio files", ".au", FourCC("AIUX"), 0x80011},
    {"Midi files", ".mid|.rmi|.midi", FourCC("MIDI"), 0x80011},
    {"Flash files", ".swf", FourCC("FLAS"), 0x230011},
    {"Html files", ".htm|.html|.htx|.asp|.alx|.stm|.shtml|.aspx", FourCC("IHTM"), 0x210011},
    {"Avi files", ".avi", FourCC("AVI "), 0x100113},
    {"MPG4 files", ".mpeg|.mpg|.mp4|.m2v|.m4v|.wmv", FourCC("MPG4"), 0x100004},
    {"Windows Media Video files", ".wmv", FourCC("WMV "), 0x100004},
    {"QuickTime files", ".mov", FourCC("MOV "), 0x100004},
    {"Flash video files", ".flv", FourCC("MOV "), 0x100004},
    {"Zip files", ".zip", FourCC("ZIP "), 0x400003},
    {"Rar files", ".rar", FourCC("RAR "), 0x400000},
    {"Tar files", ".tar", FourCC("TAR "), 0x400000},
    {"7-zip files", ".7z", FourCC("ZIP7"), 0x400000},
    {"gz files", ".gz", FourCC("GZ  "), 0x400000},
};

} // namespace

std::span<BuiltInType const> BuiltInTypes() {
    return builtInTypes;
}

} // namespace detail
