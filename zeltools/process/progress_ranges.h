// SPDX-License-Identifier: MIT
// The arithmetic of two progress bars with nested ranges: a routine fills its share of the bar step by step, without
// knowing how large that share is.
//
//     CProgressRanges bars;                       // 0 to 100
//     bars.PushSubRange(10, true);                // ten steps over the whole bar: 10 units each
//     bars.SetSubRangePos(5, true);               // 50
//     bars.SetNextSubRangeStepCount(2, true);     // what comes next fills two of the ten steps
//     bars.PushSubRange(4, true);                 // four steps over 20 units: 5 each
//     bars.SetSubRangePos(3, true);               // 65
//     bars.PullSubRange(true);                    // 70, wherever it was
//
// The bool argument selects the bar: true the first, false the second.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"

/// A nested range. It fills the bar from `start` to `end`.
struct SubRangeInfo {
    int start = 0;
    int position = 0; ///< The step reached.
    int end = 0;      ///< `start` plus all steps, cut to a whole number.
    float scale = 1;  ///< Bar units of one step.
    int nextStep = 0; ///< The steps that the next range within fills; 0 means one.
};

/// Two bars and their stacks of nested ranges. Positions are whole numbers; where a sum leaves their 32 bits, it stops
/// at the end, and a step's share is a 32-bit float.
/// Threads: one at a time.
class ZEL_API CProgressRanges {
public:
    CProgressRanges() = default;
    virtual ~CProgressRanges();
    CProgressRanges(CProgressRanges const&) = delete;
    CProgressRanges& operator=(CProgressRanges const&) = delete;

    // The bar

    /// Sets lowest and highest position, in whichever order; 0 and 100 at first. A position outside is moved inside.
    void SetRange(int lowest, int highest, bool first);
    void GetRange(int& lowest, int& highest, bool first) const;

    /// Moves the bar, at most to its ends. At the lowest position the bar starts over: it takes a new start tick.
    /// @return false when positions are not kept (a dialog without a window); the bar then stays.
    bool SetPos(int position, bool first);

    /// Moves the bar by so many units. Results as SetPos.
    bool OffsetPos(int offset, bool first);

    int GetPos(bool first) const { return GetBar(first).position; }

    /// Sets the units of one step, for who moves the bar by a step at a time; 1 at first.
    /// @return the one before.
    int SetStep(int step, bool first);
    int GetStep(bool first) const { return GetBar(first).step; }

    /// When the bar last started over, by timeGetTick; 0 before the first time.
    long long GetStartTick(bool first) const { return GetBar(first).startTick; }

    // Nested ranges

    /// Opens a range of so many steps over the next share of the bar: of the range on top of the stack the steps that
    /// SetNextSubRangeStepCount said, or one; with an empty stack the bar's units that it said, or all that are left.
    /// @param stepCount  0 counts as 1.
    /// @return the level of the new range, for PullToSubRange.
    /// Errors:  CXInvalidArgException for a negative count.
    int PushSubRange(int stepCount, bool first);

    /// Goes to a step of the range on top; false without one.
    bool SetSubRangePos(int step, bool first);

    /// Says how wide the next nested range will be, in steps of the range on top, or in bar units without one.
    ///
    /// A count that would pass the end is replaced: by the highest position less the count without a range, and by
    /// the range's end less the count's units with one. It would pass when the step reached plus the count's units is
    /// beyond the end.
    void SetNextSubRangeStepCount(int count, bool first);

    /// Ends the range on top: the bar goes to its end. The share of the next range is one step again, unless the bar
    /// had passed that end already.
    /// @return the ranges left; -1 when there was none.
    int PullSubRange(bool first);

    /// Ends the range of this level and those within: the bar goes to its end. Nothing for a level that is not open.
    /// @return the ranges left.
    int PullToSubRange(int level, bool first);

    int GetSubRangeCount(bool first) const { return GetBar(first).ranges.GetSize(); }

    /// A copy of the range of a level.
    /// Errors:  CXInvalidArgException for a level that is not open.
    SubRangeInfo GetSubRange(int level, bool first) const { return GetBar(first).ranges[level]; }

    /// What SetNextSubRangeStepCount holds for the bar itself.
    int GetNextStep(bool first) const { return GetBar(first).nextStep; }

protected:
    /// Whether SetPos may store a position.
    virtual bool KeepsPositions() const { return true; }

    /// Called after SetPos has stored one.
    virtual void PositionStored(bool first);

private:
    struct Bar {
        int lowest = 0;
        int highest = 100;
        int position = 0;
        int step = 1;
        int nextStep = 0;
        long long startTick = 0;
        CXArray<SubRangeInfo> ranges;
    };

    Bar& GetBar(bool first) { return first ? firstBar : secondBar; }
    Bar const& GetBar(bool first) const { return first ? firstBar : secondBar; }

    Bar firstBar;
    Bar secondBar;
};
