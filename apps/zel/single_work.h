// SPDX-License-Identifier: MIT
// One piece of work at a time, for commands that open a single file.

#pragma once

#include "interruption.h"
#include "worker_pool.h"

#include <string>

struct MediaLimits;

namespace zel {

class SingleWork {
public:
    explicit SingleWork(MediaLimits const& limits);
    ~SingleWork();

    /// Does the work on a worker and waits for it. After an interruption the command acknowledges it and ends: this has
    /// waited for the worker as long as there was time.
    WorkResult Do(std::shared_ptr<Work> const& work);

    /// Why work that is not done is not; for a message.
    std::string Reason(WorkResult result) const;

private:
    unsigned int timeMs;
    Interruption interruption;
    WorkerPool pool;
};

} // namespace zel
