// SPDX-License-Identifier: MIT
#include "zeltools/files/file_ext.h"

CFileExt::CFileExt(char16_t const* descriptionText, char16_t const* extensionList, unsigned int id, unsigned int bits,
                   unsigned int loaderId, unsigned int saverId, IoPluginCallback entry)
    : description(descriptionText), extension(extensionList), classId(id), properties(bits), loader(loaderId),
      saver(saverId), callback(entry) {}

void CFileExt::Init() {
    *this = CFileExt();
}
