// SPDX-License-Identifier: MIT
// write_type_table OUTPUT
// Asks OpenImageIO which formats it has and writes the shell's table of types, so that the shell knows them without
// opening the library. Part of the build; not installed.
//
// A format whose extension a built-in type claims becomes that type, with all of its extensions; the formats of one
// library word may so become several types. Where an extension is nobody's yet, it goes with the one before it.
#include "plugins/bitmap/format_names.h"
#include <zeltools/files/file_types.h>
#include <zeltools/foundation/four_cc.h>

#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace {

namespace oiio = OIIO;

struct Type {
    std::string classLetters;
    std::string description;
    std::vector<std::string> extensions; ///< Dotted.
    unsigned int properties = 0;
    std::string format;
};

/// Neither files nor images: one makes up its pixels, the other prints them to the terminal.
bool IsForTests(std::string_view format) {
    return format == "null" || format == "term";
}

/// Holds sound and no picture.
bool HasNoPicture(std::string_view extension) {
    return extension == "m4a";
}

std::string ClassLetters(unsigned int classId) {
    return FourCCText(classId).data();
}

unsigned int ClassId(std::string_view letters) {
    char const code[] = {letters[0], letters[1], letters[2], letters[3], 0};
    return FourCC(code);
}

bool FindBuiltIn(std::string const& extension, CFileExt& type) {
    return fileGetFileExt(CXTString<char16_t>(extension.c_str()), type);
}

/// A class that is neither built in nor another type's: a digit takes the place of the last letter where it would be.
std::string FreeClass(std::string letters, std::vector<Type> const& types) {
    auto const isTaken = [&](std::string const& wanted) {
        return fileGetProperties(ClassId(wanted)) != 0 ||
               std::any_of(types.begin(), types.end(), [&](Type const& type) { return type.classLetters == wanted; });
    };
    for (char digit = '2'; isTaken(letters) && digit <= '9'; ++digit) {
        letters[3] = digit;
    }
    return letters;
}

void AddExtension(Type& type, std::string const& extension) {
    if (std::find(type.extensions.begin(), type.extensions.end(), extension) == type.extensions.end()) {
        type.extensions.push_back(extension);
    }
}

/// Takes a built-in class over. What else it is (a video) it remains.
Type TakenOver(CFileExt const& builtIn, Type const& model) {
    Type type = model;
    type.classLetters = ClassLetters(builtIn.GetClass());
    type.properties |= builtIn.GetProperties() & ~(FilePropertyAnyLoad | FilePropertyAnySave);
    return type;
}

void AddBuiltInExtensions(Type& type) {
    CXArray<CXTString<char16_t>> extensions;
    fileGetExtensionArray(ClassId(type.classLetters), extensions, false);
    for (CXTString<char16_t> const& extension : extensions) {
        AddExtension(type, static_cast<char const*>(CXTString<char>(extension)));
    }
}

void AddFormat(std::string const& format, std::vector<std::string> const& extensions, unsigned int properties,
               std::vector<Type>& types) {
    FormatName const name = GetFormatName(format);
    Type const model{.classLetters = {},
                     .description = name.description,
                     .extensions = {},
                     .properties = properties,
                     .format = format};
    std::size_t const first = types.size();
    std::vector<std::string> unclaimed;
    for (std::string const& extension : extensions) {
        CFileExt builtIn;
        if (FindBuiltIn(extension, builtIn)) {
            std::string const letters = ClassLetters(builtIn.GetClass());
            auto found = std::find_if(types.begin() + static_cast<std::ptrdiff_t>(first), types.end(),
                                      [&](Type const& type) { return type.classLetters == letters; });
            if (found == types.end()) {
                types.push_back(TakenOver(builtIn, model));
                found = types.end() - 1;
                found->extensions.swap(unclaimed);
            }
            AddExtension(*found, extension);
        } else if (types.size() > first) {
            AddExtension(types.back(), extension);
        } else {
            unclaimed.push_back(extension);
        }
    }
    for (std::size_t i = first; i < types.size(); ++i) {
        AddBuiltInExtensions(types[i]);
    }
    if (types.size() == first && !unclaimed.empty()) {
        types.push_back(model);
        types.back().extensions = unclaimed;
        types.back().classLetters = FreeClass(name.classLetters, types);
    }
}

std::set<std::string> Words(char const* attribute) {
    std::string const list = oiio::get_string_attribute(attribute);
    std::vector<std::string> const words = oiio::Strutil::splits(list, ",");
    return {words.begin(), words.end()};
}

std::vector<Type> CollectTypes() {
    std::set<std::string> const readable = Words("input_format_list");
    std::set<std::string> const writable = Words("output_format_list");
    std::vector<Type> types;
    // "tiff:tif,tiff;png:png"
    for (std::string const& entry : oiio::Strutil::splits(oiio::get_string_attribute("extension_list"), ";")) {
        std::size_t const colon = entry.find(':');
        std::string const format = entry.substr(0, colon);
        unsigned int const properties = FileKindBitmap | (readable.contains(format) ? FilePropertyLoad : 0u) |
                                        (writable.contains(format) ? FilePropertySave : 0u);
        if (IsForTests(format) || colon == std::string::npos) {
            continue;
        }
        std::vector<std::string> extensions;
        for (std::string const& extension : oiio::Strutil::splits(entry.substr(colon + 1), ",")) {
            if (!HasNoPicture(extension)) {
                extensions.push_back('.' + extension);
            }
        }
        AddFormat(format, extensions, properties, types);
    }
    return types;
}

} // namespace

int main(int count, char** arguments) {
    std::FILE* const output = count == 2 ? std::fopen(arguments[1], "w") : nullptr;
    if (!output) {
        std::fputs("write_type_table OUTPUT\n", stderr);
        return 2;
    }
    std::vector<Type> const types = CollectTypes();
    std::fputs("// Written by write_type_table when the plug-in was built.\n", output);
    for (Type const& type : types) {
        std::string const extensions = oiio::Strutil::join(type.extensions, "|");
        std::fprintf(output, "{u\"%s\", u\"%s\", FourCC(\"%s\"), 0x%X, \"%s\"},\n", type.description.c_str(),
                     extensions.c_str(), type.classLetters.c_str(), type.properties, type.format.c_str());
    }
    return std::fclose(output) == 0 && !types.empty() ? 0 : 1;
}
