// SPDX-License-Identifier: MIT
// What a host and a scene worker say to each other.
//
//     host:    SceneRequest, and for writing a scene
//     worker:  SceneReply, and after a successful reading a scene
//
// Each function below serves both ends: with a WireWriter it sends, with a WireReader it fills.

#pragma once

#include "media/media_limits.h"
#include "media/scene_document.h"
#include "plugins/scene/wire.h"
#include <zeltools/files/io_result.h>

#include <string>
#include <utility>

enum class SceneTask : unsigned char {
    ReadHeader,
    Read,
    Write,
};

struct SceneRequest {
    SceneTask task = SceneTask::ReadHeader;
    std::string format;  ///< The format's word.
    std::string file;    ///< Native and absolute.
    std::string options; ///< Of the format: "name=value" with a line feed behind each.
    unsigned long long maxFaces = 0;
    unsigned long long maxVertices = 0;
};

/// Why a file is refused, where the host has the words in the user's language.
enum class SceneFault : unsigned char {
    None,         ///< `code` or `text` says it.
    TooManyFaces, ///< `number` of them.
    TooManyVertices,
    NoNumber,    ///< A vertex of mesh `number` is none.
    UnsoundMesh, ///< Mesh `number` refers to what is not there.
};

struct SceneReply {
    int code = IoSuccess;
    SceneFault fault = SceneFault::None;
    unsigned long long number = 0;
    std::string text; ///< assimp's words, with IoOwnText.

    /// A failure in assimp's words, or as a code where it has none.
    static SceneReply InWords(std::string words, int otherwise) {
        return {words.empty() ? otherwise : IoOwnText, SceneFault::None, 0, std::move(words)};
    }
};

template <class End, class Request>
void TransferRequest(End& end, Request& request) {
    end.Number(request.task);
    end.Text(request.format);
    end.Text(request.file);
    end.Text(request.options);
    end.Number(request.maxFaces);
    end.Number(request.maxVertices);
}

template <class End, class Reply>
void TransferReply(End& end, Reply& reply) {
    end.Number(reply.code);
    end.Number(reply.fault);
    end.Number(reply.number);
    end.Text(reply.text);
}

template <class End, class Vector>
void TransferVector(End& end, Vector& vector) {
    end.Number(vector.x);
    end.Number(vector.y);
    end.Number(vector.z);
}

template <class End, class Metadata>
void TransferMetadata(End& end, Metadata& metadata) {
    struct Value {
        CXTString<char16_t> name;
        CXTString<char16_t> value;
    };
    std::vector<Value> values;
    if constexpr (!End::Loads) {
        values.resize(metadata.GetCount());
        for (unsigned int i = 0; i < metadata.GetCount(); ++i) {
            metadata.GetAt(i, values[i].name, values[i].value);
        }
    }
    end.Items(values, [&end](auto& value) {
        end.Text(value.name);
        end.Text(value.value);
    });
    if constexpr (End::Loads) {
        for (Value const& value : values) {
            metadata.SetText(value.name, value.value);
        }
    }
}

template <class End, class Mesh>
void TransferMesh(End& end, Mesh& mesh) {
    end.Text(mesh.name);
    end.Block(mesh.vertices);
    end.Block(mesh.normals);
    end.Block(mesh.textureCoordinates);
    end.Block(mesh.faces);
    end.Block(mesh.faceIndices);
    end.Number(mesh.material);
}

template <class End, class Material>
void TransferMaterial(End& end, Material& material) {
    end.Text(material.name);
    for (auto& part : material.diffuse) {
        end.Number(part);
    }
    end.Items(material.texturePaths, [&end](auto& path) { end.Text(path); });
}

template <class End, class Node>
void TransferNode(End& end, Node& node) {
    end.Text(node.name);
    end.Number(node.parent);
    for (auto& cell : node.transform) {
        end.Number(cell);
    }
    end.Block(node.meshes);
}

template <class End, class Scene>
void TransferScene(End& end, Scene& scene) {
    end.Text(scene.format);
    for (auto* const count :
         {&scene.counts.vertices, &scene.counts.faces, &scene.counts.meshes, &scene.counts.materials,
          &scene.counts.nodes, &scene.counts.cameras, &scene.counts.lights, &scene.counts.animations}) {
        end.Optional(*count);
    }
    TransferVector(end, scene.boundingBox.lowest);
    TransferVector(end, scene.boundingBox.highest);
    end.Optional(scene.unitMeters);
    end.Items(scene.meshes, [&end](auto& mesh) { TransferMesh(end, mesh); });
    end.Items(scene.materials, [&end](auto& material) { TransferMaterial(end, material); });
    end.Items(scene.nodes, [&end](auto& node) { TransferNode(end, node); });
    end.Items(scene.cameras, [&end](auto& camera) {
        end.Text(camera.name);
        end.Number(camera.horizontalAngle);
    });
    end.Items(scene.lights, [&end](auto& light) {
        end.Text(light.name);
        end.Text(light.kind);
    });
    TransferMetadata(end, scene.metadata);
}
