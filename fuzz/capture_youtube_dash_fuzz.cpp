#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_youtube_dash) {
    zabtest::checkHandler(zab::MediaKind::youtubeDash, "http://h.example/api/manifest/x",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
