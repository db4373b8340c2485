#include "fuzz/target.h"
#include "intercept/intercept_check.h"

ZAB_FUZZ_TARGET(url) { zabtest::checkUrl({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
