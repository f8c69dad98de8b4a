// SPDX-License-Identifier: MIT
#include "zeltools/files/io_result.h"

#include "zeltools/files/paths/path_split.h"
#include "zeltools/foundation/xload_string.h"

namespace detail {

namespace {

constexpr unsigned int LoadedMessage = 5230;
constexpr unsigned int SavedMessage = 5231;
constexpr unsigned int UnknownErrorMessage = 5394;

unsigned int MessageOf(bool loading, int code) {
    switch (code) {
    case IoSuccess: return loading ? LoadedMessage : SavedMessage;
    case IoCannotOpen: return 5181;
    case IoUnknownType: return 5395;
    case IoBadFormat: return 5387;
    case IoNoMemory: return 5392;
    case IoDiskFull: return 5389;
    case IoUnauthorized: return 5386;
    case IoNothingToSave: return 5393;
    case IoCannotSaveSo: return 5388;
    case IoEmptyFile: return 5391;
    case IoCanceled: return 5397;
    default: return UnknownErrorMessage;
    }
}

} // namespace

CXTString<char16_t> GetIoResultText(bool loading, int code, char16_t const* fileName) {
    CXTString<char16_t> text;
    if (code == IoCannotOpen) {
        CXTString<char16_t> const name = fileStripPath(CXTString<char16_t>(fileName), false);
        text.Format(MessageOf(loading, code), static_cast<char16_t const*>(name));
    } else if (code != IoOwnText) {
        text = xLoadString(MessageOf(loading, code));
    }
    return text;
}

} // namespace detail
