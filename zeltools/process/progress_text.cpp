// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_text.h"

#include <algorithm>

CXTString<char16_t> progressPercentText(int position) {
    CXTString<char16_t> text;
    text.Format(u"%d %%", position);
    return text;
}

CXTString<char16_t> progressTimeText(long long seconds) {
    seconds = std::max(seconds, 0LL);
    CXTString<char16_t> text;
    if (seconds < 3600) {
        text.Format(u"%I64d:%02I64d", seconds / 60, seconds % 60);
    } else {
        text.Format(u"%I64d:%02I64d:%02I64d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    }
    return text;
}

long long progressSecondsLeft(double secondsGone, double done) {
    constexpr double hundredDays = 100.0 * 86400; // an estimate beyond it comes from a share too small to tell
    if (!(done > 0) || !(secondsGone >= 0)) {
        return -1;
    }
    double const left = done < 1 ? secondsGone / done - secondsGone : 0;
    return left <= hundredDays ? static_cast<long long>(left + 0.5) : -1;
}
