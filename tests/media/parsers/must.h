// A claim that a unit test and a fuzzer share: one that does not hold ends its check.
#pragma once

#include <stdexcept>
#include <string>

namespace zabtest {

/// A failure of the test that is running; a fuzzer's program ends.
struct ClaimFailed : std::logic_error {
    using std::logic_error::logic_error;
};

inline void must(bool claim, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (!claim) throw ClaimFailed(std::string(file) + ":" + std::to_string(line) + ": a claim does not hold");
}

}  // namespace zabtest
