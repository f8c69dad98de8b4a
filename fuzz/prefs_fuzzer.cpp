// SPDX-License-Identifier: MIT
// Any bytes as a preferences file: a load leaves the file alone and finds what a second load finds; a save keeps the
// other records, or sets the file aside byte for byte.
#include "zeltools/persistence/custom_data.h"
#include "zeltools/platform/native_path.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// A folder of this process, in memory where the system has one for that: a save flushes twice.
class Folder {
public:
    Folder() {
        std::string name = (fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "zel-XXXXXX";
        Require(mkdtemp(name.data()) != nullptr);
        native = name;
        path = platform::FromNativePath(name + "/a.prefs").c_str();
    }
    ~Folder() { fs::remove_all(native); }

    void Write(std::string_view bytes) const {
        for (fs::directory_entry const& entry : fs::directory_iterator(native)) {
            fs::remove(entry.path());
        }
        std::ofstream(native / "a.prefs", std::ios::binary) << bytes;
    }
    std::string Read(char const* name) const {
        std::ifstream file(native / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Holds(char const* name) const { return fs::exists(native / name); }

    fs::path native;
    CXTString<char16_t> path;
};

/// Whether two stores hold the same bytes. IsEqual goes by ids, and a file from outside may give two values one id.
bool HoldSameBytes(CCustomData const& a, CCustomData const& b) {
    unsigned int sizeOfA = 0;
    unsigned int sizeOfB = 0;
    void const* const bytesOfA = a.GetData(sizeOfA);
    void const* const bytesOfB = b.GetData(sizeOfB);
    return sizeOfA == sizeOfB && (sizeOfA == 0 || std::memcmp(bytesOfA, bytesOfB, sizeOfA) == 0);
}

unsigned int WordAt(std::string_view bytes, std::size_t offset) {
    unsigned int word = 0;
    if (bytes.size() >= offset + sizeof(word)) {
        bytes.copy(reinterpret_cast<char*>(&word), sizeof(word), offset);
    }
    return word;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Folder const folder;
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    folder.Write(bytes);

    // The first record's pair, and one that no file is likely to have.
    unsigned int const key1 = WordAt(bytes, 4);
    unsigned int const key2 = WordAt(bytes, 8);
    CCustomData first;
    bool const hasFirst = first.LoadFromPrefs(folder.path, key1, key2, false);
    Require(hasFirst || !first.HasData());
    Require(folder.Read("a.prefs") == bytes);

    CCustomData own;
    own.SetInt(1, 2);
    bool const isSaved = own.SaveToPrefs(folder.path, ~key1, ~key2);
    Require(!folder.Holds("a.prefs.tmp"));
    if (!isSaved) {
        Require(!folder.Holds("a.prefs") && folder.Read("a.prefs.lost") == bytes);
        return 0;
    }
    CCustomData again;
    Require(again.LoadFromPrefs(folder.path, ~key1, ~key2, false) && again.IsEqual(own));
    Require(again.LoadFromPrefs(folder.path, key1, key2, false) == hasFirst && HoldSameBytes(again, first));
    std::string const saved = folder.Read("a.prefs");
    Require(own.SaveToPrefs(folder.path, ~key1, ~key2));
    Require(folder.Read("a.prefs") == saved);
    return 0;
}
