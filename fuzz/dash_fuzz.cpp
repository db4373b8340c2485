#include "fuzz/target.h"
#include "media/parsers/dash_check.h"

ZAB_FUZZ_TARGET(dash) { zabtest::checkDash({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
