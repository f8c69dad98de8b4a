// SPDX-License-Identifier: MIT
#include "media/scene_io.h"

#include "media/scene_parser.h"

CSceneParser::~CSceneParser() = default;

bool CSceneIo::ReadHeader(CSceneDocument& scene, CIoOptions* options) {
    return FillDocument<CSceneParser>(options, scene,
                                      [&](CSceneParser& parser) { return parser.ReadHeader(scene, limits, options); });
}

bool CSceneIo::Read(CSceneDocument& scene, CIoOptions* options) {
    return FillDocument<CSceneParser>(options, scene,
                                      [&](CSceneParser& parser) { return parser.Read(scene, limits, options); });
}

bool CSceneIo::Write(CSceneDocument const& scene, CIoOptions* options) {
    return TryParsers(options, [&](CFileParser& base) {
        auto* const parser = dynamic_cast<CSceneParser*>(&base);
        return parser && parser->Write(scene, options);
    });
}

void CSceneIo::Register() {
    RegisterFileIoCreationCallback(FileKind3D,
                                   [](CFileNameSpec const& name, unsigned int flags, CWnd* parent) -> CFileIo* {
                                       return new CSceneIo(name, flags, parent);
                                   });
}
