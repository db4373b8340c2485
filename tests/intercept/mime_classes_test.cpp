#include "intercept/mime_classes.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

TEST(MimeClasses, FirstLiteralDecides) {
    const zabtest::ReadingOf<std::string_view> rows[] = {
        {"audio/mpegurl", "MP3", "\"audio/mpeg\" stands before it"},
        {"Audio/MPEG", "MP3", "any letter case"},
        {"application/x-compressed", "ARJ", "before the shorter literal"},
        {"application/x-compress", "Z", "the shorter literal"},
        {"video/mpegts", "TS", "before \"video/mpeg\""},
        {"application/octet-stream; charset=x", "EXE", "parameters behind it"},
        {"application/x-MPEGurl", "m3u8", "the table's own letter case does not matter"},
        {"flv-application/octet-stream", "FLV", "not taken for its second half"},
        {"image/jpeg", "jpeg", "codes keep their letter case"},
        {"application/octet", "", "shorter than the literal"},
        {"", "", "no type"},
    };
    zabtest::expectReadings(ClassifyMimeType, rows);
}

}  // namespace
}  // namespace zab
