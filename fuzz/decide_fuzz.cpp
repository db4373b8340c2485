#include "fuzz/target.h"
#include "intercept/intercept_check.h"

ZAB_FUZZ_TARGET(decide) { zabtest::checkDecide({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
