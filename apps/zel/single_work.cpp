// SPDX-License-Identifier: MIT
#include "single_work.h"

#include "media/media_limits.h"

#include <fmt/format.h>

namespace zel {

SingleWork::SingleWork(MediaLimits const& limits) : timeMs(limits.timeMs), pool(1, std::chrono::milliseconds(timeMs)) {
    interruption.SetListener([this] { pool.Cancel(); });
}

SingleWork::~SingleWork() {
    interruption.SetListener(nullptr);
}

WorkResult SingleWork::Do(std::shared_ptr<Work> const& work) {
    pool.Add(work);
    WorkResult const result = pool.Wait(*work);
    if (result == WorkResult::Cancelled || interruption.IsRequested()) {
        interruption.Acknowledge();
        pool.Join(interruption.Deadline());
        return WorkResult::Cancelled;
    }
    return result;
}

std::string SingleWork::Reason(WorkResult result) const {
    switch (result) {
    case WorkResult::Late: return fmt::format("it takes longer than the {} seconds that are allowed", timeMs / 1000.0);
    case WorkResult::Cancelled: return "interrupted";
    case WorkResult::Blocked: return "another file's parser does not end";
    case WorkResult::Done: break;
    }
    return {};
}

} // namespace zel
