#include "transfer/ascii_host.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(AsciiHost, IsAsItTravels) {
    const struct {
        std::string host;
        std::optional<std::string> ascii;
        const char* why;
    } rows[] = {
        {"B\u00FCcher.example", "xn--bcher-kva.example", "letters outside ASCII, in small letters"},
        {std::string(64, 'a') + "\u00E4.example", std::nullopt, "a label too long for the DNS"},
        {std::string(300, 'a'), std::nullopt, "a name too long for the DNS"},
    };
    for (const auto& row : rows) EXPECT_EQ(asciiHostOf(row.host), row.ascii) << row.why;
}

}  // namespace
}  // namespace zab
