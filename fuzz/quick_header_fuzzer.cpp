// SPDX-License-Identifier: MIT
// Any bytes as a plain scene: the first one chooses the format, and behind a byte 0xFF stands the file of materials.
// What is told of them must hold together.
#include "plugins/scene/quick/quick_header.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

class MemorySource final : public QuickSource {
public:
    MemorySource(std::string_view file, std::string_view companion) : bytes(file), beside(companion) {}

    unsigned long long GetSize() const override { return bytes.size(); }
    std::size_t Read(char* data, std::size_t size) override {
        // In pieces, as a pipe or a slow disk would.
        std::size_t const count = std::min({size, bytes.size() - taken, std::size_t{97}});
        std::memcpy(data, bytes.data() + taken, count);
        taken += count;
        return count;
    }
    Beside OpenBeside(std::string const&, std::unique_ptr<QuickSource>& opened) override {
        opened = std::make_unique<MemorySource>(beside, "");
        return beside.empty() ? Beside::Missing : Beside::There;
    }
    std::string GetStem() const override { return "scene"; }

private:
    std::string_view bytes;
    std::string_view beside;
    std::size_t taken = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    constexpr std::string_view formats[] = {"stl", "ply", "obj"};
    std::string_view const input(reinterpret_cast<char const*>(data) + 1, size - 1);
    std::size_t const end = data[0] % 3 == 2 ? input.find('\xFF') : std::string_view::npos;
    MemorySource source(input.substr(0, end), end < input.size() ? input.substr(end + 1) : std::string_view());
    CSceneDocument scene;
    if (ReadQuickHeader(formats[data[0] % 3], source, scene)) {
        bool const holds = *scene.counts.faces > 0 && *scene.counts.materials == scene.materials.size() &&
                           !scene.boundingBox.IsEmpty() && scene.boundingBox.lowest.y <= scene.boundingBox.highest.y;
        if (!holds) {
            std::abort();
        }
    }
    return 0;
}
