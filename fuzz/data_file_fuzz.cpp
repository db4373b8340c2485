#include "fuzz/target.h"
#include "settings/data_file_check.h"

ZAB_FUZZ_TARGET(data_file) { zabtest::checkDataFile(bytes); }
