#include "fuzz/target.h"
#include "intercept/intercept_check.h"

ZAB_FUZZ_TARGET(header_visitor) {
    zabtest::checkHeaderVisitor({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
