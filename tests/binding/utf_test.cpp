#include "binding/utf.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

TEST(Utf, EachBadByteIsOneReplacement) {
    const zabtest::Reading rows[] = {
        {"a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "well formed"},
        {"\xC2\x80\xF4\x8F\xBF\xBF", "\xC2\x80\xF4\x8F\xBF\xBF", "the first and last leads of several bytes"},
        {"\xE2\x82z", "\xEF\xBF\xBD\xEF\xBF\xBDz", "cut short by a letter: one for each byte"},
        {"\xC0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD", "longer than need be"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "a surrogate"},
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "beyond U+10FFFF"},
        {"\xF0\x9F\x98", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD", "cut short by the end"},
        {"\x80", "\xEF\xBF\xBD", "a continuation alone"},
    };
    zabtest::expectReadings(wellFormedUtf8, rows);
    zabtest::expectReadings([](const auto& text) { return utf8FromUtf16(utf16FromUtf8(text)); }, rows);
}

TEST(Utf, ASurrogateWithoutItsPartnerIsOneReplacement) {
    EXPECT_EQ(utf8FromUtf16(u"\xD83Dx"), "\xEF\xBF\xBDx");
    EXPECT_EQ(utf8FromUtf16(u"\xDE00\xD83D"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace zab
