#include "fuzz/target.h"
#include "zabprobe/exchange_check.h"

ZAB_FUZZ_TARGET(har) { zabtest::checkExchanges({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
