#include "web/encoding.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using namespace std::string_view_literals;

TEST(Base64, WritesWhatRfc4648WritesAndReadsItBack) {
    const struct {
        std::string_view bytes, text;
    } rows[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"\xFB\xEF\xFF"sv, "++//"},
        {"\0\xFF\0"sv, "AP8A"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Base64Encode(row.bytes), row.text);
        EXPECT_EQ(Base64Decode(row.text), row.bytes);
    }
}

TEST(Base64, ReadingEndsAtTheFirstForeignByte) {
    const struct {
        std::string_view text, bytes;
        const char* why;
    } rows[] = {
        {" \t Zm9v", "foo", "leading blanks"},
        {"\nZm9v", "", "a line feed is no blank here"},
        {"Zm9v\r\nYmFy", "foo", "a line break ends it"},
        {"Zg", "f", "padding may be missing"},
        {"Zm8", "fo", "padding may be missing"},
        {"Zm9vY", "foo", "a single left-over character holds no byte"},
        {"Zg==Zm9v", "f", "nothing counts behind the padding"},
        {"Zm-_", "f", "the URL-safe alphabet is another"},
        {"Zm9v\xC3\xA4Zg", "foo", "a byte of 128 or more"},
        {"Zm9v\0Zg"sv, "foo", "a NUL"},
    };
    for (const auto& row : rows) EXPECT_EQ(Base64Decode(row.text), row.bytes) << row.why;
}

TEST(BasicCredentials, AreTheTwoSidesOfTheFirstColon) {
    const struct {
        std::string_view value;
        bool found;
        std::string_view user, password;
        const char* why;
    } rows[] = {
        {"Basic dTpw", true, "u", "p", "u:p"},
        {"  bAsIc   dTpw", true, "u", "p", "blanks on both sides of a scheme in any letter case"},
        {"Basic dTpwOnE=", true, "u", "p:q", "the password may hold a colon"},
        {"Basic Og==", true, "", "", "two empty parts"},
        {"Basic dTpwAHE=", true, "u", "p", "a NUL ends the text"},
        {"Basic dQ==", false, "", "", "no colon"},
        {"Basic dQA6cA==", false, "", "", "the colon stands behind a NUL"},
        {"Basic ", false, "", "", "nothing to decode"},
        {"Basic", false, "", "", "the scheme without its blank"},
        {"Bearer dTpw", false, "", "", "another scheme"},
        {"", false, "", "", "no text"},
    };
    for (const auto& row : rows) {
        const auto credentials = ParseBasicCredentials(row.value);
        ASSERT_EQ(credentials.has_value(), row.found) << row.why;
        if (!credentials) continue;
        EXPECT_EQ(credentials->user, row.user) << row.why;
        EXPECT_EQ(credentials->password, row.password) << row.why;
    }
}

TEST(EncodedWord, GivesTheMarkedUtf8Name) {
    const struct {
        std::string_view text;
        std::optional<std::string_view> name;
        const char* why;
    } rows[] = {
        {"=?UTF-8?B?w6QudHh0?=", "utf-8''\xC3\xA4.txt", "the usual form"},
        {"=?utf-8?b?w6QudHh0?= tail", "utf-8''\xC3\xA4.txt", "letter case, and text behind it"},
        {"=?UTF-8?B?YQ==?=", "utf-8''a", "padding before the end"},
        {"=?UTF-8?B?YQ?Yg?=", "utf-8''a", "a question mark without = does not close the word"},
        {"=?UTF-8?B?YQ==", std::nullopt, "never closed"},
        {"=?UTF-8?Q?a.txt?=", std::nullopt, "the other encoding"},
        {"=?UTF-8?B=", std::nullopt, "no second mark"},
        {"=?UTF-8", std::nullopt, "cut inside the prefix"},
    };
    for (const auto& row : rows) EXPECT_EQ(DecodeEncodedWordFileName(row.text), row.name) << row.why;
}

}  // namespace
}  // namespace zab
