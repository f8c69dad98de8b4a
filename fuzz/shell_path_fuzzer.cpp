// SPDX-License-Identifier: MIT
// Any UTF-16 text as a path: every shell path function, in place in a buffer of exactly the size that its header asks
// for, and what must hold between them.
#include "zeltools/platform/shell_path.h"
#include "zeltools/platform/url.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// On the heap, so that the sanitizer sees a unit too many.
struct Buffer {
    Buffer(std::u16string const& text, std::size_t extra) : units(new char16_t[text.size() + 1 + extra]) {
        units[text.copy(units.get(), text.size())] = 0;
    }
    std::unique_ptr<char16_t[]> units;
};

void TryInPlace(std::u16string const& path) {
    using namespace platform;
    Buffer canonical(path, 1);
    PathCanonicalizeW(canonical.units.get(), canonical.units.get());
    std::u16string const first = canonical.units.get();
    Require(PathNeedsCanonicalization(path) || first == path);
    Buffer fresh(path, 1);
    Buffer const source(path, 0);
    PathCanonicalizeW(fresh.units.get(), source.units.get());
    Require(fresh.units.get() == first);

    Buffer root(path, 0);
    Require(PathStripToRootW(root.units.get()) == (PathRootLength(path) > 0));
    Buffer extension(path, 0);
    PathRemoveExtensionW(extension.units.get());
    Require(extension.units.get() + std::u16string(PathFindExtensionW(source.units.get())) == path);
    Buffer name(path, 0);
    PathStripPathW(name.units.get());
    Require(std::u16string(name.units.get()) == PathFindFileNameW(source.units.get()));
    // Cutting ends: each step that says so makes the text shorter.
    Buffer directory(path, 0);
    std::size_t length = path.size();
    while (PathRemoveFileSpecW(directory.units.get())) {
        Require(std::u16string_view(directory.units.get()).size() < length);
        length = std::u16string_view(directory.units.get()).size();
    }
}

void TryQuestions(std::u16string const& path) {
    using namespace platform;
    Require(!PathIsUNCServerW(path) || PathIsUNCW(path));
    Require(!PathIsUNCServerShareW(path) || PathIsUNCW(path));
    Require(!PathIsRelativeW(path) || PathRootLength(path) == 0);
    PathIsRootW(path);
    UrlIsW(path, UrlIsDirectory);
    std::u16string query(path.size() + 2, u'\0');
    auto size = static_cast<unsigned int>(query.size());
    Require(UrlGetPartW(path, query.data(), &size, UrlPartQuery, 1) == UrlOk);
    Require(UrlQuery(path).size() == size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::u16string text(size / 2, u'\0');
    std::memcpy(text.data(), data, text.size() * 2);
    // A zero separates two paths; the second is the target of the relative path.
    std::u16string const from = text.c_str();
    std::u16string const to = from.size() < text.size() ? text.c_str() + from.size() + 1 : u"";
    TryInPlace(from);
    TryQuestions(from);
    char16_t relative[platform::MaxPath];
    for (bool const isDirectory : {false, true}) {
        platform::PathRelativePathToW(relative, from.c_str(), true, to.c_str(), isDirectory);
        platform::PathRelativePathToW(relative, from.c_str(), false, to.c_str(), isDirectory);
    }
    if (from.size() < platform::MaxPath) {
        char16_t compact[platform::MaxPath] = {};
        from.copy(compact, from.size());
        int const width = static_cast<int>(to.size());
        auto const measure = [](std::u16string_view shown) { return static_cast<int>(shown.size()); };
        if (platform::PathCompactPathW(compact, width, measure)) {
            Require(measure(compact) <= width);
        }
    }
    return 0;
}
