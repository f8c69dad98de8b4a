// SPDX-License-Identifier: MIT
// Carries a plan of new names out. No file is ever replaced, whatever other programs do meanwhile, and it can stop
// wherever each file has its old name or its new one: between two files, or between two rings of names.

#pragma once

#include "rename_plan.h"

#include <functional>
#include <string>

namespace zel {

/// Moves a file to a name that nobody has.
/// @return empty when it is done; otherwise why not, and then nothing has changed.
std::string MoveWithoutReplacing(std::string const& from, std::string const& to);

/// Renames the planned files and enters how it went. What a failure leaves half done is taken back.
/// @param mustStop  Asked before each file and each ring; what is left then is NotDone.
void CarryOut(RenamePlan& plan, std::function<bool()> const& mustStop);

/// While it lives, an interruption, a hang-up or a termination only asks to stop: a ring that is begun comes to its
/// end. One at a time.
class PatientStop {
public:
    PatientStop();
    ~PatientStop();
    PatientStop(PatientStop const&) = delete;
    PatientStop& operator=(PatientStop const&) = delete;

    static bool IsRequested();
};

} // namespace zel
