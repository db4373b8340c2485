#include "intercept/header_line.h"

#include <gtest/gtest.h>

#include "intercept/header_capture.h"
#include "readings.h"
#include "web/file_name.h"

namespace zab {
namespace {

using namespace std::string_literals;
using zabtest::ReadingOf;

constexpr std::string_view kBefore = "before";  // what stays where a header tells nothing

TEST(Headers, DispositionAsALineAndByTheVisitor) {
    const zabtest::Reading rows[] = {
        // the file name of either, and whether it is an attachment or inline
        {"attachment; filename=\"a b;c.zip\"", "a b;c.zip|a b;c.zip|a", "a quoted name, whole"},
        {"attachment; filename= a.zip; x", "a.zip|a.zip|a", "an unquoted one ends there"},
        {"Attachment; inline; Filename=a.zip", "|a.zip|i", "the parameter alone in any case"},
        {"x; FILENAME=1.zip; filename=2.zip", "2.zip|2.zip|", "the exact spelling first"},
        {"attachment; filename=\"inline\"", "inline|inline|a", "a word of the name"},
        {"attachment; filename=", "|before|a", "nothing behind the equals sign"},
        {"attachment; filename= \t\r", "|before|a", "nothing but blanks"},
        {"attachment; filename=;x", "||a", "an empty unquoted name is stored"},
        {"attachment; filename=\"\"", "|before|a", "an empty quoted one"},
        {"attachment; filename=\"a;b.zip", "\"a|before|a", "an open quote is one of its letters"},
        {"form-data; name=x", "|before|", "a new disposition clears flags and the line's name"},
        {"attachment; filename*=UTF-8''%C3", "UTF-8''%C3|UTF-8''%C3|a", "extended: as it stands"},
        {"attachment; filename=\xC3\xA9", "utf-8''\xC3\xA9|utf-8''\xC3\xA9|a", "raw UTF-8"},
        {"attachment; filename=\xE9", "\xE9|\xE9|a", "another code page"},
        {"attachment; filename==?UTF-8?B?YQ==?=", "utf-8''a|utf-8''a|a", "an encoded word"},
        {"attachment; filename==?UTF-8?Q?a?=", "|before|a", "of a kind that is not decoded"},
        {"attachment; filename=\"a\0b\""s, "|before|a", "a NUL ends it, so the quote is open"},
    };
    const auto read = [](const std::string& value) {
        ResponseHeaderInfo info;
        CapturedHeaders record;
        info.fileName = record.fileName = kBefore;
        info.isAttachment = record.isAttachment = record.isInline = true;
        EXPECT_TRUE(ParseResponseHeaderLine(info, "\t content-DISPOSITION:" + value + "\r\n"));
        visitHeader(record, "content-DISPOSITION", value);
        EXPECT_EQ(info.isAttachment, record.isAttachment) << value;
        return info.fileName + "|" + record.fileName + (record.isAttachment ? "|a" : "|") +
               (record.isInline ? "i" : "");
    };
    zabtest::expectReadings(read, rows);
    const auto ofLine = [](std::string_view line) {
        ResponseHeaderInfo info;
        ParseResponseHeaderLine(info, line);
        return info.fileName;
    };
    EXPECT_EQ(ofLine("Content-Disposition: x; filename=a.zip"), "") << "an unquoted name needs its line end";
    EXPECT_EQ(ofLine("Content-Disposition: x; filename=a.zip\n"), "a.zip") << "a line feed is one";
    EXPECT_EQ(ofLine("Content-Disposition: x; filename=\"a.zip\""), "a.zip") << "a quoted one does not";
}

TEST(Headers, TypeAndItsNameAsALineAndByTheVisitor) {
    const zabtest::Reading rows[] = {
        // the type, and its name of either
        {"a/b; name=\"x;y\"", "a/b|x;y|x;y", "quoted"},
        {"a/b; name='x;y'", "a/b|x;y|'x", "a single quote is an ordinary character for the visitor"},
        {"a/b ; charset=u;  NAME \t= x z;q=1", "a/b |x z|x z", "unquoted"},
        {"a/b; name=\"x; name=y", "a/b|before|before", "the first one counts, even with an open quote"},
        {"a/b; names=x; name=y; name=z", "a/b|y|y", "the first parameter of exactly this name"},
        {"a/b; name=\"\"", "a/b||before", "an empty name is a name for the line"},
        {"a/b; name=", "a/b||", "unquoted for both"},
        {"a/b;\rname=x", "a/b|x|before", "a carriage return is no blank for the visitor"},
        {"", "|before|before", "no type clears the type, and no name none"},
    };
    const auto read = [](const std::string& value) {
        ResponseHeaderInfo info;
        CapturedHeaders record;
        info.contentType = info.contentTypeName = record.contentType = record.contentTypeName = kBefore;
        EXPECT_TRUE(ParseResponseHeaderLine(info, "Content-Type: " + value + "\r\n"));
        visitHeader(record, "CONTENT-TYPE", value);
        EXPECT_EQ(info.contentType, record.contentType) << value;
        return info.contentType + "|" + info.contentTypeName + "|" + record.contentTypeName;
    };
    zabtest::expectReadings(read, rows);
}

TEST(HeaderLine, ContentLengthAndForeignLines) {
    const ReadingOf<std::optional<std::int64_t>> rows[] = {
        // nothing: not handled
        {" Content-Length: 12x\r\n", 12, "up to the first other character"},
        {"content-length:99999999999999999999", INT64_MAX, "the nearest limit"},
        {"content-length: -5", 0, "negative counts as unknown"},
        {"content-length: none", 7, "no number leaves the length"},
        {"content-length : 5", std::nullopt, "another name"},
        {"", std::nullopt, "nothing"},
    };
    const auto read = [](std::string_view line) {
        ResponseHeaderInfo info;
        info.contentLength = 7;
        const bool handled = ParseResponseHeaderLine(info, line);
        EXPECT_TRUE(handled || info.contentLength == 7) << line;
        return handled ? std::optional(info.contentLength) : std::nullopt;
    };
    zabtest::expectReadings(read, rows);
}

TEST(FileName, Utf8IsJudgedByLeadAndContinuationBytes) {
    const ReadingOf<bool> rows[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", true, "one to four bytes"},
        {"\xC0\x80", true, "overlong passes"},
        {"\xC3", false, "open at the end"},
        {"\xE2\x82z", false, "broken off"},
        {"\xC3\xC3\xA9", false, "a lead byte inside"},
        {"\x80", false, "a continuation byte alone"},
        {"\xF8\x88\x80\x80\x80", false, "five bytes"},
    };
    zabtest::expectReadings(isCompleteUtf8, rows);
}

}  // namespace
}  // namespace zab
