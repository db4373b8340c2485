#include "transfer/failure_report.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

TEST(FailureReport, SaysWhatWentWrongInItsOwnWords) {
    MessageTexts texts;
    texts.replace(20865, "elevated");
    texts.replace(20905, "failed \xC3\xA9");
    texts.replace(20906, "privileges");
    texts.replace(20907, "browser");
    const std::string notRegistered =
        "failed \xC3\xA9\r\n\r\nThe required ZAB components are not registered/found. Please reinstall Zabrion "
        "with Administrator rights";
    // given the status, and the layers of the program
    const zabtest::ReadingOf<std::string, std::pair<std::uint32_t, std::string>> rows[] = {
        {{0x80040154, "RUNASADMIN"}, "elevated", "that text and nothing else"},
        {{0x80080005, "~ RUNASADMIN"}, "elevated", "one word of several"},
        {{0x80080005, "NORUNASADMIN RUNASADMINS"}, "failed \xC3\xA9\r\nError 0x80080005", "other words"},
        {{0x800702E4, ""}, "failed \xC3\xA9\r\n\r\nprivileges\r\n\r\nbrowser", "elevation required"},
        {{0x8001010D, ""}, "failed \xC3\xA9\r\nError 0x8001010D", "upper-case digits"},
        {{0x1, ""}, "failed \xC3\xA9\r\nError 0x1", "no zeros"},
        {{0x80070003, ""}, notRegistered, "a path that is not found"},
        {{0x8002801D, ""}, notRegistered, "a library that is not registered"},
        {{0x80040154, ""}, notRegistered, "a class that is not"},
    };
    const auto told = [&texts](const auto& given) {
        const auto& [status, layer] = given;
        const auto box = failureBoxFor(status, {"", layer}, texts);  // an empty path is a path
        EXPECT_EQ(box.kind, FailureBox::Kind::information) << box.text;
        return box.text;
    };
    zabtest::expectReadings(told, rows);
    const auto atStart = failureBoxFor(0, {"C:\\ZAB\\ZABMan.exe", "RUNASADMIN"}, texts);
    EXPECT_EQ(atStart.kind, FailureBox::Kind::question) << "asks no facts";
    const auto missing = failureBoxFor(0x80040154, {std::nullopt, "RUNASADMIN"}, texts);
    EXPECT_EQ(missing.kind, FailureBox::Kind::question) << "not installed, whatever the error";
}

TEST(FailureReport, FailuresThatComeTogetherShareABox) {
    SharedBox box;
    const SharedBox::Time now{};
    EXPECT_TRUE(box.opens(now));
    EXPECT_FALSE(box.opens(now + SharedBox::kTogether / 2)) << "the open box tells it";
    EXPECT_TRUE(box.opens(now + SharedBox::kTogether)) << "much later, while nobody is there to answer";
    box.closed();
    EXPECT_FALSE(box.opens(now + SharedBox::kTogether)) << "one is still open";
    box.closed();
    EXPECT_TRUE(box.opens(now + SharedBox::kTogether)) << "the user has answered";
}

TEST(FailureReport, TellsAFailureOnTheWayFromAnAnswer) {
    for (const std::uint32_t status : {0x80010108u, 0x800106FFu, 0x80010000u, 0x800706BAu, 0x800706FFu})
        EXPECT_TRUE(isTransportFailure(status)) << std::hex << status;
    for (const std::uint32_t status : {0u, 1u, 0x00010108u, 0x80004005u, 0x80070005u, 0x800707BAu, 0x80020009u})
        EXPECT_FALSE(isTransportFailure(status)) << std::hex << status;
}

}  // namespace
}  // namespace zab
