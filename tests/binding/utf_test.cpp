#include "binding/utf.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(Utf, EachBadByteIsOneReplacement) {
    const struct {
        std::string_view in, out;
        const char* why;
    } rows[] = {
        {"a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "well formed"},
        {"\xC2\x80\xF4\x8F\xBF\xBF", "\xC2\x80\xF4\x8F\xBF\xBF",
         "the first and last leads of more than one byte"},
        {"\xE2\x82"
         "A",
         "\xEF\xBF\xBD\xEF\xBF\xBD"
         "A",
         "cut short by a letter: one for each byte"},
        {"\xC0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD", "longer than need be"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "a surrogate"},
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "beyond U+10FFFF"},
        {"\xF0\x9F\x98", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "cut short by the end"},
        {"\x80", "\xEF\xBF\xBD", "a continuation alone"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(wellFormedUtf8(row.in), row.out) << row.why;
        EXPECT_EQ(utf8FromUtf16(utf16FromUtf8(row.in)), row.out) << row.why;
    }
}

TEST(Utf, ASurrogateWithoutItsPartnerIsOneReplacement) {
    EXPECT_EQ(utf8FromUtf16(u"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(utf8FromUtf16(u"\xD83Dx"), "\xEF\xBF\xBDx");
    EXPECT_EQ(utf8FromUtf16(u"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace zab
