// SPDX-License-Identifier: MIT
// One key of the registry, named by its path, with its values and the keys below.
//
//     CRegUtil settings(KeyAllAccess);
//     settings.SetPath(u"HKEY_CURRENT_USER/Software/Catalogue/Window", true);   // makes the key
//     settings.WriteKeyInt(u"Columns", 3);
//     settings.GetKeyInt(u"Columns");                                           // 3
//     settings.SetRelPath(u"..Printer", false);                                 // Software/Catalogue/Printer
//
// Names ignore case. Paths have either slash. What another process writes is seen at once, and what is written here is
// on the disk when the call returns.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/registry_types.h"

/// A path as text.
using CPathString = CXTString<char16_t>;

/// The key. An operation that finds it closed opens it and closes it again; OpenBase and CloseBase around several spare
/// that. Making an object or giving it a path leaves the key closed, and so does a copy.
///
/// Threads: one at a time.
/// Errors:  an operation that fails answers false, 0, or the empty text, and GetExitCode tells why.
class ZEL_API CRegUtil : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CRegUtil)

public:
    /// @param access  RegistryAccess bits, with which keys are opened.
    explicit CRegUtil(unsigned int access);
    /// @param applicationName  For SetPath without arguments.
    CRegUtil(CXTString<char16_t> applicationName, unsigned int access);
    CRegUtil(CRegUtil const& other);
    CRegUtil& operator=(CRegUtil const& other);
    ~CRegUtil() override;

    // ---- Which key; true when it is there or was made ----

    /// Takes the key `Software/Test/<application name>`. Without an application name it says so in a message box.
    bool SetPath();

    /// Takes a key by its path, which may begin with the name of a root; otherwise the present root stands, at first
    /// HKEY_CURRENT_USER.
    /// @param create  Makes the keys that are missing.
    bool SetPath(CPathString path, bool create);

    /// Takes a key by the way from the present one. One dot in front means the present key, each further one the key
    /// above: `.Fonts` and `Fonts` are below, `..Fonts` beside, `...` two up.
    /// Errors:  161 without a present path, and for a way that leads out of it; the path then stays.
    bool SetRelPath(CPathString path, bool create);

    /// Takes a key by `count` names below a root.
    /// Errors:  CXInvalidArgException for a negative count.
    bool SetPath(char16_t const** names, int count, HKEY root, bool create);

    /// The root that a name stands for, without regard to case; null for an unknown one.
    static HKEY StrToRootKey(CXTString<char16_t> const& name);

    // ---- Opening and closing ----

    /// Opens the key; true when it is open already.
    bool OpenBase(bool create);
    void CloseBase();

    /// The registry's status of the last operation: 0 for success, 2 for a missing key or value, 5 for access denied.
    int GetExitCode() const { return lastError; }

    /// What the exit code means, as a sentence in the thread's language.
    CXTString<char16_t> GetExitText() const;

    // ---- The key and the keys below ----

    /// Whether a key stands below this one.
    bool KeyExists(CXTString<char16_t> const& name);
    /// Deletes a key below. @param tree  With all below it; otherwise a key with keys below is refused.
    bool DeleteKey(CXTString<char16_t> const& name, bool tree);

    /// Begins the enumeration of the keys below, which GetNextSubKeyName goes on with until it is false.
    bool StartSubKeyEnum();
    bool GetNextSubKeyName(CXTString<char16_t>& name);
    void EndSubKeyEnum();

    // ---- Values ----

    bool DeleteValue(CXTString<char16_t> const& name);

    /// Reads a text: RegString, RegExpandString, or a RegMultiString with its zeros inside.
    /// @param expand  Puts variables of the environment into a RegExpandString.
    CXTString<char16_t> GetKeyString(CXTString<char16_t> const& name, bool expand = false);
    bool WriteKeyString(CXTString<char16_t> const& name, CXTString<char16_t> const& value);

    /// Reads a RegInt. Another type gives the default with the exit code 13.
    int GetKeyInt(CXTString<char16_t> const& name, int defaultValue = 0);
    bool WriteKeyInt(CXTString<char16_t> const& name, int value);

    /// Reads the bytes of a value of any type.
    /// @param data  Null to ask for the size alone.
    /// @param size  Bytes that `data` has room for; receives those of the value, also with the exit code 234.
    bool GetKeyBin(CXTString<char16_t> const& name, void* data, unsigned int& size);
    bool WriteKeyBin(CXTString<char16_t> const& name, void const* data, unsigned int size);

    /// Reads the bytes of a value with their type, whatever it is.
    bool GetKeyValue(CXTString<char16_t> const& name, unsigned int& type, CXArray<unsigned char>& bytes);
    /// Writes bytes under any type.
    bool WriteKeyValue(CXTString<char16_t> const& name, unsigned int type, void const* data, unsigned int size);

    /// Writes a value of the type RegNone, without bytes: its name is all it says.
    bool WriteRegNoneKey(CXTString<char16_t> const& name);

    /// The same for values of a key below, which writing makes.
    CXTString<char16_t> GetSubKeyString(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name,
                                        bool expand = false);
    int GetSubKeyInt(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name, int defaultValue = 0);
    bool WriteSubKeyString(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name,
                           CXTString<char16_t> const& value);
    bool WriteSubKeyInt(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name, int value);

    /// Begins the enumeration of the values of a key below, or of this one for an empty name.
    bool StartValueSection(CXTString<char16_t> const& subKey);
    bool GetNextValueName(CXTString<char16_t>& name);
    void EndValueSection();

    CXTString<char16_t> company; ///< The host's; nothing here reads it.
    CXTString<char16_t> product; ///< The host's; nothing here reads it.

private:
    class Scope;

    bool InitPath(CXArray<CXTString<char16_t>, CXTString<char16_t> const&> const& newNames, bool create);
    bool Answer(int status);

    CXTString<char16_t> applicationName;
    CXArray<CXTString<char16_t>, CXTString<char16_t> const&> path; // the names below the root
    int depth = 0;                                                 // names in `path`
    unsigned int access;
    unsigned int index = 0;    // of the enumeration under way
    HKEY currentKey = nullptr; // null while closed
    HKEY rootKey = HKEY_CURRENT_USER;
    int lastError = 0;
    HKEY sectionKey = nullptr; // of StartValueSection, until its end
};
