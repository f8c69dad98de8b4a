// SPDX-License-Identifier: MIT
// A file name together with the class of the parser that should handle it.
//
//     CFileNameSpec auto_(u"C:/tmp/a.bmp");                   // C:\tmp\a.bmp, class `BMP `, the default choice
//     CFileNameSpec fixed(u"C:/tmp/a.bmp", FourCC("PIC "));   // class `PIC `, the caller's choice

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// A plain value; one thread at a time. Looking the class up reads the file type registry.
class ZEL_API CFileNameSpec {
public:
    /// An empty name, class 0, the default choice.
    CFileNameSpec() = default;

    /// Takes a name, each `/` converted to `\`.
    ///
    /// @param classId  The parser's class, or 0 to take the first one that is registered for the extension. Only
    ///                 with 0 is the choice of parser the default one, so that another may be tried after a failure.
    CFileNameSpec(CXTString<char16_t> const& name, unsigned int classId = 0);
    CFileNameSpec(char16_t const* name, unsigned int classId = 0);

    /// Stores the text as it stands, without converting slashes, and looks its class up; the default choice.
    CFileNameSpec& operator=(CXTString<char16_t> const& name);

    /// Chooses the parser; 0 goes back to the default choice by the extension.
    void SetClass(unsigned int classId);

    unsigned int GetClass() const { return classId; }
    CXTString<char16_t> const& GetFileName() const { return fileName; }
    /// Whether the class came from the extension and not from the caller.
    bool IsDefaultParserChoice() const { return defaultParserChoice; }

    operator char16_t const*() const { return fileName; }
    operator CXTString<char16_t> const&() const { return fileName; }

    /// Classes equal, and names equal without regard to the case of ASCII letters.
    bool IsSameFile(CFileNameSpec const& other) const;

private:
    CXTString<char16_t> fileName;
    unsigned int classId = 0;
    bool defaultParserChoice = true;
};
