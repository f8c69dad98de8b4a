// SPDX-License-Identifier: MIT
// The parser that a shell hands out: it asks the backend for the real one when the first file is parsed.
//
// A backend exports
//
//     extern "C" CBitmapParser* ZelCreateParser(CMediaIo* manager, char const* format);

#pragma once

#include "media/media_io.h"
#include "media/media_parser.h"
#include "plugins/common/backend_library.h"

#include <memory>

/// @tparam Interface  CBitmapParser or CSceneParser.
/// @tparam Document   What it reads and writes.
template <class Interface, class Document>
class LazyParser final : public Interface {
public:
    /// @param formatName  The format in the words of the backend's library; must outlive the parser.
    LazyParser(CMediaIo* owner, BackendLibrary& library, char const* formatName)
        : Interface(owner), backend(library), format(formatName) {}

    bool ReadHeader(Document& document, MediaLimits const& limits, CIoOptions* options) override {
        return Open() && parser->ReadHeader(document, limits, options);
    }
    bool Read(Document& document, MediaLimits const& limits, CIoOptions* options) override {
        return Open() && parser->Read(document, limits, options);
    }
    bool Write(Document const& document, CIoOptions* options) override {
        return Open() && parser->Write(document, options);
    }

private:
    bool Open() {
        if (!parser) {
            using CreateParser = Interface*(CMediaIo * manager, char const* format);
            auto* const create = backend.Find<CreateParser*>("ZelCreateParser");
            parser.reset(create ? create(this->GetMediaIo(), format) : nullptr);
        }
        if (!parser) {
            this->GetMediaIo()->SetIoError(backend.GetErrorText(), nullptr, IoLogInfo::Error);
        }
        return parser != nullptr;
    }

    BackendLibrary& backend;
    char const* format;
    std::unique_ptr<Interface> parser; ///< Null until the first file.
};
