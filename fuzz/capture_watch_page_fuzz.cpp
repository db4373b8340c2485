#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_watch_page) {
    zabtest::checkHandler(zab::MediaKind::youtubeWatchPage, "http://h.example/watch?v=1",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
