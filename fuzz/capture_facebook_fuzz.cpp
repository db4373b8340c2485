#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_facebook) {
    zabtest::checkHandler(zab::MediaKind::facebook, "http://h.example/ajax/",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
