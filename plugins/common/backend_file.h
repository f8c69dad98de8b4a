// SPDX-License-Identifier: MIT
// Where the heavy half of a plug-in stands: in the folder backends/ beside the shell.
//
// Threads: any.

#pragma once

#include <string>

/// The native name of a backend's file, which need not exist.
/// @param error  Receives the reason when the file must not be used, since others than the shell's owner can change it.
/// @return empty then.
std::string FindBackendFile(std::string const& name, std::string& error);
