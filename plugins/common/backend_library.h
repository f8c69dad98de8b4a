// SPDX-License-Identifier: MIT
// The heavy half of a plug-in: a library in the folder backends/ beside the shell, opened once, at the first use. It
// stays open until the process ends, since the libraries behind it keep threads and tables that outlive any caller.
//
//     BackendLibrary backend("bitmap_backend.so");
//     auto const create = backend.Find<CreateParser*>("ZelCreateParser");
//     if (!create)
//         Print(backend.GetErrorText());
//
// Threads: any.

#pragma once

#include <zeltools/foundation/xstring.h>

#include <mutex>
#include <string>

class BackendLibrary {
public:
    /// @param fileName  Without its folder. Nothing is opened yet.
    explicit BackendLibrary(char const* fileName) : name(fileName) {}
    BackendLibrary(BackendLibrary const&) = delete;
    BackendLibrary& operator=(BackendLibrary const&) = delete;

    /// A function of the library, which is opened now if it was not. Null when it cannot be opened or has none of this
    /// name; a library that could not be opened is not tried again.
    template <class Function>
    Function Find(char const* functionName) {
        return reinterpret_cast<Function>(FindAddress(functionName));
    }

    /// Why Find gave nothing: the loader's words.
    CXTString<char16_t> GetErrorText() const { return CXTString<char16_t>(errorText.c_str()); }

private:
    void* FindAddress(char const* functionName);
    void Open();

    char const* name;
    std::once_flag once;
    void* handle = nullptr; ///< Set once.
    std::string errorText;  ///< Set once.
};
