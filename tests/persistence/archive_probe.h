// SPDX-License-Identifier: MIT
// Streams for the tests of the archive: bytes from what a test stores, loads from bytes, and which exception came.

#pragma once

#include "zeltools/foundation/xexception.h"
#include "zeltools/persistence/xarchive.h"
#include "zeltools/persistence/xmem_file.h"

#include <string>

namespace probe {

constexpr int InvalidArg = -1;
constexpr int Memory = -2;

/// The cause of the archive exception that an action throws; 0 for none.
template <class Action>
int CauseOf(Action const& action) {
    try {
        action();
    } catch (CXArchiveException* exception) {
        int const cause = exception->cause;
        exception->Delete();
        return cause;
    } catch (CXInvalidArgException* exception) {
        exception->Delete();
        return InvalidArg;
    } catch (CXMemoryException* exception) {
        exception->Delete();
        return Memory;
    }
    return 0;
}

/// What `write(archive)` stores.
template <class Write>
std::string Stored(Write const& write) {
    CXMemFile file;
    CXArchive archive(&file, CXArchive::Storing);
    write(archive);
    archive.Close();
    return {reinterpret_cast<char const*>(file.GetBuffer()), static_cast<std::size_t>(file.GetLength())};
}

/// Lets `read(archive)` load from bytes.
/// @return CauseOf.
template <class Read>
int Load(std::string const& bytes, Read const& read) {
    CXMemFile file(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), false, true);
    CXArchive archive(&file, CXArchive::Loading);
    return CauseOf([&] { read(archive); });
}

} // namespace probe
