#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_hds) {
    zabtest::checkHandler(zab::MediaKind::hds, "http://h.example/d/a.f4m",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
