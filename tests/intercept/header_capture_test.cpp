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

TEST(HeaderVisitor, TheTotalOfARangeOutweighsTheLength) {
    const struct {
        CapturedHeaders record;
        std::int64_t length;
        bool fromRange;
        const char* why;
    } rows[] = {
        {visited({{"Content-Length", "1000"}, {"Content-Range", "bytes 0-999/5000"}}), 5000, true,
         "length first"},
        {visited({{"Content-Range", "bytes 0-999/5000"}, {"Content-Length", "1000"}}), 5000, true,
         "range first"},
        {visited({{"Content-Length", "1000"}, {"Content-Range", "bytes 0-999/*"}}), 1000, false, "no total"},
        {visited({{"Content-Length", "1000"}, {"Content-Range", "bytes */0"}}), 1000, false, "a total of 0"},
        {visited({{"Content-Length", "1000"}, {"Content-Range", "5000"}}), 1000, false, "no slash"},
        {visited({{"Content-Length", "-1"}}), 0, false, "a negative length"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.record.contentLength, row.length) << row.why;
        EXPECT_EQ(row.record.lengthFromRange, row.fromRange) << row.why;
    }
}

TEST(HeaderVisitor, Disposition) {
    const struct {
        std::string_view value, fileName;
        bool isAttachment, isInline;
        const char* why;
    } rows[] = {
        {"attachment; filename=\"an inline b.zip\"", "an inline b.zip", true, false, "a word of the name"},
        {"inline; filename=a.zip", "a.zip", false, true, "before the name it counts"},
        {"attachment; FileName=a.zip;x", "a.zip", true, false, "the parameter in any case"},
        {"x; FILENAME=1.zip; filename=2.zip", "2.zip", false, false, "the exact spelling is looked for first"},
        {"attachment; filename=\"a.zip", "before", true, false, "an open quote stores nothing"},
        {"attachment; filename=\"\"", "before", true, false, "nor does nothing between quotes"},
        {"attachment; filename= \t\r", "before", true, false, "nor does a missing value"},
        {"attachment; filename=;x", "", true, false, "an empty unquoted name is stored"},
        {"attachment; filename= a.zip", "a.zip", true, false, "blanks before the name"},
        {"attachment; filename=\xC3\xA9", "utf-8''\xC3\xA9", true, false, "raw UTF-8"},
        {"attachment; filename==?UTF-8?B?YQ==?=", "utf-8''a", true, false, "an encoded word"},
        {"attachment; filename==?UTF-8?B?YQ==", "before", true, false, "one without its end"},
        {"form-data", "before", false, false, "a new disposition clears the flags, not the name"},
    };
    for (const auto& row : rows) {
        CapturedHeaders record;
        record.fileName = "before";
        record.isAttachment = record.isInline = true;
        visitHeader(record, "content-disposition", row.value);
        EXPECT_EQ(record.fileName, row.fileName) << row.why;
        EXPECT_EQ(record.isAttachment, row.isAttachment) << row.why;
        EXPECT_EQ(record.isInline, row.isInline) << row.why;
    }
}

TEST(HeaderVisitor, TypeAndEncoding) {
    const struct {
        std::string_view value, type, name;
        const char* why;
    } rows[] = {
        {"a/b; name=\"x;y\"", "a/b", "x;y", "quoted"},
        {"a/b; name='x;y'", "a/b", "'x", "a single quote is an ordinary character here"},
        {"a/b; name=\"\"", "a/b", "before", "nothing between quotes stores nothing"},
        {"a/b; name=\"x", "a/b", "before", "nor does an open quote"},
        {"a/b;name \t= x y ", "a/b", "x y ", "the rest as it stands"},
        {"a/b;\rname=x", "a/b", "before", "a carriage return is no blank here"},
    };
    for (const auto& row : rows) {
        CapturedHeaders record;
        record.contentTypeName = "before";
        visitHeader(record, "CONTENT-TYPE", row.value);
        EXPECT_EQ(record.contentType, row.type) << row.why;
        EXPECT_EQ(record.contentTypeName, row.name) << row.why;
    }
    EXPECT_TRUE(visited({{"Content-Encoding", "GZIP, br"}}).isGzip);
    EXPECT_FALSE(visited({{"Content-Encoding", "br, gzip"}}).isGzip);
    for (const std::string_view packed : {"gzip", "br", "zstd", "identity, br"})
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
