#include "intercept/header_capture.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

CapturedHeaders visited(std::initializer_list<std::pair<std::string_view, std::string_view>> headers,
                        bool request = false) {
    CapturedHeaders record;
    record.visitRequestHeaders = request;
    for (const auto& [name, value] : headers) visitHeader(record, name, value);
    return record;
}

TEST(HeaderVisitor, TakesTheRequestAndOnlyBasicCredentials) {
    const auto record = visited({{"cookie", "a=1"},
                                 {"Cookie", "b=2\0c"sv},
                                 {"Content-Length", "5"},
                                 {"Authorization", "bAsIc xyz"},
                                 {"Authorization", "Bearer xyz"}},
                                true);
    EXPECT_EQ(record.cookie, "b=2") << "the last one, up to its NUL";
    EXPECT_EQ(record.authorization, "bAsIc xyz") << "whole; another scheme does not replace it";
    EXPECT_EQ(record.contentLength, 0) << "a response header says nothing here";
    EXPECT_EQ(visited({{"Cookie", "a=1"}}).cookie, "") << "nor does a request header in a response";
}

TEST(HeaderVisitor, TheTotalOfARangeOutweighsTheLengthInEitherOrder) {
    const zabtest::ReadingOf<std::int64_t, std::string_view> rows[] = {
        {"bytes 0-999/5000", 5000, "both"},  {"bytes 0-999/*", 1000, "no total"},
        {"bytes */0", 1000, "a total of 0"}, {"bytes */1", 1, "of 1"},
        {"5000", 1000, "no slash"},
    };
    const auto told = [](std::string_view total) {
        const std::pair<std::string_view, std::string_view> length{"Content-Length", "1000"},
            range{"Content-Range", total};
        EXPECT_EQ(visited({length, range}).contentLength, visited({range, length}).contentLength) << total;
        return visited({length, range}).contentLength;
    };
    zabtest::expectReadings(told, rows);
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
    const zabtest::Reading rows[] = {
        // the type of a header block, and the body
        {"X: y\r\n \tcontent-type:\t a/b\n\r\n\r\n", "a/b>", "blanks, letter case, a bare LF; an empty body"},
        {"Content-Length: 0\r\n\nContent-Type: a/b\r\n\r\nabc", ">abc", "an empty line ends the scan"},
        {"Content-Type: a/b; c\r\n\r\n", "a/b; c>", "whole, without the end of its line"},
        {"a=1&b=2", "a=1&b=2", "no blank line: all of it is body"},
        {"\0\r\n\r\nx"s, ">x", "bytes, not text"},
    };
    const auto read = [](std::string_view bytes) {
        const PostStream stream = splitPostStream(bytes);
        return std::string(stream.contentType) + (stream.hasHeaderBlock ? ">" : "") + std::string(stream.body);
    };
    zabtest::expectReadings(read, rows);
}

TEST(PostStream, StorageHostIsLookedForInTheHostAlone) {
    EXPECT_TRUE(isOnStorageHost("https://x.storage.live.com/up"));
    EXPECT_FALSE(isOnStorageHost("https://example.com/storage.live.com"));
    EXPECT_FALSE(isOnStorageHost("storage.live.com"));
}

}  // namespace
}  // namespace zab
