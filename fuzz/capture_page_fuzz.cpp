#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_page) {
    zabtest::checkHandler(zab::MediaKind::page, "http://h.example/d/page.html",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
