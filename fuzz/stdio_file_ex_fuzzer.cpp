// SPDX-License-Identifier: MIT
// Any bytes as a text file. The first byte says how it is opened; the rest is the content, whose marks decide how it is
// read. What is read twice must be the same, and no more than there is.
#include "zeltools/foundation/xexception.h"
#include "zeltools/persistence/stdio_file_ex.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// The content as a file that has a name and lies in memory.
std::u16string FileWith(std::uint8_t const* data, std::size_t size) {
    static int const descriptor = memfd_create("text", 0);
    Check(ftruncate(descriptor, 0) == 0);
    Check(pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size));
    std::string const number = std::to_string(descriptor);
    return u"\\proc\\self\\fd\\" + std::u16string(number.begin(), number.end());
}

std::u16string ReadLines(CStdioFileEx& file, std::size_t size) {
    std::u16string text;
    CXTString<char16_t> line;
    std::size_t count = 0;
    while (file.ReadString(line)) {
        text.append(line.GetConstBuffer(), static_cast<std::size_t>(line.GetLength())) += u'\n';
        // The last of lines that end in CR is given out twice.
        Check(++count <= size + 1 && text.size() <= 2 * size + count + 1);
    }
    return text;
}

void ReadInPieces(CStdioFileEx& file, std::size_t size) {
    unsigned long long const length = file.GetLength();
    Check(length == size);
    CXTString<char16_t> line;
    int number = 0;
    char16_t word[6];
    char16_t units[5];
    char bytes[3];
    for (std::size_t step = 0; step < size + 8; ++step) {
        unsigned long long const before = file.GetPosition();
        Check(before <= length);
        switch (step % 6) {
        case 0: file.ReadString(line); break;
        case 1: file.FScanfS(u"%d,%5s", &number, word, 6U); break;
        case 2: static_cast<CXStdioFile&>(file).ReadString(units, 5); break;
        case 3: file.Read(bytes, 3); break;
        case 4: file.SkipLines(1, 1); break;
        default: file.Seek(static_cast<long long>(before), CXFile::begin); Check(file.GetPosition() == before);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    unsigned int const choice = data[0];
    std::u16string const path = FileWith(data + 1, size - 1);
    unsigned int const kinds[] = {XFILE_TYPE_TEXT, XFILE_TYPE_TEXT | XFILE_TYPE_UTF8, XFILE_TYPE_TEXT | XFILE_TYPE_WIDE,
                                  XFILE_TYPE_BINARY};
    xStringEncoding const pages[] = {xEncodingDefault, xEncodingUtf8, static_cast<xStringEncoding>(1252),
                                     static_cast<xStringEncoding>(932)};
    CStdioFileEx file(false);
    Check(file.Open(path.c_str(), kinds[choice & 3] | XFILE_OPEN_READ | XFILE_SHARE_DENY_NONE, nullptr));
    file.SetCodePage(pages[choice >> 2 & 3]);
    std::u16string const first = ReadLines(file, size);
    file.SeekToBegin();
    Check(ReadLines(file, size) == first);
    file.SeekToBegin();
    ReadInPieces(file, size - 1);
    return 0;
}
