// SPDX-License-Identifier: MIT
// The buttons of a message box and the answers to it, in the numbers that hosts know.

#pragma once

/// The buttons of a message box.
enum MessageBoxButtons : unsigned int {
    MessageBoxOk = 0,
    MessageBoxOkCancel = 1,
    MessageBoxAbortRetryIgnore = 2,
    MessageBoxYesNoCancel = 3,
    MessageBoxYesNo = 4,
    MessageBoxRetryCancel = 5,

    MessageBoxExclamation = 48, ///< Added to the buttons: the sign in the box is a warning.
    MessageBoxButtonMask = 0xF, ///< Mask: the buttons without what is added to them.
};

/// The button that was chosen.
enum MessageBoxAnswer {
    AnswerOk = 1,
    AnswerCancel = 2,
    AnswerAbort = 3,
    AnswerRetry = 4,
    AnswerIgnore = 5,
    AnswerYes = 6,
    AnswerNo = 7
};
