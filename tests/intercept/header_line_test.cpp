#include "intercept/header_line.h"

#include <gtest/gtest.h>

#include "web/file_name.h"

namespace zab {
namespace {

using namespace std::string_view_literals;

TEST(HeaderLine, FileNameOfContentDisposition) {
    constexpr auto kBefore = "before";
    const struct {
        std::string_view value, fileName;
        bool isAttachment;
        const char* why;
    } rows[] = {
        {" attachment; filename=\"a b.zip\"\r\n", "a b.zip", true, "a quoted name keeps its blanks"},
        {" attachment; filename=a.zip; size=3\r\n", "a.zip", true, "an unquoted name ends at its semicolon"},
        {" Attachment; filename=a.zip\n", "a.zip", false, "the word in this letter case only"},
        {" inline; Filename=a.zip\r\n", "", false, "the parameter too"},
        {" attachment; filename=\r\n", "", true, "nothing behind the equals sign"},
        {" attachment; filename= \t\r\n", "", true, "nothing but blanks: the CR is one"},
        {" attachment; filename=", "", true, "the text ends there"},
        {" attachment; filename=a.zip", "", true, "an unquoted name needs its line end"},
        {" attachment; filename=\"a.zip\"", "a.zip", true, "a quoted one does not"},
        {" attachment; filename=\"a;b.zip\r\n", "\"a", true, "an open quote stays, and the semicolon cuts"},
        {" attachment; filename=\"a.zip\r\n", "\"a.zip", true, "an open quote stays"},
        {" attachment; filename=\"\"\r\n", "", true, "an empty name"},
        {" attachment\r\n", "", true, "no name clears an earlier one"},
        {" attachment; filename*=UTF-8''%C3%A9.zip\r\n", "UTF-8''%C3%A9.zip", true, "extended: as it stands"},
        {" attachment; filename=\xC3\xA9.zip\r\n", "utf-8''\xC3\xA9.zip", true, "raw UTF-8 gets the prefix"},
        {" attachment; filename=\xE9.zip\r\n", "\xE9.zip", true, "another code page does not"},
        {" attachment; filename=\"=?utf-8?B?w6kuemlw?=\"\r\n", "utf-8''\xC3\xA9.zip", true, "encoded word"},
        {" attachment; filename=\"=?UTF-8?Q?a.zip?=\"\r\n", "", true, "of a kind that is not decoded"},
        {" attachment; filename=\"a\0b\"\r\n"sv, "", true, "a NUL ends the line, so the quote is open"},
    };
    for (const auto& row : rows) {
        ResponseHeaderInfo info;
        info.fileName = kBefore;
        EXPECT_TRUE(ParseResponseHeaderLine(info, "\t content-DISPOSITION:" + std::string(row.value)));
        EXPECT_EQ(info.fileName, row.fileName) << row.why;
        EXPECT_EQ(info.isAttachment, row.isAttachment) << row.why;
    }
}

TEST(HeaderLine, ContentTypeAndItsName) {
    constexpr auto kBefore = "before";
    const struct {
        std::string_view line, type, name;
        const char* why;
    } rows[] = {
        {"Content-Type: text/html; name=\"x.htm\"\r\n", "text/html", "x.htm", "quoted"},
        {"Content-Type:text/html;name='x;y'\n", "text/html", "x;y", "single quotes, a semicolon inside"},
        {"Content-Type: text/html ; charset=u;  NAME = x.htm;q=1\r\n", "text/html ", "x.htm", "unquoted"},
        {"Content-Type: text/html; name=\"x\r\n", "text/html", kBefore, "an open quote stores nothing"},
        {"Content-Type: a/b; names=x; name=y; name=z", "a/b", "y", "the first parameter of exactly this name"},
        {"Content-Type: a/b; name=\"x; name=y", "a/b", kBefore, "the first one counts, even unreadable"},
        {"Content-Type: a/b; name=\"\"", "a/b", "", "an empty name is a name"},
        {"Content-Type: a/b; name=", "a/b", "", "unquoted too"},
        {"Content-Type: a/b\r\n", "a/b", kBefore, "no name clears none"},
        {"Content-Type:\r\n", "", kBefore, "no type clears the type"},
    };
    for (const auto& row : rows) {
        ResponseHeaderInfo info;
        info.contentType = info.contentTypeName = kBefore;
        EXPECT_TRUE(ParseResponseHeaderLine(info, row.line));
        EXPECT_EQ(info.contentType, row.type) << row.why;
        EXPECT_EQ(info.contentTypeName, row.name) << row.why;
    }
}

TEST(HeaderLine, ContentLengthAndForeignLines) {
    const struct {
        std::string_view line;
        bool handled;
        std::int64_t length;
        const char* why;
    } rows[] = {
        {" Content-Length: 12x\r\n", true, 12, "up to the first other character"},
        {"content-length:99999999999999999999", true, INT64_MAX, "the nearest limit"},
        {"content-length: -5", true, 0, "negative counts as unknown"},
        {"content-length: none", true, 7, "no number leaves the length"},
        {"content-length : 5", false, 7, "another name"},
        {"\ncontent-length: 5", false, 7, "a line feed is no blank"},
        {"", false, 7, "nothing"},
    };
    for (const auto& row : rows) {
        ResponseHeaderInfo info;
        info.contentLength = 7;
        EXPECT_EQ(ParseResponseHeaderLine(info, row.line), row.handled) << row.why;
        EXPECT_EQ(info.contentLength, row.length) << row.why;
    }
}

TEST(FileName, Utf8IsJudgedByLeadAndContinuationBytes) {
    const struct {
        std::string_view text;
        bool complete;
        const char* why;
    } rows[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", true, "one to four bytes"},
        {"\xC0\x80", true, "overlong passes"},
        {"\xED\xA0\x80", true, "a surrogate passes"},
        {"\xC3", false, "open at the end"},
        {"\xE2\x82z", false, "broken off"},
        {"\xC3\xC3\xA9", false, "a lead byte inside"},
        {"\x80", false, "a continuation byte alone"},
        {"\xF8\x88\x80\x80\x80", false, "five bytes"},
    };
    for (const auto& row : rows) EXPECT_EQ(isCompleteUtf8(row.text), row.complete) << row.why;
}

}  // namespace
}  // namespace zab
