#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_link_text) {
    zabtest::checkHandler(zab::MediaKind::linkText, "http://h.example/d/list.pls",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
