// SPDX-License-Identifier: MIT
// The manager of one load or save: it holds the parsed name, the direction, how it went, the options, and the parser
// that does the work. Managers for a kind of data derive from it, add the calls that read and write, and hold the loop
// that goes on to the extension's next parser:
//
//     do {
//         if (auto* parser = static_cast<MyParser*>(InitParser()); parser && parser->Read(document))
//             return true;
//     } while (CanTryAnotherParser() && (TryNextParser(), true));
//
// Threads: one at a time; IoFlagCancel alone may be set from another.

#pragma once

#include "zeltools/files/file_info.h"
#include "zeltools/files/file_name_spec.h"
#include "zeltools/files/file_parser.h"
#include "zeltools/files/io_log_info.h"
#include "zeltools/files/io_result.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/persistence/custom_data.h"

#include <atomic>

class CIoOptions;

/// Makes a manager for a kind of data.
using FileIoCreationCallback = CFileIo* (*)(CFileNameSpec const& name, unsigned int flags, CWnd* parent);

/// The manager of one operation. A plain one knows no kind of data: it answers questions and finds files.
class ZEL_API CFileIo {
protected:
    // The virtual operations come in the order of their slots, which plug-ins rely on: these two and the destructor.

    /// Makes the parser for the current name.
    /// @return null without one: for a type that the host handles itself, with the error left alone, otherwise with the
    ///         error IoUnknownType.
    virtual CFileParser* InitParser();
    /// Deletes the parser and takes IoFlagCancel back.
    virtual void CloseParser();

public:
    // ---- Making one ------------------------------------------------------------------------------------------

    /// Parses the name and, where it leaves the choice of parser open, goes on to the extension's first parser
    /// that can load or save at all.
    ///
    /// @param flags   FILE_PARSER_FLAGS.
    /// @param parent  The window that boxes and dialogs belong to; null takes the application's main window.
    CFileIo(CFileNameSpec const& name, unsigned int flags, CWnd* parent);
    /// A manager for a class, under the name that is its main extension.
    CFileIo(unsigned int classId, unsigned int flags, CWnd* parent);
    virtual ~CFileIo();
    CFileIo(CFileIo const&) = delete;
    CFileIo& operator=(CFileIo const&) = delete;

    /// Says who makes the managers of a kind (FileKindBitmap, ...); null takes that back.
    /// Threads: the one that starts the host, before workers use managers.
    static void RegisterFileIoCreationCallback(unsigned int kind, FileIoCreationCallback callback);

    /// Makes the manager for a name by its kind: a registered one, otherwise a plain one. The caller deletes it.
    static CFileIo* CreateFileIoFromPath(CFileNameSpec const& name, unsigned int flags, CWnd* parent = nullptr);

    /// Whether the parser of a name must run alone; false without a parser. Makes and deletes a parser.
    static bool IsSingleThreaded(CFileNameSpec const& name, unsigned int flags);

    // ---- The name --------------------------------------------------------------------------------------------

    CXTString<char16_t> GetName() const { return fileInfo.GetName(); }
    CXTString<char16_t> const& GetCompleteName() const { return fileInfo.GetCompleteName(); }
    CXTString<char16_t> GetPath() const { return fileInfo.GetPath(); }
    CXTString<char16_t> GetExtension() const { return fileInfo.GetExtension(); }
    CXTString<char16_t> GetNameWithoutExt() const { return fileInfo.GetNameWithoutExt(); }
    unsigned int GetKindOf() const { return fileInfo.GetKindOf(); }
    unsigned int GetClass() const { return fileInfo.GetClass(); }
    unsigned int GetProperties() const { return fileInfo.GetProperties(); }
    /// Name and extension.
    CXTString<char16_t> GetCurrentShortFileName() const { return fileInfo.GetName(); }
    CXTString<char16_t> GetCurrentCompleteFileName() const { return fileInfo.GetCompleteName(); }
    /// The folder.
    CXTString<char16_t> GetCurrentFilePath() const { return fileInfo.GetPath(); }
    /// Parses another name. Parser and error stay, and the parser choice is the first one.
    void SetNewFileName(CFileNameSpec const& name);
    /// @param strict  Leaves out addresses of directories.
    bool IsURL(bool strict) const { return fileInfo.IsURL() && !(strict && fileInfo.IsDirectory()); }
    /// Whether the extension has more than one parser.
    bool IsMultiParserExtension() const { return fileInfo.GetParserNbr() > 1; }

    // ---- The operation ---------------------------------------------------------------------------------------

    bool IsLoading() const { return (flagWord & IoFlagLoading) != 0; }
    /// The id of who does the work: the loader when loading, otherwise the saver.
    unsigned int GetParser() const { return IsLoading() ? fileInfo.GetLoader() : fileInfo.GetSaver(); }
    /// Null only where there is no window at all.
    CWnd* GetParentWnd() const { return parentWindow; }
    /// The parser's parameters.
    CCustomData& GetCustomData() { return customData; }

    /// Sets or clears flags. Threads: any.
    void SetFlag(FILE_PARSER_FLAGS bits, bool set);
    /// Whether all of the bits are set. Threads: any.
    bool IsFlagSet(unsigned int bits) const { return (flagWord & bits) == bits; }
    unsigned int GetFlags() const { return flagWord; }

    /// A slot for the host, 0 at first.
    void SetAlternativeClass(unsigned int classId) { alternativeClass = classId; }
    unsigned int GetAlternativeClass() const { return alternativeClass; }

    void SetSilentMode(bool silent) { SetFlag(IoFlagSilent, silent); }
    bool IsSilentMode() const { return IsFlagSet(IoFlagSilent); }

    /// Whether the operation should stop: IoFlagCancel is set, or the calling thread is cancelled.
    bool ShouldCancelParser() const;

    // ---- How it went -----------------------------------------------------------------------------------------

    /// An IO_FILE_RESULT; IoSuccess until a failure.
    int GetIoError() const { return ioError; }
    /// Stores a code and adds its text to the log.
    /// @param options  Its log; may be null.
    void SetIoError(IO_FILE_RESULT code, CIoOptions* options, IoLogInfo::loglevel level);
    /// Stores a text, with IoOwnText as the code, and adds it to the log.
    void SetIoError(CXTString<char16_t> const& text, CIoOptions* options, IoLogInfo::loglevel level);
    /// The stored text, otherwise the code's.
    CXTString<char16_t> GetIoErrorTxt() const;
    /// The text of a code in the thread's language; empty for IoOwnText.
    /// @param fileName  Its last component goes into the text of IoCannotOpen. Null counts as empty.
    static CXTString<char16_t> GetIoErrorTxtFromCode(bool loading, int code, char16_t const* fileName);

    /// Tells the user of a failure: the collected log where the options want it shown, otherwise a message box. Nothing
    /// is shown for a silent manager or on a silent thread, nor when nothing failed.
    /// @return true.
    bool ReportIoError(CIoOptions* options, unsigned int logFlags);
    /// Stores a text and shows it in a message box.
    bool ReportIoError(CXTString<char16_t> const& text);

    // ---- Dialogs ---------------------------------------------------------------------------------------------

    /// Lets the user choose the file. Without a desktop nothing is chosen.
    /// @param title  The message with the box's title.
    /// @param multiple  For a desktop's box.
    /// @return 1 when one was chosen, which is then the manager's name; 2 when the box was cancelled.
    int FileDialogBox(int title, bool multiple);
    /// Lets the user choose among names. Without a desktop nothing is chosen.
    /// @param selected  Receives the chosen ones.
    /// @return whether any was chosen.
    bool SelectFilesFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& selected);
    /// Whether a type has a dialog for its options.
    static IoShowDialog HasDialog(unsigned int classId, bool loading);

    // ---- Numbered sequences ----------------------------------------------------------------------------------

    /// Finds the files of the sequence to which the current name belongs: those of its folder and extension whose names
    /// differ in the number only, the current one included.
    ///
    /// @param files         Receives their paths, sorted by number.
    /// @param filter        Keeps a path by answering true; may be null.
    /// @param trailingOnly  Leaves a number at the beginning of the name alone.
    /// @return their number.
    int GetFileList(CXArray<CXTString<char16_t>>& files, bool (*filter)(char16_t const* path, void* context),
                    void* context, bool trailingOnly) const;

    /// Finds the file of a sequence by its number: `C:\shot\a*.png` and 12 give `C:\shot\a0012.png`, if it is there.
    /// A pattern without `*` is a file that must exist.
    /// @param result  Receives the path; untouched when there is none.
    static bool FindMatchingFile(CXTString<char16_t>& result, CXTString<char16_t> const& pattern, int digit);

    // ---- Parameters in the preferences -----------------------------------------------------------------------

    /// The file in which all parsers' parameters are kept: the application's preferences file, with "io.prefs" in
    /// place of its extension.
    static CXTString<char16_t> GetPreferencesFilePath();
    /// Keeps parameters under an id.
    /// @param loading  Keeps those for loading and those for saving apart.
    /// @return false when preferences are off, in the process or by IoFlagNoParameters, or cannot be written.
    bool SaveIoParameters(bool loading, CCustomData const& data, unsigned int id);
    /// Gives the parameters that were kept; false, with an empty store, when there are none or preferences are off
    /// (and then the store is left alone).
    bool LoadIoParameters(bool loading, CCustomData& data, unsigned int id);

protected:
    /// Goes on to the extension's next parser.
    void TryNextParser();
    /// Whether there is one, and the choice of parser was left open.
    bool CanTryAnotherParser() const { return fileInfo.CanTryAnotherParser(); }

private:
    friend void SetFileClassCancel(unsigned int classId);

    CFileInfo fileInfo;
    std::atomic<unsigned int> flagWord; ///< FILE_PARSER_FLAGS.
    unsigned int alternativeClass = 0;
    CCustomData customData;
    unsigned long long startTick;
    int ioError = IoSuccess;
    CXTString<char16_t> errorText;
    CFileParser* currentParser = nullptr; ///< Owned.
    CWnd* parentWindow;
    std::atomic<unsigned int> cancelClass{0}; ///< Of fileInfo, for other threads, which may not touch that.
};

/// Asks all managers whose current name is of a class to cancel.
/// Threads: any.
ZEL_API void SetFileClassCancel(unsigned int classId);

/// Whether the parser of a name must run alone, so that a host starts it while no other runs. Makes the manager that
/// is registered for the name's kind, opens its parser and asks it.
/// @param flags  FILE_PARSER_FLAGS.
/// @return false when no parser opens.
ZEL_API bool fileClassIsSingleThreaded(CFileNameSpec const& name, unsigned int flags);
