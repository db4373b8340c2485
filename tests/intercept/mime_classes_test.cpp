#include "intercept/mime_classes.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(MimeClasses, FirstLiteralDecides) {
    const struct {
        std::string_view type, code;
        const char* why;
    } rows[] = {
        {"audio/mpegurl", "MP3", "\"audio/mpeg\" stands before it"},
        {"Audio/MPEG", "MP3", "any letter case"},
        {"application/x-compressed", "ARJ", "before the shorter literal"},
        {"application/x-compress", "Z", "the shorter literal"},
        {"video/mpegts", "TS", "before \"video/mpeg\""},
        {"video/mpeg", "MPG", "the shorter literal"},
        {"application/octet-stream; charset=x", "EXE", "parameters behind it"},
        {"application/epub+zip", "epub", "any letters behind it"},
        {"application/x-MPEGurl", "m3u8", "the table's own letter case does not matter"},
        {"flv-application/octet-stream", "FLV", "not taken for its second half"},
        {"image/jpeg", "jpeg", "codes keep their letter case"},
        {"text/plain", "", "not known"},
        {"application/octet", "", "shorter than the literal"},
        {"", "", "no type"},
    };
    for (const auto& row : rows) EXPECT_EQ(ClassifyMimeType(row.type), row.code) << row.why;
}

}  // namespace
}  // namespace zab
