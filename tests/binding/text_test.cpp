#include "binding/text.h"

#include <gtest/gtest.h>

#include <limits>

#include "readings.h"

namespace zab {
namespace {

using zabtest::expectReadings;
using zabtest::ReadingOf;

/// What `scan` reads; nothing when it reads none, and then the field stays.
template <class Number>
auto readBy(bool (*scan)(std::string_view, Number&)) {
    return [scan](std::string_view text) {
        Number field = 77;
        const bool read = scan(text, field);
        EXPECT_TRUE(read || field == 77) << text;
        return read ? std::optional(field) : std::nullopt;
    };
}

TEST(ScanNumbers, ReadTheLongestValidPrefixAndStayInRange) {
    using Both = std::pair<std::optional<std::int32_t>, std::optional<std::int64_t>>;
    const ReadingOf<Both> rows[] = {
        {" \t\n\v\f\r12x", {12, 12}, "white space of C before, anything behind"},
        {"+7", {7, 7}, "a sign"},
        {"-5", {-5, -5}, "negative"},
        {"- 5", {}, "no blank between sign and digits"},
        {"2147483648", {INT32_MAX, 2147483648}, "beyond 31 bits"},
        {"-2147483649", {INT32_MIN, -2147483649}, "beyond the lower limit"},
        {"99999999999999999999", {INT32_MAX, INT64_MAX}, "beyond 64 bits"},
        {"-99999999999999999999", {INT32_MIN, INT64_MIN}, "beyond 64 bits, negative"},
        {"", {}, "nothing"},
    };
    expectReadings(
        [](const auto& text) {
            return Both{readBy(scanInt32)(text), readBy(scanInt64)(text)};
        },
        rows);
}

TEST(ScanNumbers, DoublesAreDecimalOnly) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const ReadingOf<std::optional<double>> rows[] = {
        {"9.5,x", 9.5, "up to the first foreign character"},
        {" -1e3", -1000, "sign and power"},
        {"1e", 1, "a power without digits is none"},
        {"1e+", 1, "nor is one with a sign alone"},
        {".5", 0.5, "no digit before the point"},
        {"5.", 5, "none behind it"},
        {"0x10", 0, "no hexadecimal"},
        {"-1e999", -kInfinity, "too large, negative"},
        {"1e-999", 0, "too small"},
        {"nan", std::nullopt, "a word"},
        {"+.e1", std::nullopt, "no digit before the power"},
        {"-", std::nullopt, "a sign alone"},
    };
    expectReadings(readBy(scanDouble), rows);
}

TEST(ScanNumbers, HexadecimalWithAndWithoutPrefix) {
    const ReadingOf<std::optional<std::uint32_t>> rows[] = {
        {"0407", 0x407, "digits"},
        {" 0x40aG", 0x40A, "up to the first foreign character"},
        {"0x", 0, "a prefix of nothing is a digit"},
        {"fffffffff", UINT32_MAX, "too large"},
        {"g", std::nullopt, "no digit"},
    };
    expectReadings(readBy(scanHex32), rows);
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
