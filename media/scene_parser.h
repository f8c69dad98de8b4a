// SPDX-License-Identifier: MIT
// What a plug-in of kind FileKind3D gives: a parser that reads and writes scenes.

#pragma once

#include "media/media_api.h"
#include "media/media_limits.h"
#include "media/media_parser.h"
#include "media/scene_document.h"

class CIoOptions;

/// A parser of one scene format, bound to the file of its manager. A failure is told to the manager by SetIoError, with
/// a text where the format's library has one, and leaves the document empty. ShouldCancelParser is polled at least
/// every 100 milliseconds, through the stream that is read; a cancelled operation ends with IoCanceled.
class ZEL_MEDIA_API CSceneParser : public CMediaParser {
public:
    using CMediaParser::CMediaParser;
    ~CSceneParser() override;

    /// Reads the counts, as far as the format tells them without the geometry.
    virtual bool ReadHeader(CSceneDocument& scene, MediaLimits const& limits, CIoOptions* options) = 0;
    /// Reads everything.
    virtual bool Read(CSceneDocument& scene, MediaLimits const& limits, CIoOptions* options) = 0;
    /// Writes a file, which is in place whole or not at all. The options' parser options are those of the format.
    virtual bool Write(CSceneDocument const& scene, CIoOptions* options) = 0;
};
