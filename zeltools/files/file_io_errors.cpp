// SPDX-License-Identifier: MIT
// What a manager tells the user: how the operation went, and which file it should be about.
#include "zeltools/files/file_io.h"
#include "zeltools/files/file_types.h"
#include "zeltools/files/io_options.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/xload_string.h"
#include "zeltools/process/thread_registry.h"

namespace {

constexpr unsigned int FailureMessage = 5390;

constexpr int DialogOk = 1;
constexpr int DialogCancel = 2;

void ShowFailure(CFileIo const& io) {
    CXTString<char16_t> const name = io.GetName();
    CXTString<char16_t> text;
    text.Format(FailureMessage, static_cast<char16_t const*>(name));
    text += u"\n";
    text += io.GetIoErrorTxt();
    detail::GetDesktopHooks().ShowMessageBox(text, detail::MessageBoxOk);
}

} // namespace

void CFileIo::SetIoError(IO_FILE_RESULT code, CIoOptions* options, IoLogInfo::loglevel level) {
    errorText = CXTString<char16_t>();
    ioError = code;
    if (options) { // by the text, since CIoOptions does not know the direction
        options->AddLogInfo(level, GetIoErrorTxtFromCode(IsLoading(), code, GetName()));
    }
}

void CFileIo::SetIoError(CXTString<char16_t> const& text, CIoOptions* options, IoLogInfo::loglevel level) {
    errorText = text;
    ioError = IoOwnText;
    if (options) {
        options->AddLogInfo(level, text);
    }
}

CXTString<char16_t> CFileIo::GetIoErrorTxt() const {
    return errorText.IsEmpty() ? GetIoErrorTxtFromCode(IsLoading(), ioError, GetName()) : errorText;
}

CXTString<char16_t> CFileIo::GetIoErrorTxtFromCode(bool loading, int code, char16_t const* fileName) {
    return detail::GetIoResultText(loading, code, fileName);
}

bool CFileIo::ReportIoError(CIoOptions* options, unsigned int logFlags) {
    if (IsSilentMode() || IsSilentThread()) {
        return true;
    }
    if (options && options->IsFlagSet(IoOptionsShowLog)) {
        options->DisplayLog(logFlags, parentWindow);
    } else if (ioError != IoSuccess) {
        ShowFailure(*this);
    }
    return true;
}

bool CFileIo::ReportIoError(CXTString<char16_t> const& text) {
    errorText = text;
    if (!IsSilentMode() && !IsSilentThread()) {
        ShowFailure(*this);
    }
    return true;
}

int CFileIo::FileDialogBox(int title, bool multiple) {
    CXTString<char16_t> chosen;
    if (!detail::GetDesktopHooks().ChooseFile(xLoadString(static_cast<unsigned int>(title)), GetCompleteName(),
                                              IsLoading(), multiple, chosen)) {
        return DialogCancel;
    }
    SetNewFileName(CFileNameSpec(chosen));
    return DialogOk;
}

bool CFileIo::SelectFilesFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& selected) {
    selected.RemoveAll();
    return detail::GetDesktopHooks().ChooseFromList(list, selected);
}

IoShowDialog CFileIo::HasDialog(unsigned int classId, bool loading) {
    unsigned int const optional = loading ? FilePropertyLoadDialog : FilePropertySaveDialog;
    unsigned int const always = loading ? FilePropertyLoadDialogAlways : FilePropertySaveDialogAlways;
    unsigned int const properties = fileGetProperties(classId);
    if ((properties & always) != 0) {
        return IoDialogAlways;
    }
    return (properties & optional) != 0 ? IoDialogOptional : IoDialogNone;
}
