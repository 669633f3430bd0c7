// The printf format for one double shown with a number of digits before and
// after the decimal point, shared by conversion rules and units.
#pragma once

#include <string>

#include "etc/format.h"

namespace quantor::detail {

// A format of `pre` digits before and `post` digits after the decimal point:
// "%.0f" when neither side has digits, "%.<post>f" without pre-decimal digits,
// "%<pre>.0f" without post-decimal digits, and "%<pre+post+1>.<post>f" (the
// width counting the point) with both.
inline std::wstring NumberFormat(int pre, int post) {
    if (pre < 1) return post < 1 ? L"%.0f" : QtrFormat(L"%%.%df", post);
    if (post < 1) return QtrFormat(L"%%%d.0f", pre);
    return QtrFormat(L"%%%d.%df", static_cast<long long>(pre) + post + 1, post);
}

}  // namespace quantor::detail
