// The decision that zabprobe prints is the one that the module acts on, for everything that real browsers
// recorded.
#include "scenarios/recorded.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

/// The module's line about a decision, without its mark.
std::vector<std::string> linesOf(Browser& browser) {
    constexpr std::string_view kMark = "**********Examine ";
    std::vector<std::string> lines;
    for (const auto& line : browser.takesDebugLines())
        if (line.starts_with(kMark)) lines.push_back(line.substr(kMark.size()));
    return lines;
}

TEST(RecordedExchanges, AreDecidedByTheModuleAsByTheProbe) {
    const struct {
        const char* why;
        const char *extensions, *exceptions;
        bool integration;
        std::uint8_t key;
    } rows[] = {
        {"an ordinary list", "zip rar 7z gz exe msi", "", true, 0},
        {"other extensions", "iso txt php html", "", true, 0},
        {"an excepted server", "zip exe", "*.example 127.0.*", true, 0},
        {"switched off", "zip exe", "", false, 0},
        {"the prevent key", "zip exe", "", true, kAlt},
        {"the force key", "zip exe", "", true, kControl},
    };
    const auto exchanges = recordedExchanges("");
    ASSERT_GT(exchanges.size(), 100u);
    for (const auto& row : rows) {
        SettingsTree settings;
        settings.set("Extensions", row.extensions).set("ExceptionServers", row.exceptions);
        settings.set("SpecialKeys\\UseKeyToPrevent", 1u).set("SpecialKeys\\AltP", 1u);
        settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
        settings.set("ZABBI\\zab_scenarios\\int", row.integration ? 1u : 0u);
        const HeldKeys keys(row.key != 0 ? std::vector<std::uint8_t>{row.key} : std::vector<std::uint8_t>{});
        GivenSettings given;
        given.extensionList = row.extensions;
        given.exceptionList = row.exceptions;
        given.integration = row.integration;
        given.preventKey = row.key == kAlt;
        given.forceKey = row.key == kControl;

        SoundBrowser browser;
        HookedSystem system(browser);
        browser.startsUp();
        CapturedHeaders scratch;
        for (const auto& exchange : exchanges) {
            const std::string where = std::string(row.why) + ": " + exchange.url;
            const Decision decision = zabprobe::decideExchange(exchange, given, scratch);
            linesOf(browser);
            const Channel& channel = play(browser, exchange);
            const auto lines = linesOf(browser);
            const auto told = system.takesTold();
            if (decision.reason == Reason::noResponse) {
                EXPECT_TRUE(lines.empty()) << where;
            } else {
                const std::string line =
                    std::string(outcomeName(decision.outcome)) + ": " + sentenceOf(decision);
                EXPECT_EQ(lines, std::vector<std::string>{line}) << where;
            }
            const bool taken = decision.outcome == Outcome::transfer;
            EXPECT_EQ(channel.cancelled() || !channel.written.empty(), taken) << where;
            ASSERT_EQ(told.size(), taken ? 1u : 0u) << where;
            if (!taken) continue;
            EXPECT_EQ(told[0].flags, decision.flags) << where;
            EXPECT_EQ(told[0].text("fileName"), decision.fileName) << where;
            EXPECT_EQ(told[0].text(nameOf(ExtraElement::typeHint)), decision.extension) << where;
            const auto length = decision.contentLength;
            EXPECT_EQ(told[0].text(nameOf(ExtraElement::size)), length > 0 ? std::to_string(length) : "")
                << where;
        }
    }
}

}  // namespace
}  // namespace zab::testbed
