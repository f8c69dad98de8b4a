// SPDX-License-Identifier: MIT
// Layout of a shell link; all numbers are little-endian.
//
//   header  | target id list | link info | name, relative path, working dir, ... | data blocks
//   76 bytes  flag 0x1         flag 0x2    flags 0x4 to 0x40                       until a size below 4
#include "zeltools/platform/shell_link.h"

#include "zeltools/platform/code_pages.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

using Bytes = std::span<std::byte const>;

enum LinkFlag : unsigned int {
    HasTargetIdList = 0x1,
    HasLinkInfo = 0x2,
    HasName = 0x4,
    HasRelativePath = 0x8,
    HasWorkingDirectory = 0x10,
    HasArguments = 0x20,
    HasIconLocation = 0x40,
    IsUnicode = 0x80,
    ForceNoLinkInfo = 0x100
};

enum LinkInfoFlag : unsigned int {
    HasLocalBasePath = 0x1,
    HasNetworkLink = 0x2
};

constexpr std::size_t HeaderSize = 0x4C;
constexpr std::size_t ClassIdOffset = 0x04;
constexpr std::size_t FlagsOffset = 0x14;
constexpr std::array<unsigned char, 16> LinkClassId = {0x01, 0x14, 0x02, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};
constexpr unsigned int WideLinkInfoHeaderSize = 0x24; // from here on the header names wide texts too
constexpr unsigned int NarrowNetworkLinkSize = 0x14;  // a name behind it leaves room for the offset of a wide one
constexpr unsigned int EnvironmentSignature = 0xA0000001;
constexpr std::size_t EnvironmentNarrowOffset = 0x08;
constexpr std::size_t EnvironmentWideOffset = 0x10C; // behind 260 narrow characters
constexpr std::size_t BlockHeaderSize = 8;

std::u16string DecodeNarrow(Bytes bytes) {
    std::u16string text(bytes.size(), u'\0');
    int const size = static_cast<int>(bytes.size());
    int const length =
        MultiByteToWideChar(CodePageAcp, 0, reinterpret_cast<char const*>(bytes.data()), size, text.data(), size);
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

std::u16string DecodeWide(Bytes bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t index = 0; index < text.size(); ++index) {
        text[index] = static_cast<char16_t>(std::to_integer<unsigned int>(bytes[2 * index]) |
                                            std::to_integer<unsigned int>(bytes[2 * index + 1]) << 8);
    }
    return text;
}

// A structure whose end is known. What lies behind the end reads as 0 or empty and sets `isCut`, which the parser asks
// once, before it gives anything away.
class Reader {
public:
    Reader(Bytes content, bool& cut) : bytes(content), isCut(cut) {}

    Bytes Take(std::size_t offset, std::size_t size) const {
        if (offset > bytes.size() || size > bytes.size() - offset) {
            isCut = true;
            return {};
        }
        return bytes.subspan(offset, size);
    }

    unsigned int Number(std::size_t offset, std::size_t size) const {
        unsigned int number = 0;
        Bytes const taken = Take(offset, size);
        for (std::size_t index = taken.size(); index-- > 0;) {
            number = number << 8 | std::to_integer<unsigned int>(taken[index]);
        }
        return number;
    }

    // Texts that end in a zero.
    std::u16string Narrow(std::size_t offset) const {
        Bytes const rest = From(offset);
        auto const end = std::find(rest.begin(), rest.end(), std::byte{0});
        isCut = isCut || end == rest.end();
        return DecodeNarrow(rest.first(static_cast<std::size_t>(end - rest.begin())));
    }

    std::u16string Wide(std::size_t offset) const {
        Bytes const rest = From(offset);
        std::size_t size = 0;
        while (size + 2 <= rest.size() && (rest[size] != std::byte{0} || rest[size + 1] != std::byte{0})) {
            size += 2;
        }
        isCut = isCut || size + 2 > rest.size();
        return DecodeWide(rest.first(size));
    }

    // A structure inside this one that begins with its own size.
    Reader Inner(std::size_t offset) const { return {Take(offset, Number(offset, 4)), isCut}; }

    std::size_t Size() const { return bytes.size(); }

private:
    Bytes From(std::size_t offset) const { return Take(offset, bytes.size() - std::min(offset, bytes.size())); }

    Bytes bytes;
    bool& isCut;
};

// An offset of 0 means that there is no such text; the wide one is preferred.
std::u16string TextAt(Reader const& reader, unsigned int narrowOffset, unsigned int wideOffset) {
    if (wideOffset != 0) {
        return reader.Wide(wideOffset);
    }
    return narrowOffset != 0 ? reader.Narrow(narrowOffset) : std::u16string();
}

void ParseLinkInfo(Reader const& info, ShellLink& link) {
    bool const hasWide = info.Number(0x04, 4) >= WideLinkInfoHeaderSize;
    unsigned int const flags = info.Number(0x08, 4);
    std::u16string const suffix = TextAt(info, info.Number(0x18, 4), hasWide ? info.Number(0x20, 4) : 0);
    auto const join = [&](std::u16string base) {
        if (!suffix.empty()) {
            base += base.ends_with(u'\\') ? u"" : u"\\";
            base += suffix;
        }
        return base;
    };
    if ((flags & HasLocalBasePath) != 0) {
        link.localPath = join(TextAt(info, info.Number(0x10, 4), hasWide ? info.Number(0x1C, 4) : 0));
    }
    if ((flags & HasNetworkLink) != 0) {
        Reader const network = info.Inner(info.Number(0x14, 4));
        unsigned int const nameOffset = network.Number(0x08, 4);
        link.networkPath =
            join(TextAt(network, nameOffset, nameOffset > NarrowNetworkLinkSize ? network.Number(0x14, 4) : 0));
    }
}

} // namespace

bool ParseShellLink(std::span<std::byte const> bytes, ShellLink& link) {
    bool isCut = false;
    Reader const file(bytes, isCut);
    Bytes const classId = file.Take(ClassIdOffset, LinkClassId.size());
    bool const isLink = std::equal(classId.begin(), classId.end(), LinkClassId.begin(), LinkClassId.end(),
                                   [](std::byte left, unsigned char right) { return left == std::byte{right}; });
    if (file.Number(0, 4) != HeaderSize || !isLink) {
        return false;
    }
    ShellLink result;
    unsigned int const flags = file.Number(FlagsOffset, 4);
    std::size_t offset = HeaderSize;
    if ((flags & HasTargetIdList) != 0) {
        offset += 2 + file.Number(offset, 2);
    }
    if ((flags & HasLinkInfo) != 0) {
        Reader const info = file.Inner(offset);
        if ((flags & ForceNoLinkInfo) == 0) {
            ParseLinkInfo(info, result);
        }
        offset += info.Size();
    }

    for (unsigned int flag = HasName; flag <= HasIconLocation; flag <<= 1) {
        if ((flags & flag) == 0) {
            continue;
        }
        bool const isWide = (flags & IsUnicode) != 0;
        std::size_t const size = file.Number(offset, 2) * (isWide ? 2U : 1U);
        Bytes const text = file.Take(offset + 2, size);
        offset += 2 + size;
        if (flag == HasRelativePath) {
            result.relativePath = isWide ? DecodeWide(text) : DecodeNarrow(text);
        } else if (flag == HasWorkingDirectory) {
            result.workingDirectory = isWide ? DecodeWide(text) : DecodeNarrow(text);
        }
    }

    // The block that ends the list is often missing.
    while (!isCut && offset + 4 <= bytes.size() && file.Number(offset, 4) >= BlockHeaderSize) {
        Reader const block = file.Inner(offset);
        if (block.Number(4, 4) == EnvironmentSignature) {
            result.environmentPath = block.Wide(EnvironmentWideOffset);
            if (result.environmentPath.empty()) {
                result.environmentPath = block.Narrow(EnvironmentNarrowOffset);
            }
        }
        offset += block.Size();
    }
    if (isCut) {
        return false;
    }
    link = std::move(result);
    return true;
}

} // namespace platform
