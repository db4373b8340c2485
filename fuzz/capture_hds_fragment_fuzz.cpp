#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_hds_fragment) {
    zabtest::checkHandler(zab::MediaKind::hdsFragment, "http://h.example/d/aSeg1-Frag2?q",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
