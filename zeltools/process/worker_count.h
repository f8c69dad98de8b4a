// SPDX-License-Identifier: MIT
// How many worker threads parallel code uses.
//
//     int const workers = static_cast<int>(OMPGetMaxThreadCount(true));
//     int const chunk = static_cast<int>(OMPGetScheduleChunkSize(rowCount));
//     #pragma omp parallel for num_threads(workers) schedule(dynamic, chunk)
//
// The thread that runs the program is kept out of the count, and the count is never 0: with 8 processors it is 7.
// Threads: any, for all of this file.

#pragma once

#include "zeltools/foundation/api.h"

/// Sets the count, at most to what OpenMP offers the calling thread less one, at least to 1. Then calls every function
/// that OMPAddChangeCallback has registered, in their order, one that is registered meanwhile too.
/// @return the count in force after the calls, which may have changed it.
ZEL_API unsigned int OMPSetMaxThreadCount(unsigned int count);

/// @param configured  True for the count that was set, which is 1 before the start; false for the highest that could
///                    be, whatever was set.
ZEL_API unsigned int OMPGetMaxThreadCount(bool configured);

/// The chunk of a dynamic schedule over so many iterations: each worker gets about 24 of them. At least 1.
ZEL_API unsigned int OMPGetScheduleChunkSize(unsigned int iterations);

/// Registers a function that OMPSetMaxThreadCount calls, without any lock held. A function that is registered twice is
/// called twice. None can be taken back; the close of the library forgets them all. Null is ignored.
ZEL_API void OMPAddChangeCallback(void (*callback)());
