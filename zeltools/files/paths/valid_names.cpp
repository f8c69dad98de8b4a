// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/valid_names.h"

#include "zeltools/files/paths/path_kind.h"
#include "zeltools/files/paths/path_queries.h"
#include "zeltools/files/paths/path_split.h"
#include "zeltools/files/paths/text_view_private.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/xload_string.h"

namespace {

constexpr std::u16string_view ForbiddenInName = u"*?\"<>|:/\\";
constexpr std::u16string_view ForbiddenInPath = ForbiddenInName.substr(0, 6);

constexpr unsigned int DirectoryMissingMessage = 5215;
constexpr unsigned int NameMissingMessage = 5224;
constexpr unsigned int ForbiddenInPathMessage = 5225;
constexpr unsigned int ForbiddenInNameMessage = 5226; // follows the one before
constexpr unsigned int NotAbsoluteMessage = 5227;
constexpr unsigned int ReplaceMessage = 5309;

bool HoldsAny(CXTString<char16_t> const& text, std::u16string_view characters) {
    return detail::View(text).find_first_of(characters) != std::u16string_view::npos;
}

// Shows the message unless the flags say otherwise; the answer is always that the name is not valid.
bool Refuse(unsigned int flags, CXTString<char16_t> const& message) {
    if ((flags & FileNameSilent) == 0) {
        detail::GetDesktopHooks().ShowMessageBox(message, detail::MessageBoxOk);
    }
    return false;
}

} // namespace

bool fileIsValidFileName(CXTString<char16_t> const& name, unsigned int flags) {
    if (name.IsEmpty()) {
        return (flags & FileNameAcceptEmpty) != 0 || Refuse(flags, xLoadString(NameMissingMessage));
    }
    if ((flags & (FileNameCheckName | FileNameCheckWhole)) != 0) {
        bool const isWhole = (flags & FileNameCheckWhole) != 0;
        if (HoldsAny(isWhole ? name : fileStripPath(name, false), ForbiddenInName)) {
            return Refuse(flags, xLoadString(ForbiddenInPathMessage) + xLoadString(ForbiddenInNameMessage));
        }
    }
    if ((flags & FileNameCheckPath) == 0) {
        return true;
    }
    if (HoldsAny(name, ForbiddenInPath)) {
        return Refuse(flags, xLoadString(ForbiddenInPathMessage));
    }
    if (fileIsPathRelative(name)) {
        return (flags & FileNameAcceptRelative) != 0 || Refuse(flags, xLoadString(NotAbsoluteMessage));
    }
    return fileDirectoryExists(fileStripName(name), nullptr) || Refuse(flags, xLoadString(DirectoryMissingMessage));
}

bool fileAskForReplace(CXTString<char16_t> const& path) {
    CXTString<char16_t> question;
    question.Format(ReplaceMessage, static_cast<char16_t const*>(path));
    return detail::GetDesktopHooks().ShowMessageBox(question, detail::MessageBoxYesNo) == detail::AnswerYes;
}
