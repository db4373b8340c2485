#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_sniff) {
    zabtest::checkHandler(zab::MediaKind::sniff, "http://manifest.googlevideo.com/api/manifest/x",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
