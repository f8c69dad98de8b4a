// SPDX-License-Identifier: MIT
// The smallest useful host: start the toolkit, say where we are, split a path, close.

#include <zeltools/zeltools.h>

#include <cstdio>

static void print(char const* label, CXTString<char16_t> const& path) {
    std::printf("%-9s %s\n", label, fileGetNativeName(path).GetConstBuffer()); // path strings have backslashes inside
}

int main(int argc, char** argv) {
    InitZelTools(0);
    CXTString<char16_t> const path = fileFromNativeName(argc > 1 ? argv[1] : "/usr/share/pixmaps/wood.png");
    print("host", GetApplicationPath(false));
    print("folder", fileStripName(path));
    print("name", fileStripPath(path, true));
    print("extension", fileGetExtension(path));
    CloseZelTools(0);
}
