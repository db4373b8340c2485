#include "fuzz/target.h"
#include "media/parsers/hds_check.h"

ZAB_FUZZ_TARGET(hds) { zabtest::checkHds({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
