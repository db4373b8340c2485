#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_hls) {
    zabtest::checkHandler(zab::MediaKind::hls, "http://h.example/d/a.m3u8",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
