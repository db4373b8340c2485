#include "fuzz/target.h"
#include "media/parsers/scanner_checks.h"

ZAB_FUZZ_TARGET(tag_scanner) {
    zabtest::checkTagScanner({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
