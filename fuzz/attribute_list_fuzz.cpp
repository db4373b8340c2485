#include "fuzz/target.h"
#include "media/parsers/scanner_checks.h"

ZAB_FUZZ_TARGET(attribute_list) {
    zabtest::checkAttributeList({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
