// SPDX-License-Identifier: MIT
#include "zeltools/files/file_name_spec.h"

#include "zeltools/files/file_types.h"
#include "zeltools/files/paths/path_slashes.h"

CFileNameSpec::CFileNameSpec(CXTString<char16_t> const& name, unsigned int id) : fileName(name) {
    fileConvertSlash(fileName);
    SetClass(id);
}

CFileNameSpec::CFileNameSpec(char16_t const* name, unsigned int id) : fileName(name) {
    fileConvertSlash(fileName);
    SetClass(id);
}

CFileNameSpec& CFileNameSpec::operator=(CXTString<char16_t> const& name) {
    fileName = name;
    SetClass(0);
    return *this;
}

void CFileNameSpec::SetClass(unsigned int id) {
    defaultParserChoice = id == 0;
    classId = defaultParserChoice ? fileGetClass(fileName) : id;
}

bool CFileNameSpec::IsSameFile(CFileNameSpec const& other) const {
    return classId == other.classId && fileName.CompareNoCase(other.fileName) == 0;
}
