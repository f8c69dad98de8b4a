// SPDX-License-Identifier: MIT
// A registered tag: its text and keys, its type and flags, what a menu calls it, and the host's function that gives its
// value. CTags makes them; a host reads them.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/tags/tag_data_types.h"

class CTagInfo;
class CTagValue;

/// Gives the value of a tag, as the host that registered it knows it.
/// @param info   The tag, with its parameters, which are applied afterwards, and the host's data.
/// @param value  Receives the value, of the tag's own type.
/// @param type   The type that is asked for in the end.
/// @return 0 when there is no value.
using TagCallback = int (*)(CTagInfo const& info, CTagValue& value, _TAGDATA_INFO type);

/// One tag of a registry. A plain value; the friendly text and the data belong to whoever registered it.
class ZEL_API CTagInfo {
public:
    /// The class-name id of a tag without a class label.
    static constexpr unsigned int NoClassName = 0xFFFFFFFF;

    CTagInfo() = default;
    CTagInfo(unsigned int ofClass, unsigned int ofId) : id(ofId), tagClass(ofClass) {}

    /// Empties the name and the parameters.
    void Init();

    /// The tag's text: lower case, with its angle brackets.
    CXTString<char16_t> const& GetTagName() const { return name; }

    /// What a menu calls the tag, in the calling thread's language where it comes from the string table.
    CXTString<char16_t> GetTagFriendlyName() const;

    /// The label of the tag's class, which places it in a menu: "//" parts the levels. Empty for none.
    CXTString<char16_t> GetClassNameW() const;

    /// The parameter chain that the tag was looked up with, as "(createdate(d+h))"; empty for none.
    CXTString<char16_t> const& GetParameters() const { return parameters; }

    unsigned int GetTagClass() const { return tagClass; }
    unsigned int GetTagID() const { return id; }

    /// Type and flags in one word.
    unsigned int GetTagFlags() const { return typeAndFlags; }

    /// The type alone.
    _TAGDATA_INFO GetTagDataType() const { return static_cast<_TAGDATA_INFO>(typeAndFlags & TAGDATA_MASK); }

    /// What the host gave with the callback.
    void* GetCallbackData() const { return callbackData; }

private:
    friend class CTags;

    /// Makes it the tag that nobody registered, and keeps the memory of its texts.
    void Clear();

    unsigned int id = 0;
    unsigned int tagClass = 0;
    CXTString<char16_t> name;
    char const* friendlyText = nullptr; ///< in the system's narrow code page
    unsigned int typeAndFlags = 0;
    unsigned int friendlyId = 0; ///< string resource; 0 takes the text
    unsigned int classNameId = NoClassName;
    void* callbackData = nullptr;
    TagCallback callback = nullptr;
    CXTString<char16_t> parameters;
};
