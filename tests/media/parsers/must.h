// A claim that ends the process when it fails: seen alike by a unit test, a fuzzer and a debugger.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>

namespace zabtest {

inline void must(bool claim, std::source_location where = std::source_location::current()) {
    if (claim) return;
    std::fprintf(stderr, "%s:%u: a claim does not hold\n", where.file_name(),
                 static_cast<unsigned>(where.line()));
    std::abort();
}

}  // namespace zabtest
