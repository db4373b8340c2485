#include "binding/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zab {
namespace {

TEST(ScanNumbers, ReadTheLongestValidPrefixAndStayInRange) {
    constexpr std::int64_t kLeft = 77;  // what the field held before
    const struct {
        std::string_view text;
        std::int64_t int32, int64;
        const char* why;
    } rows[] = {
        {" \t\n\v\f\r12x", 12, 12, "white space of C before, anything behind"},
        {"+7", 7, 7, "a sign"},
        {"-5", -5, -5, "negative"},
        {"- 5", kLeft, kLeft, "no blank between sign and digits"},
        {"2147483648", INT32_MAX, 2147483648, "beyond 31 bits"},
        {"-2147483649", INT32_MIN, -2147483649, "beyond the lower limit"},
        {"99999999999999999999", INT32_MAX, INT64_MAX, "beyond 64 bits"},
        {"-99999999999999999999", INT32_MIN, INT64_MIN, "beyond 64 bits, negative"},
        {"", kLeft, kLeft, "nothing"},
        {"x1", kLeft, kLeft, "no digit first"},
    };
    for (const auto& row : rows) {
        std::int32_t int32 = kLeft;
        std::int64_t int64 = kLeft;
        EXPECT_EQ(scanInt32(row.text, int32), row.int32 != kLeft) << row.why;
        scanInt64(row.text, int64);
        EXPECT_EQ(int32, row.int32) << row.why;
        EXPECT_EQ(int64, row.int64) << row.why;
    }
}

TEST(ScanNumbers, DoublesAreDecimalOnly) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const struct {
        std::string_view text;
        double value;
        const char* why;
    } rows[] = {
        {"9.5,x", 9.5, "up to the first foreign character"},
        {" -1e3", -1000, "sign and power"},
        {"1e", 1, "a power without digits is none"},
        {"1e+", 1, "nor is one with a sign alone"},
        {".5", 0.5, "no digit before the point"},
        {"5.", 5, "none behind it"},
        {"0x10", 0, "no hexadecimal"},
        {"1e999", kInfinity, "too large"},
        {"-1e999", -kInfinity, "too large, negative"},
        {"1e-999", 0, "too small"},
    };
    for (const auto& row : rows) {
        double value = 77;
        EXPECT_TRUE(scanDouble(row.text, value)) << row.why;
        EXPECT_EQ(value, row.value) << row.why;
    }
    for (const std::string_view text : {"", ".", "inf", "nan", "e5", "-", "+.e1"}) {
        double value = 77;
        EXPECT_FALSE(scanDouble(text, value)) << text;
        EXPECT_EQ(value, 77) << text;
    }
}

TEST(ScanNumbers, HexadecimalWithAndWithoutPrefix) {
    const struct {
        std::string_view text;
        std::uint32_t value;
    } rows[] = {{"0407", 0x407}, {" 0x40aG", 0x40A}, {"0x", 0}, {"fffffffff", UINT32_MAX}};
    for (const auto& row : rows) {
        std::uint32_t value = 77;
        EXPECT_TRUE(scanHex32(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
    std::uint32_t value = 77;
    EXPECT_FALSE(scanHex32("g", value));
    EXPECT_EQ(value, 77u);
}

TEST(LeadingDigits, StopAtTheLimit) {
    EXPECT_EQ(leadingDigits("137\"x"), 137u);
    EXPECT_EQ(leadingDigits(" 1"), std::nullopt) << "digits only";
    EXPECT_EQ(leadingDigits("18446744073709551615"), UINT64_MAX);
    EXPECT_EQ(leadingDigits("18446744073709551616"), UINT64_MAX);
    EXPECT_EQ(leadingDigits("9", 5), 5u) << "a digit above a small limit";
}

}  // namespace
}  // namespace zab
