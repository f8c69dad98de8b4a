// SPDX-License-Identifier: MIT
// The desktop's types are those of the shared MIME database, which GIO reads. GIO is opened at the first question: to
// link it would cost every host more than a millisecond at its start, and a system without a desktop may lack it.
#include "zeltools/platform/shell_type.h"

#include "zeltools/platform/utf8.h"

#include <algorithm>
#include <dlfcn.h>
#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <string>

namespace platform {

namespace {

/// The part of GIO that is used; all null where there is no GIO. It stays loaded, since it keeps the database in memory
/// that only the process's end gives back.
class Gio {
public:
    Gio() {
        void* const library = dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!library)
            return;
        decltype(&g_content_type_get_mime_dirs) getFolders = nullptr;
        bool const isWhole =
            Find(library, "g_content_type_get_mime_dirs", getFolders) && Find(library, "g_content_type_guess", guess) &&
            Find(library, "g_content_type_is_unknown", isUnknown) &&
            Find(library, "g_content_type_get_description", getDescription) && Find(library, "g_free", release);
        if (isWhole)
            getFolders(); // GIO settles them with the first description, and then reads and keeps the database twice
        else
            release = nullptr;
    }

    bool IsThere() const { return release != nullptr; }

    /// A text that GIO gives away.
    using Text = std::unique_ptr<char, decltype(&g_free)>;
    Text Owned(char* text) const { return Text(text, release); }

    /// GIO's description; empty where it has none and would say "image/x-any type".
    std::string Describe(char const* type) const {
        Text const description = Owned(getDescription(type));
        std::string text = description ? description.get() : "";
        return text.find(type) == text.npos ? text : std::string();
    }

    decltype(&g_content_type_guess) guess = nullptr;
    decltype(&g_content_type_is_unknown) isUnknown = nullptr;

private:
    template <class Function>
    static bool Find(void* library, char const* name, Function& function) {
        function = reinterpret_cast<Function>(dlsym(library, name));
        return function != nullptr;
    }

    decltype(&g_content_type_get_description) getDescription = nullptr;
    decltype(&g_free) release = nullptr;
};

/// The description of a picture's or a model's type that is named after the extension. Some extensions have several
/// types, of which GIO takes the first, and `.obj` would be a drawing of Tgif and `.3ds` a game.
std::string DescribePicture(Gio const& gio, std::string const& name) {
    std::size_t const dot = name.rfind('.');
    if (dot == name.npos)
        return {};
    std::string extension = name.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char byte) { return static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + 0x20 : byte); });
    for (char const* const prefix : {"model/", "image/", "image/x-"})
        if (std::string text = gio.Describe((prefix + extension).c_str()); !text.empty())
            return text;
    return {};
}

} // namespace

std::u16string DescribeFileType(std::u16string_view name, bool isDirectory) {
    static Gio const gio;
    if (!gio.IsThere())
        return {};
    std::string bytes(Utf8Room(name.size()), '\0');
    bytes.resize(Utf16ToUtf8(name.data(), name.size(), bytes.data()));

    // GIO locks its database for itself; this lock is one that the thread sanitizer sees.
    static std::mutex section;
    std::lock_guard const hold(section);
    gboolean isOneOfSeveral = FALSE;
    Gio::Text const type = gio.Owned(gio.guess(isDirectory ? "/" : bytes.c_str(), nullptr, 0, &isOneOfSeveral));
    if (!type || gio.isUnknown(type.get()))
        return {};
    std::string text = isOneOfSeveral ? DescribePicture(gio, bytes) : std::string();
    if (text.empty())
        text = gio.Describe(type.get());
    std::u16string result(Utf16Room(text.size()), u'\0');
    result.resize(Utf8ToUtf16(text.data(), text.size(), result.data()));
    return result;
}

} // namespace platform
