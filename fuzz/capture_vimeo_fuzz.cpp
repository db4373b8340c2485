#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_vimeo) {
    zabtest::checkHandler(zab::MediaKind::vimeoPlayer, "http://player.vimeo.example/video/1",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
