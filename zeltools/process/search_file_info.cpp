// SPDX-License-Identifier: MIT
#include "zeltools/process/search_file_info.h"

CSearchFileInfo::CSearchFileInfo(CWnd*) {}

CSearchFileInfo::~CSearchFileInfo() = default;

void CSearchFileInfo::PumpMessages() {}

void CSearchFileInfo::SetSearchInformation(unsigned int count, CXTString<char16_t> const& place,
                                           CXTString<char16_t> const& found) {
    fileCount = count;
    placeText = place;
    foundText = found;
}
