#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_dash) {
    zabtest::checkHandler(zab::MediaKind::dash, "http://h.example/d/a.mpd",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
