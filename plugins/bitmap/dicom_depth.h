// SPDX-License-Identifier: MIT
// How deep the sequences of a DICOM file stand in each other. DCMTK reads them by calling itself: twenty thousand take
// the process down.

#pragma once

#include "plugins/bitmap/file_bytes.h"

/// Whether sequences nest deeper than any honest file's, or are deflated, where nobody can tell.
bool IsTooDeepDicom(FileBytes const& bytes);
