// SPDX-License-Identifier: MIT
#include "zeltools/foundation/format_string.h"

#include "zeltools/foundation/xload_string.h"

CXTString<char16_t> FormatString(char16_t const* format, ...) {
    CXTString<char16_t> text;
    std::va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    return text;
}

CXTString<char16_t> FormatString(unsigned int id, ...) {
    CXTString<char16_t> text;
    CXTString<char16_t> const format = xLoadString(id);
    std::va_list arguments;
    va_start(arguments, id);
    text.FormatV(format, arguments);
    va_end(arguments);
    return text;
}
