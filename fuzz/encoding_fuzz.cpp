#include "fuzz/target.h"
#include "web/encoding_check.h"

ZAB_FUZZ_TARGET(encoding) {
    zabtest::checkEncoding({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
