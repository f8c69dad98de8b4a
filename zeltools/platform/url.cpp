// SPDX-License-Identifier: MIT
#include "zeltools/platform/url.h"

#include "zeltools/platform/shell_path.h"

namespace platform {

bool UrlIsW(std::u16string_view url, UrlIs what) {
    if (!PathIsURLW(url)) {
        return false;
    }
    if (what == UrlIsUrl) {
        return true;
    }
    std::u16string_view const path = url.substr(0, url.find_first_of(u"?#"));
    return what == UrlIsDirectory && (path.back() == u'/' || path.back() == u'\\');
}

std::u16string_view UrlQuery(std::u16string_view url) {
    if (!PathIsURLW(url)) {
        return {};
    }
    url = url.substr(0, url.find(u'#'));
    std::size_t const mark = url.find(u'?');
    return mark == url.npos ? std::u16string_view() : url.substr(mark + 1);
}

int UrlGetPartW(std::u16string_view url, char16_t* out, unsigned int* length, unsigned int part,
                [[maybe_unused]] unsigned int flags) {
    if (out == nullptr || length == nullptr || *length == 0 || part != UrlPartQuery) {
        return UrlErrorInvalidArg;
    }
    std::u16string_view const query = UrlQuery(url);
    if (query.size() >= *length) {
        *length = static_cast<unsigned int>(query.size() + 1);
        return UrlErrorPointer;
    }
    out[query.copy(out, query.size())] = 0;
    *length = static_cast<unsigned int>(query.size());
    return UrlOk;
}

} // namespace platform
