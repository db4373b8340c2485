#include "fuzz/target.h"
#include "media/parsers/site_checks.h"

ZAB_FUZZ_TARGET(same_stream) {
    zabtest::checkSameStream({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
