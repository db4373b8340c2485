#include "fuzz/target.h"
#include "media/parsers/hls_check.h"

ZAB_FUZZ_TARGET(hls) { zabtest::checkHls({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
