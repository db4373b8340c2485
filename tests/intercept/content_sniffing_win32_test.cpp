#include "intercept/content_sniffing.h"

#include <gtest/gtest.h>

#include <optional>

#include "readings.h"

namespace zab {
namespace {

using namespace std::string_literals;

TEST(ContentSniffing, TellsWhatTheFirstBytesReveal) {
    const std::string zeros(64, '\0');
    const zabtest::ReadingOf<std::optional<std::string>> rows[] = {
        {"%PDF-1.4\n" + zeros, "PDF", "a type of the table"},
        {"RIFF\x10\0\0\0WAVEfmt "s + zeros, "WAV", "one that looks like nothing at first"},
        {"\xFF\xD8" + zeros, "", "a type that has no row is told without a code"},
        {"only some words", std::nullopt, "text says nothing"},
        {zeros, std::nullopt, "neither do some bytes"},
        {std::string(256, 'a') + "\0\x01\x02"s, std::nullopt, "what stands behind 256 bytes is not looked at"},
        {"", std::nullopt, "nothing"},
    };
    const auto sniffed = [](const std::string& bytes) -> std::optional<std::string> {
        MyStrClass classCode;
        classCode.Set("before");
        if (SniffContentType(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                             static_cast<std::uint32_t>(bytes.size()), classCode))
            return std::string(classCode.view());
        EXPECT_EQ(classCode.view(), "before");
        return std::nullopt;
    };
    zabtest::expectReadings(sniffed, rows);
    MyStrClass classCode;
    EXPECT_FALSE(SniffContentType(nullptr, 5, classCode));
}

}  // namespace
}  // namespace zab
