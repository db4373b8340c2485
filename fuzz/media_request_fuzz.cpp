#include "fuzz/target.h"
#include "ui/media_request_check.h"

ZAB_FUZZ_TARGET(media_request) { zabtest::checkMediaRequest(bytes); }
