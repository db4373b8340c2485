#include "fuzz/target.h"
#include "media/parsers/scanner_checks.h"

ZAB_FUZZ_TARGET(box_reader) { zabtest::checkBoxReader(bytes); }
