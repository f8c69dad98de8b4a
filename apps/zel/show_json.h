// SPDX-License-Identifier: MIT
// All that is known of a file, as one object; `zel show` prints it as it is or as lines for a person.

#pragma once

#include <nlohmann/json_fwd.hpp>

class CImageDocument;
class CSceneDocument;
template <class T>
class CXTString;

namespace zel {

struct FileFacts;

nlohmann::ordered_json FileJson(FileFacts const& facts);
void AddImage(CImageDocument const& image, nlohmann::ordered_json& object);
/// @param path  The scene's own, where its textures are looked for.
void AddScene(CSceneDocument const& scene, CXTString<char16_t> const& path, nlohmann::ordered_json& object);

} // namespace zel
