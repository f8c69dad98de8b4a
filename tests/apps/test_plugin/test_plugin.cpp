// SPDX-License-Identifier: MIT
// Parsers that do what the files say, so that a test can have any behaviour of a parser:
//
//     image W H A     an image of W by H pixels, and all of A its artist, where there is one
//     slow MS         an image, after so many milliseconds of work
//     second          an image, but only for the extension's second parser
//     loop            works for ever, and asks whether to stop
//     hang            works for ever and never asks
//
// `.tim` files have two parsers. Those of `.alo` must run alone; the height of their image is the number of parsers
// that are at work at its end. `.tsc` is a scene of so many faces, whose further words are its textures.
// Saving needs a name of the option "mode", when there is one, that is "good"; "half" writes half a file and waits.

#include "media/bitmap_parser.h"
#include "media/media_io.h"
#include "media/named_options.h"
#include "media/scene_parser.h"
#include <zeltools/files/io_options.h>
#include <zeltools/files/paths/native_names.h>
#include <zeltools/files/plugin_loader.h>
#include <zeltools/foundation/string_conversion.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace {

constexpr unsigned int First = FourCC("TIM1");
constexpr unsigned int Second = FourCC("TIM2");
constexpr unsigned int Alone = FourCC("ALON");
constexpr unsigned int Scene = FourCC("TSCN");

std::atomic<unsigned int> atWork{0};

class AtWork {
public:
    AtWork() { ++atWork; }
    ~AtWork() { --atWork; }
    AtWork(AtWork const&) = delete;
    AtWork& operator=(AtWork const&) = delete;
};

void Work(unsigned int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::string NativeName(CFileParser const& parser) {
    return static_cast<char const*>(fileGetNativeName(parser.GetIoMgr()->GetCompleteName()));
}

bool Refuse(CFileParser const& parser, char16_t const* text) {
    parser.GetIoMgr()->SetIoError(CXTString<char16_t>(text), nullptr, IoLogInfo::Error);
    return false;
}

bool WriteWord(CFileParser const& parser, CIoOptions const* options, std::string const& text) {
    CXTString<char16_t> const mode = options ? GetNamedOption(options->GetParserOptions(), u"mode") : u"";
    std::ofstream(NativeName(parser)) << (mode == u"half" ? text.substr(0, text.size() / 2) : text);
    while (mode == u"half") {
        Work(1);
    }
    return mode.IsEmpty() || mode == u"good" || Refuse(parser, u"the mode is not good");
}

class ImageParser : public CBitmapParser {
public:
    ImageParser(CMediaIo* owner, unsigned int parserClass) : CBitmapParser(owner), classId(parserClass) {}

    bool IsSingleThreaded() const override { return classId == Alone; }

    bool ReadHeader(CImageDocument& image, MediaLimits const& limits, CIoOptions*) override {
        AtWork const here;
        std::ifstream file(NativeName(*this));
        std::string word;
        file >> word;
        CSubImage& picture = image.AddSubImage();
        picture.width = picture.height = 1;
        picture.channels.Add(u"Y");
        if (word == "image") {
            file >> picture.width >> picture.height >> std::ws;
            if (std::string artist; std::getline(file, artist)) {
                picture.metadata.SetText(u"Artist", CXTString<char16_t>(artist.c_str()));
                picture.metadata.SetInteger(u"Shots", 4711);
            }
        } else if (word == "slow") {
            unsigned int milliseconds = 0;
            file >> milliseconds;
            Work(milliseconds);
        } else if (word == "loop") {
            while (!ShouldCancelParser()) {
                Work(1);
            }
            GetIoMgr()->SetIoError(IoCanceled, nullptr, IoLogInfo::Error);
            return false;
        } else if (word == "hang") {
            for (;;) {
                Work(1);
            }
        } else if (word != "second" || classId != Second) {
            return Refuse(*this, u"100%s of \x1B[31m it is wrong");
        }
        if (1ULL * picture.width * picture.height > limits.maxPixels) {
            return Refuse(*this, u"too many pixels");
        }
        if (classId == Alone) {
            picture.height = atWork;
        }
        return true;
    }

    bool Read(CImageDocument& image, MediaLimits const& limits, CIoOptions* options) override {
        return ReadHeader(image, limits, options) && image.GetSubImage(0).AllocatePixels(limits.maxImageBytes);
    }

    bool Write(CImageDocument const& image, CIoOptions* options) override {
        CSubImage const& picture = image.GetSubImage(0);
        return WriteWord(*this, options,
                         "image " + std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n");
    }

private:
    unsigned int classId;
};

class SceneParser : public CSceneParser {
public:
    using CSceneParser::CSceneParser;

    bool ReadHeader(CSceneDocument& scene, MediaLimits const&, CIoOptions*) override {
        std::ifstream file(NativeName(*this));
        unsigned long long faces = 0;
        if (!(file >> faces)) {
            return false;
        }
        scene.counts.faces = faces;
        scene.counts.animations = 2;
        scene.boundingBox.Add({0, 0, 0});
        scene.boundingBox.Add({1, 2, 3});
        SceneMaterial& material = scene.materials.emplace_back();
        for (std::string texture; file >> texture;) {
            material.texturePaths.push_back(static_cast<char16_t const*>(XCA2W(texture.c_str(), xEncodingUtf8)));
        }
        return true;
    }

    bool Read(CSceneDocument& scene, MediaLimits const& limits, CIoOptions* options) override {
        return ReadHeader(scene, limits, options);
    }

    bool Write(CSceneDocument const& scene, CIoOptions* options) override {
        std::ofstream(NativeName(*this) + ".side") << "beside";
        return WriteWord(*this, options, std::to_string(*scene.counts.faces) + "\n");
    }
};

bool Enter(IoPluginMode mode, void* data, unsigned int kind, IoPluginCallback callback) {
    if (mode == IoPluginEnumerate) {
        auto& types = *static_cast<CXArray<CFileExt>*>(data);
        unsigned int const abilities = kind | FilePropertyLoad | FilePropertySave;
        auto const add = [&](char16_t const* text, char16_t const* extension, unsigned int classId) {
            types.Add(CFileExt(text, extension, classId, abilities, FileIdPlugin, FileIdPlugin, callback));
        };
        if (kind == FileKindBitmap) {
            add(u"Test images", u".tim", First);
            add(u"Other test images", u".tim|.ti2", Second);
            add(u"Lonely test images", u".alo", Alone);
        } else {
            add(u"Test scenes", u".tsc", Scene);
        }
        return true;
    }
    if (mode == IoPluginCreateParser) {
        auto& info = *static_cast<IoPluginParserInfo*>(data);
        auto* const owner = dynamic_cast<CMediaIo*>(info.io);
        info.parser = kind == FileKindBitmap ? static_cast<CFileParser*>(new ImageParser(owner, info.classId))
                                             : new SceneParser(owner);
    }
    return true;
}

} // namespace

extern "C" {

ZEL_MEDIA_API unsigned int QuenbyGetPluginVersion() {
    return PluginRelease;
}

ZEL_MEDIA_API bool InitBitmapParser(IoPluginMode mode, void* data) {
    return Enter(mode, data, FileKindBitmap, &InitBitmapParser);
}

ZEL_MEDIA_API bool Init3DParser(IoPluginMode mode, void* data) {
    return Enter(mode, data, FileKind3D, &Init3DParser);
}
}
