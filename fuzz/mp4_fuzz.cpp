#include "fuzz/target.h"
#include "media/parsers/mp4_check.h"

ZAB_FUZZ_TARGET(mp4) { zabtest::checkMp4(bytes); }
