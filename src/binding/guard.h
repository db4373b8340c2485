// The only place that swallows exceptions: every export, interface slot, window procedure and thread start
// stands behind it, because none may cross into the browser.
#pragma once

#include <utility>

namespace zab {

template <class Result, class Body>
Result guarded(Result neutral, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return neutral;
    }
}

template <class Body>
void guarded(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        // Nothing to report to: the affected step is skipped.
    }
}

}  // namespace zab
