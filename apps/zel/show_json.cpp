// SPDX-License-Identifier: MIT
#include "show_json.h"

#include "file_facts.h"
#include "json_text.h"
#include "media/image_document.h"
#include "media_facts.h"
#include "utf8_text.h"
#include <zeltools/files/paths/native_names.h>

#include <algorithm>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

Json Shown(CXTString<char16_t> const& text) {
    return ShownUtf8(Utf8(text));
}

Json Metadata(CMetadata const& metadata) {
    Json object = Json::object();
    CXTString<char16_t> name;
    CXTString<char16_t> value;
    for (unsigned int i = 0; metadata.GetAt(i, name, value); ++i) {
        object[Shown(name).get<std::string>()] = Shown(value);
    }
    return object;
}

Json Vector(SceneVector const& v) {
    return {v.x, v.y, v.z};
}

Json Mesh(SceneMesh const& mesh) {
    Json object;
    object["name"] = Shown(mesh.name);
    object["vertices"] = mesh.vertices.size();
    object["faces"] = mesh.faces.size();
    object["normals"] = !mesh.normals.empty();
    object["textureCoordinates"] = !mesh.textureCoordinates.empty();
    object["material"] = mesh.material;
    return object;
}

Json Material(SceneMaterial const& material, std::vector<std::string> const& missing) {
    Json object;
    object["name"] = Shown(material.name);
    object["diffuse"] = material.diffuse;
    Json textures = Json::array();
    for (CXTString<char16_t> const& path : material.texturePaths) {
        std::string const name = static_cast<char const*>(fileGetNativeName(path));
        Json texture;
        SetName(texture, "path", name);
        texture["missing"] = std::find(missing.begin(), missing.end(), name) != missing.end();
        textures.push_back(texture);
    }
    object["textures"] = textures;
    return object;
}

Json Node(SceneNode const& node) {
    Json object;
    object["name"] = Shown(node.name);
    object["parent"] = node.parent == SceneNode::NoParent ? Json(nullptr) : Json(node.parent);
    object["transform"] = node.transform;
    object["meshes"] = node.meshes;
    return object;
}

template <class Item, class Make>
Json Array(std::vector<Item> const& items, Make const& make) {
    Json array = Json::array();
    for (Item const& item : items) {
        array.push_back(make(item));
    }
    return array;
}

Json Counts(SceneCounts const& counts) {
    Json object;
    auto const add = [&](char const* name, std::optional<unsigned long long> const& count) {
        object[name] = count ? Json(*count) : Json(nullptr);
    };
    add("vertices", counts.vertices);
    add("faces", counts.faces);
    add("meshes", counts.meshes);
    add("materials", counts.materials);
    add("nodes", counts.nodes);
    add("cameras", counts.cameras);
    add("lights", counts.lights);
    add("animations", counts.animations);
    return object;
}

} // namespace

Json FileJson(FileFacts const& facts) {
    Json object;
    facts.AddTypeTo(object);
    object["size"] = facts.sizeBytes;
    object["written"] = fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", facts.lastWrite.GetYear(),
                                    facts.lastWrite.GetMonth() + 1, facts.lastWrite.GetDay(), facts.lastWrite.GetHour(),
                                    facts.lastWrite.GetMinute(), facts.lastWrite.GetSecond());
    return object;
}

void AddImage(CImageDocument const& image, Json& object) {
    object["format"] = Shown(image.format);
    Json subImages = Json::array();
    for (std::size_t i = 0; i < image.GetSubImageCount(); ++i) {
        CSubImage const& subImage = image.GetSubImage(i);
        Json entry;
        entry["name"] = Shown(subImage.name);
        entry["width"] = subImage.width;
        entry["height"] = subImage.height;
        entry["depth"] = subImage.depth;
        Json channels = Json::array();
        for (CXTString<char16_t> const& channel : subImage.channels) {
            channels.push_back(Shown(channel));
        }
        entry["channels"] = channels;
        entry["pixelType"] = GetPixelTypeName(subImage.pixelType);
        entry["colorSpace"] = subImage.colorSpace.IsEmpty() ? Json(nullptr) : Shown(subImage.colorSpace);
        entry["metadata"] = Metadata(subImage.metadata);
        subImages.push_back(entry);
    }
    object["subimages"] = subImages;
}

void AddScene(CSceneDocument const& scene, CXTString<char16_t> const& path, Json& object) {
    std::vector<std::string> const missing = FindMissingTextures(scene, path);
    object["format"] = Shown(scene.format);
    object["counts"] = Counts(scene.counts);
    object["boundingBox"] = scene.boundingBox.IsEmpty() ? Json(nullptr)
                                                        : Json{{"min", Vector(scene.boundingBox.lowest)},
                                                               {"max", Vector(scene.boundingBox.highest)}};
    object["unitMeters"] = scene.unitMeters ? Json(*scene.unitMeters) : Json(nullptr);
    object["meshes"] = Array(scene.meshes, Mesh);
    object["materials"] =
        Array(scene.materials, [&](SceneMaterial const& material) { return Material(material, missing); });
    object["nodes"] = Array(scene.nodes, Node);
    object["cameras"] = Array(scene.cameras, [](SceneCamera const& camera) {
        return Json{{"name", Shown(camera.name)}, {"horizontalAngle", camera.horizontalAngle}};
    });
    object["lights"] = Array(scene.lights, [](SceneLight const& light) {
        return Json{{"name", Shown(light.name)}, {"kind", Shown(light.kind)}};
    });
    object["metadata"] = Metadata(scene.metadata);
}

} // namespace zel
