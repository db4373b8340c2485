#include "intercept/header_capture.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using namespace std::string_view_literals;

CapturedHeaders visited(std::initializer_list<std::pair<std::string_view, std::string_view>> headers,
                        bool request = false) {
    CapturedHeaders record;
    record.visitRequestHeaders = request;
    for (const auto& [name, value] : headers) visitHeader(record, name, value);
    return record;
}

TEST(HeaderVisitor, TakesTheRequestAndOnlyBasicCredentials) {
    const auto record = visited({{"REFERER", "r"},
                                 {"cookie", "a=1"},
                                 {"Cookie", "b=2\0c"sv},
                                 {"User-Agent", "u"},
                                 {"Content-Length", "5"},
                                 {"Authorization", "bAsIc xyz"},
                                 {"Authorization", "Bearer xyz"}},
                                true);
    EXPECT_EQ(record.referer, "r");
    EXPECT_EQ(record.cookie, "b=2") << "the last one, up to its NUL";
    EXPECT_EQ(record.userAgent, "u");
    EXPECT_EQ(record.authorization, "bAsIc xyz") << "whole; another scheme does not replace it";
    EXPECT_EQ(record.contentLength, 0) << "a response header says nothing here";
    EXPECT_EQ(visited({{"Cookie", "a=1"}}).cookie, "") << "nor does a request header in a response";
}

TEST(HeaderVisitor, TheTotalOfARangeOutweighsTheLengthInEitherOrder) {
    const struct {
        const char *length, *range;
        std::int64_t told;
        const char* why;
    } rows[] = {
        {"1000", "bytes 0-999/5000", 5000, "both"},  {"1000", "bytes 0-999/*", 1000, "no total"},
        {"1000", "bytes */0", 1000, "a total of 0"}, {"1000", "bytes */1", 1, "of 1"},
        {"1000", "5000", 1000, "no slash"},          {"-1", "", 0, "a negative length"},
    };
    for (const auto& row : rows) {
        const std::pair<std::string_view, std::string_view> length{"Content-Length", row.length},
            range{"Content-Range", row.range};
        EXPECT_EQ(visited({length, range}).contentLength, row.told) << row.why;
        EXPECT_EQ(visited({range, length}).contentLength, row.told) << row.why;
        EXPECT_EQ(visited({range}).lengthFromRange, row.told != 1000 && row.told != 0) << row.why;
    }
}

TEST(HeaderVisitor, TellsHowABodyIsPacked) {
    EXPECT_TRUE(visited({{"Content-Encoding", "GZIP, br"}}).isGzip);
    EXPECT_FALSE(visited({{"Content-Encoding", "br, gzip"}}).isGzip);
    for (const std::string_view packed : {"gzip", "br", "identity, br"})
        EXPECT_TRUE(visited({{"Content-Encoding", packed}}).isEncoded) << packed;
    for (const std::string_view plain : {" Identity ", ""})
        EXPECT_FALSE(visited({{"Content-Encoding", plain}}).isEncoded) << plain;
}

TEST(HeaderVisitor, AFreshExaminationSeesNothingOfTheLast) {
    CapturedHeaders record = visited({{"Content-Range", "bytes 0-1/9"}, {"Content-Encoding", "gzip"}});
    visitHeader(record, "Content-Disposition", "attachment; filename=\"" + std::string(1 << 20, 'x') + "\"");
    record.clear();
    EXPECT_LT(record.fileName.capacity(), 8192u) << "an enormous header is not kept for ever";
    visitHeader(record, "Content-Length", "5");
    EXPECT_EQ(record.contentLength, 5) << "lengthFromRange was cleared";
    EXPECT_FALSE(record.isGzip || record.isEncoded || record.isAttachment);
    EXPECT_EQ(record.fileName, "");
}

TEST(PostStream, HasItsHeaderBlockBeforeTheFirstBlankLine) {
    const struct {
        std::string_view bytes, body, type;
        bool block;
        const char* why;
    } rows[] = {
        {"Content-Type: a/b; c=d\r\nContent-Length: 3\r\n\r\nabc", "abc", "a/b; c=d", true,
         "as browsers write it"},
        {"X: y\r\n \tcontent-type:\t a/b\n\r\n\r\n", "", "a/b", true, "blanks, letter case, a bare LF"},
        {"Content-Length: 0\r\n\nContent-Type: a/b\r\n\r\nabc", "abc", "", true, "an empty line ends the scan"},
        {"Content-Type: a/b\r\n\r\n", "", "a/b", true, "an empty body"},
        {"a=1&b=2", "a=1&b=2", "", false, "no blank line: all of it is body"},
        {"\0\r\n\r\nx"sv, "x", "", true, "bytes, not text"},
    };
    for (const auto& row : rows) {
        const PostStream stream = splitPostStream(row.bytes);
        EXPECT_EQ(stream.hasHeaderBlock, row.block) << row.why;
        EXPECT_EQ(stream.body, row.body) << row.why;
        EXPECT_EQ(stream.contentType, row.type) << row.why;
    }
}

TEST(PostStream, StorageHostIsLookedForInTheHostAlone) {
    EXPECT_TRUE(isOnStorageHost("https://x.storage.live.com/up"));
    EXPECT_FALSE(isOnStorageHost("https://example.com/storage.live.com"));
    EXPECT_FALSE(isOnStorageHost("storage.live.com"));
}

}  // namespace
}  // namespace zab
