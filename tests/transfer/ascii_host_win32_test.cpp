#include "transfer/ascii_host.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

TEST(AsciiHost, IsAsItTravels) {
    const zabtest::ReadingOf<std::optional<std::string>> rows[] = {
        {"B\u00FCcher.example", "xn--bcher-kva.example", "letters outside ASCII, in small letters"},
        {std::string(64, 'a') + "\u00E4.example", std::nullopt, "a label too long for the DNS"},
        {std::string(300, 'a'), std::nullopt, "a name too long for the DNS"},
    };
    zabtest::expectReadings(asciiHostOf, rows);
}

}  // namespace
}  // namespace zab
