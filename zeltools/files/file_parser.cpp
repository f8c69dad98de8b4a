// SPDX-License-Identifier: MIT
#include "zeltools/files/file_parser.h"

#include "zeltools/files/file_io.h"

CFileParser::CFileParser(CFileIo* owner) : manager(owner), parentWindow(owner ? owner->GetParentWnd() : nullptr) {}

bool CFileParser::ShouldCancelParser() const {
    return manager && manager->ShouldCancelParser();
}

IoShowDialog CFileParser::MustShowDialog() const {
    if (!manager) {
        return IoDialogNone;
    }
    unsigned int const always = manager->IsLoading() ? FilePropertyLoadDialogAlways : FilePropertySaveDialogAlways;
    return (manager->GetProperties() & always) != 0 ? IoDialogAlways : IoDialogNone;
}

bool CFileParser::IsSilentMode() const {
    return manager && manager->IsSilentMode();
}

bool CFileParser::IsFlagSet(FILE_PARSER_FLAGS bits) const {
    return manager && manager->IsFlagSet(bits);
}
