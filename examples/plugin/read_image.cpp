// SPDX-License-Identifier: MIT
// read_image FOLDER FILE: reads an image with the plug-ins of a folder and tells what came of it.
#include <zeltools/zeltools.h>

#include <cstdio>
#include <media/bitmap_io.h>

static bool readImage(CXTString<char16_t> const& path) {
    CBitmapIo io(CFileNameSpec(path), IoFlagLoading | IoFlagSilent, nullptr);
    CImageDocument image;
    if (!io.Read(image)) {
        std::printf("%s\n", fileGetNativeName(io.GetIoErrorTxt()).GetConstBuffer());
        return false;
    }
    CSubImage const& page = image.GetSubImage(0);
    std::byte const* const lastRow = page.GetRow(page.height - 1);
    std::printf("%u x %u, last byte %d\n", page.width, page.height,
                std::to_integer<int>(lastRow[page.GetRowSize() - 1]));
    return true;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    InitZelTools(0);
    SetPluginsDirectory(fileFromNativeName(argv[1]) + u"\\", false);
    RegisterIOPlugins(FileKindBitmap, u"");
    for (int i = 0; i < GetPluginReports().GetSize(); ++i) {
        PluginReport const& report = GetPluginReports()[i];
        std::printf("%s: %s\n", fileGetNativeName(fileStripPath(report.path, true)).GetConstBuffer(),
                    fileGetNativeName(GetPluginOutcomeText(report)).GetConstBuffer());
    }
    bool const isRead = readImage(fileFromNativeName(argv[2]));
    FreeIOPlugins(FileKindBitmap);
    CloseZelTools(0);
    return isRead ? 0 : 1;
}
