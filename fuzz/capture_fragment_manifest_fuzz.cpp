#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_fragment_manifest) {
    zabtest::checkHandler(zab::MediaKind::fragmentManifest, "http://h.example/d/a",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
