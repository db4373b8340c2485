// A claim that ends the process when it fails: seen alike by a unit test, a fuzzer and a debugger.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace zabtest {

inline void must(bool claim, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (claim) return;
    std::fprintf(stderr, "%s:%d: a claim does not hold\n", file, line);
    std::abort();
}

}  // namespace zabtest
