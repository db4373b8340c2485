#include "binding/encoding_check.h"
#include "fuzz/target.h"

ZAB_FUZZ_TARGET(encoding) {
    zabtest::checkEncoding({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
