#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture) { zabtest::checkCapture({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); }
