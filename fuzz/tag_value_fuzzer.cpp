// SPDX-License-Identifier: MIT
// A value of any type through any chain of parameters into any type, and back from a hostile store. The first byte is
// the type that the value has, the second the one that is asked for, the third where the chain ends; behind it stands
// what the value is made of.
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr _TAGDATA_INFO types[] = {
    TAGDATA_NONE,   TAGDATA_TEXT,       TAGDATA_UINT,       TAGDATA_FLOAT,  TAGDATA_DATE,
    TAGDATA_CUSTOM, TAGDATA_STRINGS,    TAGDATA_UINTS,      TAGDATA_FLOATS, TAGDATA_FILENAME,
    TAGDATA_INT,    TAGDATA_BOOL,       TAGDATA_FILESIZE,   TAGDATA_COLOR,  TAGDATA_DURATION,
    TAGDATA_LENGTH, TAGDATA_RESOLUTION, TAGDATA_CUSTOMINFO, TAGDATA_INTS,   static_cast<_TAGDATA_INFO>(0xFFF),
};

_TAGDATA_INFO TypeOf(std::uint8_t byte) {
    return types[byte % std::size(types)];
}

/// A registry fills the table of parameters.
class Registry : public CTags {
public:
    Registry() { InitTags(); }
    bool EvaluateTag(CTagContext const&, CTagInfo const&, CTagValue&) override { return false; }
};

CXTString<char16_t> Text(std::uint8_t const* bytes, std::size_t count) {
    std::u16string const text(bytes, bytes + count);
    return CXTString<char16_t>(text.data(), static_cast<int>(count));
}

void Fill(CTagValue& value, _TAGDATA_INFO type, std::uint8_t const* bytes, std::size_t count) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, bytes, std::min(count, sizeof(bits)));
    float real = 0;
    std::memcpy(&real, &bits, sizeof(real));
    switch (type & TAGDATA_BASE_MASK) {
    case TAGDATA_TEXT: value.SetText(Text(bytes, count)); break;
    case TAGDATA_UINT: value.SetUInt(bits); break;
    case TAGDATA_FLOAT: value.SetFloat(real); break;
    case TAGDATA_DATE: value.SetDate(CXTime(static_cast<long long>(bits) << bits % 33)); break;
    case TAGDATA_CUSTOM: value.SetCustomInfo(bytes, static_cast<unsigned int>(count)); break;
    case TAGDATA_STRINGS: value.GetStringArray(true).Add(Text(bytes, count)); break;
    case TAGDATA_UINTS: value.AddUInt(bits); break;
    case TAGDATA_FLOATS: value.AddFloat(real); break;
    default: break;
    }
}

/// Takes the content under another name, where the base allows it.
void Convert(CTagValue& value, unsigned int type, CXTString<char16_t> const& parameters) {
    int const result = value.HandleParametersAndConvertToType(type, parameters);
    if (result && type != TAGDATA_NONE && value.GetDataType() != type)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t byteCount) {
    static Registry const registry;
    if (byteCount < 3)
        return 0;
    _TAGDATA_INFO const type = TypeOf(bytes[0]);
    _TAGDATA_INFO const target = TypeOf(bytes[1]);
    std::uint8_t const* const content = bytes + 3;
    std::size_t const count = byteCount - 3;
    std::size_t const chainLength = std::min<std::size_t>(bytes[2], count);
    CXTString<char16_t> const chain = Text(content, chainLength);

    CTagValue value;
    Fill(value, type, content + chainLength, count - chainLength);
    Convert(value, type, CXTString<char16_t>());
    Convert(value, target, chain);
    for (_TAGDATA_INFO const next : types)
        Convert(value, next, chain);

    // What is stored is read again, into the same bytes.
    constexpr unsigned int id = 1;
    CCustomData store;
    if (value.SetValueToData(store, id) && store.HasData(id)) {
        CTagValue back;
        CCustomData again;
        if (back.GetValueFromData(store, id, value.GetDataType()) && back.SetValueToData(again, id) &&
            again.GetDataSize(id) > store.GetDataSize(id))
            std::abort();
    }

    // A store from outside: its bytes are chunks, and every id in it is read as every type.
    CCustomData hostile;
    hostile.SetData(content, static_cast<unsigned int>(count));
    unsigned int kind = 0;
    for (unsigned int index = 0; index < 8; ++index) {
        unsigned int const hostileId = hostile.GetIDByIndex(index, kind);
        for (_TAGDATA_INFO const stored : types) {
            value.GetValueFromData(hostile, hostileId, stored);
            Convert(value, target, chain);
            value.SetValueToData(store, hostileId);
        }
    }
    return 0;
}
