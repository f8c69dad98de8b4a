// SPDX-License-Identifier: MIT
// The form of a CXArray in an archive: its count, then element by element, or the block of them where the elements are
// their bytes.

#include "zeltools/foundation/array_storage.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/xlc_string.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xarchive_private.h"

#include <algorithm>
#include <climits>

namespace detail {
namespace {

/// One transfer moves at most this many elements, so that those of 8 bytes stay below 2^31 bytes.
constexpr int LargestTransfer = 0x0FFFFFFF;

/// Calls `visit(first, count)` for the elements from `begin` to `end`, a transfer at a time.
template <class Visit>
void ForEachTransfer(int begin, int end, Visit const& visit) {
    for (int count; begin < end; begin += count) {
        count = std::min(end - begin, LargestTransfer);
        visit(begin, count);
    }
}

void StoreElements(CXArchive& archive, ArrayAccess const& access) {
    auto* const bytes = static_cast<unsigned char*>(access.data);
    if (access.serializeElement) {
        for (int i = 0; i < access.size; ++i)
            access.serializeElement(archive, bytes + static_cast<std::size_t>(i) * access.elementSize);
    } else {
        ForEachTransfer(0, access.size, [&](int first, int count) {
            archive.Write(bytes + static_cast<std::size_t>(first) * access.elementSize,
                          static_cast<std::size_t>(count) * access.elementSize);
        });
    }
}

void LoadElements(CXArchive& archive, ArrayAccess const& access, int first, int end, unsigned char* bytes) {
    if (access.serializeElement) {
        for (int i = first; i < end; ++i)
            access.serializeElement(archive, bytes + static_cast<std::size_t>(i) * access.elementSize);
    } else {
        ForEachTransfer(first, end, [&](int begin, int count) {
            archive.EnsureRead(bytes + static_cast<std::size_t>(begin) * access.elementSize,
                               static_cast<std::size_t>(count) * access.elementSize);
        });
    }
}

/// Elements that may be made before any has come: each of them takes a byte of the stream at the least, and `sizeof`
/// in memory.
int FirstPiece(CXArchive const& archive, ArrayAccess const& access, int count) {
    unsigned long long const bytes = static_cast<unsigned long long>(count) * access.elementSize;
    if (!access.serializeElement && archive.RequireBytes(bytes))
        return count;
    return std::min(count, std::max(static_cast<int>(TrustedBytes / access.elementSize), 1));
}

void LoadArray(CXArchive& archive, ArrayAccess const& access) {
    unsigned long long const claimed = archive.ReadCount();
    if (claimed > INT_MAX)
        ThrowInvalidArg();
    int const count = static_cast<int>(claimed);
    access.setSize(access.array, 0); // what was there goes whole, so that no old element takes part
    int done = 0;
    for (int next = FirstPiece(archive, access, count); done < count; next = std::min(count - done, done)) {
        void* const data = access.setSize(access.array, done + next);
        LoadElements(archive, access, done, done + next, static_cast<unsigned char*>(data));
        done += next;
    }
}

template <class Text>
void SerializeText(CXArchive& archive, Text& text) {
    if (archive.IsStoring())
        archive << text;
    else
        archive >> text;
}

} // namespace

void SerializeArray(CXArchive& archive, ArrayAccess const& access) {
    if (archive.IsLoading()) {
        LoadArray(archive, access);
        return;
    }
    if (!access.data && access.size != 0)
        ThrowInvalidArg();
    archive.WriteCount(static_cast<unsigned int>(access.size));
    StoreElements(archive, access);
}

void SerializeElement(CXArchive& archive, bool& element) {
    unsigned char byte = element ? 1 : 0;
    if (archive.IsStoring()) {
        archive << byte;
        return;
    }
    archive >> byte;
    element = byte != 0; // any other byte would be no bool
}

void SerializeElement(CXArchive& archive, CXTString<char>& element) {
    SerializeText(archive, element);
}

/// With all of its length, zeros inside included, though a reader will end it at the first of them.
void SerializeElement(CXArchive& archive, CXTString<char16_t>& element) {
    if (archive.IsLoading()) {
        archive >> element;
        return;
    }
    std::size_t const length = static_cast<std::size_t>(element.GetLength());
    archive.WriteStringLength(length, xEncodingUtf16);
    archive.Write(static_cast<char16_t const*>(element), length * sizeof(char16_t));
}

void SerializeElement(CXArchive& archive, CExLCString& element) {
    CXTString<char16_t> text(element);
    SerializeElement(archive, text);
    if (archive.IsLoading())
        element = text; // lowers what a foreign writer left in capitals
}

} // namespace detail
