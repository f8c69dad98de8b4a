// SPDX-License-Identifier: MIT
// How a text is to be taken when it is parsed as a file name.

#pragma once

/// The kinds of name. A word of any other value acts as FileNameTypeAuto without asking the disk.
enum FILENAME_TYPE {
    FileNameTypeAuto = 0,      ///< Decided from the text: an address, a directory (trailing backslash) or a file.
    FileNameTypeFile = 1,      ///< A file, even where the text looks like an address. Without backslash it has no path.
    FileNameTypeDirectory = 2, ///< A directory, even without a trailing backslash.
    FileNameTypeRelative = 4,  ///< As auto, and a relative path stays relative.
    FileNameTypeUrl = 5        ///< An address, without a test.
};
