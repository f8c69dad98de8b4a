// SPDX-License-Identifier: MIT
// Writes the shell's table of types: what the installed assimp reads and writes.
//
// usage: scene-types OUTPUT
#include "plugins/scene/scene_formats.h"

#include <algorithm>
#include <assimp/Exporter.hpp>
#include <assimp/Importer.hpp>
#include <assimp/importerdesc.h>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

namespace {

struct Type {
    SceneFormat format;
    std::vector<std::string> extensions;
    bool loads = false;
    bool saves = false;
};

/// The type of a format, added when there is none yet.
Type& TypeOf(std::vector<Type>& types, SceneFormat const& format) {
    for (Type& type : types) {
        if (type.format.word == format.word) {
            return type;
        }
    }
    return types.emplace_back(Type{format, {}});
}

void AddExtension(Type& type, std::string const& extension) {
    // The registry goes by the last extension of a name, so that one of two parts (mesh.xml) would never be found. And
    // hardly any .xml file is a scene: each other one would be reported as a broken scene.
    if (extension.find('.') == std::string::npos && extension != "xml" &&
        std::find(type.extensions.begin(), type.extensions.end(), extension) == type.extensions.end()) {
        type.extensions.push_back(extension);
    }
}

std::vector<Type> CollectTypes() {
    std::vector<Type> types;
    Assimp::Importer const importer;
    for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
        aiImporterDesc const& description = *importer.GetImporterInfo(i);
        Type& type = TypeOf(types, GetSceneFormat(description.mName, description.mFileExtensions));
        type.loads = true;
        std::istringstream list(description.mFileExtensions);
        for (std::string extension; list >> extension;) {
            AddExtension(type, extension);
        }
    }
    Assimp::Exporter const exporter;
    for (std::size_t i = 0; i < exporter.GetExportFormatCount(); ++i) {
        aiExportFormatDesc const& description = *exporter.GetExportFormatDescription(i);
        std::string const word = GetExportedFormat(description.id);
        auto const known =
            std::find_if(types.begin(), types.end(), [&](Type const& t) { return t.format.word == word; });
        Type& type = known != types.end() ? *known : TypeOf(types, GetSceneFormat("", word));
        type.saves = true;
        AddExtension(type, description.fileExtension);
    }
    std::stable_sort(types.begin(), types.end(),
                     [](Type const& left, Type const& right) { return left.format.rank < right.format.rank; });
    return types;
}

/// Gives a type whose letters are taken already other ones: its last letter becomes a digit.
void KeepClassesApart(std::vector<Type>& types) {
    for (std::size_t i = 0; i < types.size(); ++i) {
        auto const isTaken = [&] {
            return std::any_of(types.begin(), types.begin() + static_cast<std::ptrdiff_t>(i), [&](Type const& other) {
                return other.format.classLetters == types[i].format.classLetters;
            });
        };
        for (char digit = '2'; digit <= '9' && isTaken(); ++digit) {
            types[i].format.classLetters.back() = digit;
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: scene-types OUTPUT\n";
        return 2;
    }
    std::vector<Type> types = CollectTypes();
    KeepClassesApart(types);
    std::ofstream output(arguments[1]);
    for (Type const& type : types) {
        std::string extensions;
        for (std::string const& extension : type.extensions) {
            extensions += (extensions.empty() ? "." : "|.") + extension;
        }
        output << "{u\"" << type.format.description << "\", u\"" << extensions << "\", FourCC(\""
               << type.format.classLetters << "\"), FileKind3D" << (type.loads ? " | FilePropertyLoad" : "")
               << (type.saves ? " | FilePropertySave" : "") << ", \"" << type.format.word << "\"},\n";
    }
    output.close();
    return output ? 0 : 1;
}
