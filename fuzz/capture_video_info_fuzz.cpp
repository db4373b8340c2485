#include "fuzz/target.h"
#include "media/capture/capture_check.h"

ZAB_FUZZ_TARGET(capture_video_info) {
    zabtest::checkHandler(zab::MediaKind::youtubeVideoInfo, "http://h.example/get_video_info?",
                          {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}
