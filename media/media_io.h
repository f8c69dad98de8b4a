// SPDX-License-Identifier: MIT
// What the managers of images and of scenes have in common: they try the parsers of an extension one after the other,
// and keep what each of them said.
//
// Threads: one at a time; cancelling may come from another (CFileIo::SetFlag, SetThreadCancel).

#pragma once

#include "media/media_api.h"
#include "media/media_limits.h"
#include <zeltools/files/file_io.h>

#include <functional>

/// What a parser said when it failed.
struct ParserError {
    unsigned int classId = 0;
    int code = 0; ///< An IO_FILE_RESULT.
    CXTString<char16_t> text;
};

class ZEL_MEDIA_API CMediaIo : public CFileIo {
public:
    using CFileIo::CFileIo;

    MediaLimits limits; ///< The host's, to be set before the operation.

    /// The errors of the last operation, in the order in which the parsers were tried. There are some after a success
    /// too, when the first parsers failed.
    CXArray<ParserError> const& GetParserErrors() const { return errors; }
    /// The class of the parser that gave the answer; 0 when none did.
    unsigned int GetAnsweringClass() const { return answeringClass; }
    /// Whether the answer came from the extension's first parser.
    bool IsFirstChoice() const { return answeringClass != 0 && errors.GetSize() == 0; }

    /// Whether the operation has taken longer than limits.timeMs.
    bool IsOutOfTime() const;

protected:
    /// Lets the parsers try, until one succeeds, the operation is cancelled or no other may be tried. What a parser
    /// throws is its error. Afterwards the manager's error is that of the first parser that failed, if none succeeded,
    /// and each error is in the log of the options.
    bool TryParsers(CIoOptions* options, std::function<bool(CFileParser& parser)> const& work);

    /// The same for parsers of one interface that fill a document, which is empty before each and after a failure.
    template <class Parser, class Document, class Fill>
    bool FillDocument(CIoOptions* options, Document& document, Fill const& fill) {
        return TryParsers(options, [&](CFileParser& base) {
            document.Clear();
            auto* const parser = dynamic_cast<Parser*>(&base);
            bool const filled = parser && fill(*parser);
            if (!filled) {
                document.Clear();
            }
            return filled;
        });
    }

private:
    /// Lets the current parser try; the error tells how it went.
    bool TryParser(std::function<bool(CFileParser& parser)> const& work);

    CXArray<ParserError> errors;
    unsigned int answeringClass = 0;
    unsigned long long startMs = 0; ///< Tick of the operation's start.
};
