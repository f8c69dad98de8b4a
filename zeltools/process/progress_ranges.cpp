// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_ranges.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/xtime.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

int Saturated(long long value) {
    return static_cast<int>(
        std::clamp<long long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// Cuts towards zero; what is not a number is 0.
int Truncated(float value) {
    constexpr float beyond = 2147483648.0f; // the first float that is no int
    if (value >= beyond) {
        return std::numeric_limits<int>::max();
    }
    if (value < -beyond) {
        return std::numeric_limits<int>::min();
    }
    return value == value ? static_cast<int>(value) : 0;
}

} // namespace

CProgressRanges::~CProgressRanges() = default;

void CProgressRanges::PositionStored(bool) {}

void CProgressRanges::SetRange(int lowest, int highest, bool first) {
    Bar& bar = GetBar(first);
    bar.lowest = std::min(lowest, highest);
    bar.highest = std::max(lowest, highest);
    bar.position = std::clamp(bar.position, bar.lowest, bar.highest);
}

void CProgressRanges::GetRange(int& lowest, int& highest, bool first) const {
    lowest = GetBar(first).lowest;
    highest = GetBar(first).highest;
}

bool CProgressRanges::SetPos(int position, bool first) {
    Bar& bar = GetBar(first);
    position = std::clamp(position, bar.lowest, bar.highest);
    if (position == bar.lowest) {
        bar.startTick = timeGetTick();
    }
    if (!KeepsPositions()) {
        return false;
    }
    bar.position = position;
    PositionStored(first);
    return true;
}

bool CProgressRanges::OffsetPos(int offset, bool first) {
    return SetPos(Saturated(static_cast<long long>(GetPos(first)) + offset), first);
}

int CProgressRanges::SetStep(int step, bool first) {
    return std::exchange(GetBar(first).step, step);
}

int CProgressRanges::PushSubRange(int stepCount, bool first) {
    if (stepCount < 0) {
        detail::ThrowInvalidArg();
    }
    Bar& bar = GetBar(first);
    int const level = bar.ranges.GetSize();
    float const steps = static_cast<float>(std::max(stepCount, 1));
    SubRangeInfo range;
    if (level == 0) {
        range.start = bar.position;
        range.end = bar.nextStep != 0 ? Saturated(static_cast<long long>(range.start) + bar.nextStep) : bar.highest;
        range.scale = static_cast<float>(static_cast<long long>(range.end) - range.start) / steps;
    } else {
        SubRangeInfo const& top = bar.ranges[level - 1];
        range.start = Truncated(static_cast<float>(top.position) * top.scale + static_cast<float>(top.start));
        float const nextSteps = top.nextStep != 0 ? static_cast<float>(top.nextStep) : 1.0f;
        float const start = static_cast<float>(range.start);
        float const end = start + nextSteps * top.scale;
        range.end = Truncated(end);
        range.scale = (end - start) / steps;
    }
    bar.ranges.Add(range);
    return level;
}

bool CProgressRanges::SetSubRangePos(int step, bool first) {
    Bar& bar = GetBar(first);
    if (bar.ranges.IsEmpty()) {
        return false;
    }
    SubRangeInfo& top = bar.ranges[bar.ranges.GetSize() - 1];
    top.position = step;
    SetPos(Saturated(static_cast<long long>(Truncated(static_cast<float>(step) * top.scale)) + top.start), first);
    return true;
}

void CProgressRanges::SetNextSubRangeStepCount(int count, bool first) {
    Bar& bar = GetBar(first);
    if (bar.ranges.IsEmpty()) {
        bool const passes = static_cast<long long>(bar.position) + count > bar.highest;
        bar.nextStep = passes ? Saturated(static_cast<long long>(bar.highest) - count) : count;
        return;
    }
    SubRangeInfo& top = bar.ranges[bar.ranges.GetSize() - 1];
    float const scaled = static_cast<float>(count) * top.scale;
    bool const passes = Truncated(static_cast<float>(top.position) + scaled) > top.end;
    top.nextStep = passes ? Truncated(static_cast<float>(top.end) - scaled) : count;
}

int CProgressRanges::PullSubRange(bool first) {
    Bar& bar = GetBar(first);
    int const left = bar.ranges.GetSize() - 1;
    if (left < 0) {
        return -1;
    }
    int const end = bar.ranges[left].end;
    bool const passed = bar.position > end;
    SetPos(end, first);
    bar.ranges.SetSize(std::min(left, bar.ranges.GetSize())); // who is told of the position may have pulled it too
    int const count = bar.ranges.GetSize();
    if (!passed) {
        (count == 0 ? bar.nextStep : bar.ranges[count - 1].nextStep) = 0;
    }
    return count;
}

int CProgressRanges::PullToSubRange(int level, bool first) {
    Bar& bar = GetBar(first);
    if (level >= 0 && level < bar.ranges.GetSize()) {
        SetPos(bar.ranges[level].end, first);
        bar.ranges.SetSize(std::min(level, bar.ranges.GetSize()));
    }
    return bar.ranges.GetSize();
}
