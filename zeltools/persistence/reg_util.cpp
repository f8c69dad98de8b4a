// SPDX-License-Identifier: MIT
#include "zeltools/persistence/reg_util.h"

#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/platform/environment.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/registry.h"
#include "zeltools/platform/registry_values.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

using WideString = CXTString<char16_t>;
using Names = CXArray<WideString, WideString const&>;

Names Split(WideString const& path) {
    Names names(false);
    for (int position = 0; position >= 0;) {
        WideString const name = path.Tokenize(u"/\\", position);
        if (!name.IsEmpty()) {
            names.Add(name);
        }
    }
    return names;
}

std::u16string TextOf(WideString const& text) {
    return {text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength())};
}

/// A key below another, open for as long as the object lives.
class SubKey {
public:
    SubKey(HKEY parent, WideString const& name, unsigned int access, bool create) {
        result = create ? platform::RegCreateKeyExW(parent, name, access, &key, nullptr)
                        : platform::RegOpenKeyExW(parent, name, access, &key);
    }
    ~SubKey() {
        if (key) {
            platform::RegCloseKey(key);
        }
    }
    SubKey(SubKey const&) = delete;
    SubKey& operator=(SubKey const&) = delete;

    HKEY key = nullptr;
    int result = 0;
};

int ReadString(HKEY key, WideString const& name, bool expand, WideString& value) {
    unsigned int type = 0;
    std::string bytes;
    int const status = platform::ReadRegistryValue(key, name, type, bytes);
    if (status != platform::ErrorSuccess) {
        return status;
    }
    if (type != RegString && type != RegExpandString && type != RegMultiString) {
        return platform::ErrorInvalidData;
    }
    std::u16string text = platform::TextOfValue(bytes, type == RegMultiString);
    if (type == RegExpandString && expand) {
        text = platform::ExpandEnvironmentStrings(text);
    }
    value.Copy(text.data(), static_cast<int>(text.size()));
    return platform::ErrorSuccess;
}

int ReadInt(HKEY key, WideString const& name, int& value) {
    int number = 0;
    unsigned int type = 0;
    unsigned int size = sizeof(number);
    int const status = platform::RegQueryValueExW(key, name, &type, &number, &size);
    if (status == platform::ErrorMoreData || (status == platform::ErrorSuccess && (type != RegInt || size != 4))) {
        return platform::ErrorInvalidData;
    }
    value = status == platform::ErrorSuccess ? number : value;
    return status;
}

int WriteInt(HKEY key, WideString const& name, int value) {
    return platform::RegSetValueExW(key, name, RegInt, &value, sizeof(value));
}

} // namespace

ZEL_IMPLEMENT_RUNTIME_CLASS(CRegUtil, CXObject, RuntimeClassNotSerializable)

/// Opens the base key for one operation, unless it is open.
class CRegUtil::Scope {
public:
    Scope(CRegUtil& util, bool create) : owner(util), wasOpen(util.currentKey != nullptr) { owner.OpenBase(create); }
    ~Scope() {
        if (!wasOpen) {
            owner.CloseBase();
        }
    }
    Scope(Scope const&) = delete;
    Scope& operator=(Scope const&) = delete;

    explicit operator bool() const { return owner.currentKey != nullptr; }
    HKEY Key() const { return owner.currentKey; }

private:
    CRegUtil& owner;
    bool wasOpen;
};

CRegUtil::CRegUtil(unsigned int accessMask) : access(accessMask) {}

CRegUtil::CRegUtil(CXTString<char16_t> name, unsigned int accessMask) : applicationName(name), access(accessMask) {}

CRegUtil::CRegUtil(CRegUtil const& other)
    : CXObject(other), company(other.company), product(other.product), applicationName(other.applicationName),
      path(other.path), depth(other.depth), access(other.access), index(other.index), rootKey(other.rootKey),
      lastError(other.lastError) {}

CRegUtil& CRegUtil::operator=(CRegUtil const& other) {
    if (this != &other) {
        EndValueSection();
        CloseBase();
        company = other.company;
        product = other.product;
        applicationName = other.applicationName;
        path = other.path;
        depth = other.depth;
        access = other.access;
        index = other.index;
        rootKey = other.rootKey;
        lastError = other.lastError;
    }
    return *this;
}

CRegUtil::~CRegUtil() {
    EndValueSection();
    CloseBase();
}

bool CRegUtil::Answer(int status) {
    lastError = status;
    return status == platform::ErrorSuccess;
}

// Which key -----------------------------------------------------------------------------------------------------------

HKEY CRegUtil::StrToRootKey(CXTString<char16_t> const& name) {
    struct Root {
        char16_t const* name;
        HKEY key;
    } const roots[] = {
        {u"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},     {u"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
        {u"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},   {u"HKEY_USERS", HKEY_USERS},
        {u"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}, {u"HKEY_DYN_DATA", HKEY_DYN_DATA},
    };
    for (Root const& root : roots) {
        if (name.CompareNoCase(root.name) == 0) {
            return root.key;
        }
    }
    return nullptr;
}

bool CRegUtil::SetPath() {
    if (applicationName.IsEmpty()) {
        detail::GetDesktopHooks().ShowMessageBox(
            u"CRegUtil - Error\nDefault form of SetPath requires you to specify the appname in the constructor.",
            detail::MessageBoxOk);
        return false;
    }
    Names names(false);
    names.Add(u"Software");
    names.Add(u"Test");
    names.Add(applicationName);
    return InitPath(names, false);
}

bool CRegUtil::SetPath(CPathString pathText, bool create) {
    Names names = Split(pathText);
    HKEY const root = names.IsEmpty() ? nullptr : StrToRootKey(names[0]);
    if (root) {
        CloseBase(); // a key of the former root
        rootKey = root;
        names.RemoveAt(0);
    }
    return InitPath(names, create);
}

bool CRegUtil::SetRelPath(CPathString way, bool create) {
    int dots = 0;
    while (way.GetAt(dots) == u'.') {
        ++dots;
    }
    int const kept = depth - std::max(dots - 1, 0);
    if (depth == 0 || kept < 0) {
        return Answer(platform::ErrorBadPathname);
    }
    WideString whole;
    for (int i = 0; i < kept; ++i) {
        whole += path[i];
        whole += u'/';
    }
    return SetPath(whole + way.Mid(dots), create);
}

bool CRegUtil::SetPath(char16_t const** names, int count, HKEY root, bool create) {
    if (count < 0 || (!names && count > 0)) {
        detail::ThrowInvalidArg();
    }
    Names list(false);
    for (int i = 0; i < count; ++i) {
        list.Add(names[i]);
    }
    CloseBase();
    rootKey = root;
    return InitPath(list, create);
}

bool CRegUtil::InitPath(CXArray<CXTString<char16_t>, CXTString<char16_t> const&> const& newNames, bool create) {
    EndValueSection();
    CloseBase();
    path = newNames;
    depth = newNames.GetSize();
    bool const isThere = OpenBase(create);
    CloseBase();
    return isThere;
}

CXTString<char16_t> CRegUtil::GetExitText() const {
    return platform::FormatMessageW(static_cast<unsigned int>(lastError)).c_str();
}

// Opening and closing -------------------------------------------------------------------------------------------------

bool CRegUtil::OpenBase(bool create) {
    if (currentKey) {
        return true;
    }
    HKEY key = rootKey;
    int status = rootKey ? platform::ErrorSuccess : platform::ErrorInvalidHandle;
    for (int i = 0; i < depth && status == platform::ErrorSuccess; ++i) {
        HKEY next = nullptr;
        status = platform::RegOpenKeyExW(key, path[i], access, &next);
        if (status != platform::ErrorSuccess && create) {
            status = platform::RegCreateKeyExW(key, path[i], access, &next, nullptr);
        }
        if (key != rootKey) {
            platform::RegCloseKey(key);
        }
        key = next;
    }
    if (Answer(status)) {
        currentKey = key;
    }
    return currentKey != nullptr;
}

void CRegUtil::CloseBase() {
    if (currentKey && currentKey != rootKey) {
        platform::RegCloseKey(currentKey);
    }
    currentKey = nullptr;
}

// The keys below ------------------------------------------------------------------------------------------------------

bool CRegUtil::KeyExists(CXTString<char16_t> const& name) {
    Scope const base(*this, false);
    return base && Answer(SubKey(base.Key(), name, KeyQueryValue, false).result);
}

bool CRegUtil::DeleteKey(CXTString<char16_t> const& name, bool tree) {
    Scope const base(*this, false);
    return base && Answer(tree ? platform::SHDeleteKeyW(base.Key(), name) : platform::RegDeleteKeyW(base.Key(), name));
}

bool CRegUtil::StartSubKeyEnum() {
    index = 0;
    Scope const base(*this, false);
    platform::RegistryKeyInfo info;
    return base && Answer(platform::RegQueryInfoKeyW(base.Key(), info));
}

bool CRegUtil::GetNextSubKeyName(CXTString<char16_t>& name) {
    Scope const base(*this, false);
    char16_t buffer[platform::MaxKeyName + 1] = {};
    unsigned int length = platform::MaxKeyName + 1;
    if (!base || !Answer(platform::RegEnumKeyExW(base.Key(), index, buffer, &length))) {
        return false;
    }
    ++index;
    name = buffer;
    return true;
}

void CRegUtil::EndSubKeyEnum() {
    index = 0;
}

// Values --------------------------------------------------------------------------------------------------------------

bool CRegUtil::DeleteValue(CXTString<char16_t> const& name) {
    Scope const base(*this, false);
    return base && Answer(platform::RegDeleteValueW(base.Key(), name));
}

CXTString<char16_t> CRegUtil::GetKeyString(CXTString<char16_t> const& name, bool expand) {
    Scope const base(*this, false);
    WideString value;
    if (base) {
        Answer(ReadString(base.Key(), name, expand, value));
    }
    return value;
}

bool CRegUtil::WriteKeyString(CXTString<char16_t> const& name, CXTString<char16_t> const& value) {
    Scope const base(*this, false);
    return base && Answer(platform::WriteRegistryText(base.Key(), name, RegString, TextOf(value)));
}

int CRegUtil::GetKeyInt(CXTString<char16_t> const& name, int defaultValue) {
    Scope const base(*this, false);
    int value = defaultValue;
    if (base) {
        Answer(ReadInt(base.Key(), name, value));
    }
    return value;
}

bool CRegUtil::WriteKeyInt(CXTString<char16_t> const& name, int value) {
    Scope const base(*this, false);
    return base && Answer(WriteInt(base.Key(), name, value));
}

bool CRegUtil::GetKeyBin(CXTString<char16_t> const& name, void* data, unsigned int& size) {
    Scope const base(*this, false);
    return base && Answer(platform::RegQueryValueExW(base.Key(), name, nullptr, data, &size));
}

bool CRegUtil::WriteKeyBin(CXTString<char16_t> const& name, void const* data, unsigned int size) {
    Scope const base(*this, false);
    return base && Answer(platform::RegSetValueExW(base.Key(), name, RegBinary, data, size));
}

bool CRegUtil::GetKeyValue(CXTString<char16_t> const& name, unsigned int& type, CXArray<unsigned char>& bytes) {
    Scope const base(*this, false);
    std::string found;
    if (!base || !Answer(platform::ReadRegistryValue(base.Key(), name, type, found))) {
        return false;
    }
    bytes.Copy(reinterpret_cast<unsigned char const*>(found.data()), static_cast<int>(found.size()));
    return true;
}

bool CRegUtil::WriteKeyValue(CXTString<char16_t> const& name, unsigned int type, void const* data, unsigned int size) {
    Scope const base(*this, false);
    return base && Answer(platform::RegSetValueExW(base.Key(), name, type, data, size));
}

bool CRegUtil::WriteRegNoneKey(CXTString<char16_t> const& name) {
    Scope const base(*this, false);
    return base && Answer(platform::RegSetValueExW(base.Key(), name, RegNone, nullptr, 0));
}

CXTString<char16_t> CRegUtil::GetSubKeyString(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name,
                                              bool expand) {
    Scope const base(*this, false);
    WideString value;
    if (base) {
        SubKey const below(base.Key(), subKey, access, false);
        Answer(below.key ? ReadString(below.key, name, expand, value) : below.result);
    }
    return value;
}

int CRegUtil::GetSubKeyInt(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name, int defaultValue) {
    Scope const base(*this, false);
    int value = defaultValue;
    if (base) {
        SubKey const below(base.Key(), subKey, access, false);
        Answer(below.key ? ReadInt(below.key, name, value) : below.result);
    }
    return value;
}

bool CRegUtil::WriteSubKeyString(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name,
                                 CXTString<char16_t> const& value) {
    Scope const base(*this, false);
    if (!base) {
        return false;
    }
    SubKey const below(base.Key(), subKey, access, true);
    return Answer(below.key ? platform::WriteRegistryText(below.key, name, RegString, TextOf(value)) : below.result);
}

bool CRegUtil::WriteSubKeyInt(CXTString<char16_t> const& subKey, CXTString<char16_t> const& name, int value) {
    Scope const base(*this, false);
    if (!base) {
        return false;
    }
    SubKey const below(base.Key(), subKey, access, true);
    return Answer(below.key ? WriteInt(below.key, name, value) : below.result);
}

bool CRegUtil::StartValueSection(CXTString<char16_t> const& subKey) {
    EndValueSection();
    Scope const base(*this, false);
    if (!base || !Answer(platform::RegOpenKeyExW(base.Key(), subKey, access, &sectionKey))) {
        return false;
    }
    platform::RegistryKeyInfo info;
    return Answer(platform::RegQueryInfoKeyW(sectionKey, info));
}

bool CRegUtil::GetNextValueName(CXTString<char16_t>& name) {
    auto const buffer = std::make_unique<char16_t[]>(platform::MaxValueName + 1);
    unsigned int length = platform::MaxValueName + 1;
    int const status =
        sectionKey ? platform::RegEnumValueW(sectionKey, index, buffer.get(), &length, nullptr, nullptr, nullptr)
                   : platform::ErrorInvalidHandle;
    if (!Answer(status)) {
        return false;
    }
    ++index;
    name = buffer.get();
    return true;
}

void CRegUtil::EndValueSection() {
    if (sectionKey) {
        platform::RegCloseKey(sectionKey); // of a root it does nothing
    }
    sectionKey = nullptr;
    index = 0;
}
