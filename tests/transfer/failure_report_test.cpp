#include "transfer/failure_report.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(FailureReport, SaysWhatWentWrongInItsOwnWords) {
    MessageTexts texts;
    texts.replace(20865, "elevated");
    texts.replace(20905, "failed \xC3\xA9");
    texts.replace(20906, "privileges");
    texts.replace(20907, "browser");
    constexpr const char* kExe = "C:\\ZAB\\ZABMan.exe";
    constexpr std::string_view kNotRegistered =
        "failed \xC3\xA9\r\n\r\nThe required ZAB components are not registered/found. Please reinstall Zabrion "
        "with "
        "Administrator rights";
    const struct {
        std::uint32_t status;
        const char *exe, *layer;
        std::string_view text;
        const char* why;
    } rows[] = {
        {0x80040154, kExe, "RUNASADMIN", "elevated", "that text and nothing else"},
        {0x80080005, kExe, "~ RUNASADMIN", "elevated", "one word of several"},
        {0x80080005, kExe, "NORUNASADMIN RUNASADMINS", "failed \xC3\xA9\r\nError 0x80080005", "other words"},
        {0x800702E4, kExe, "", "failed \xC3\xA9\r\n\r\nprivileges\r\n\r\nbrowser", "elevation required"},
        {0x8001010D, kExe, "", "failed \xC3\xA9\r\nError 0x8001010D", "upper-case digits"},
        {0x1, "", "", "failed \xC3\xA9\r\nError 0x1", "an empty path is a path; no zeros"},
        {0x80070003, kExe, "", kNotRegistered, "a path that is not found"},
        {0x8002801D, kExe, "", kNotRegistered, "a library that is not registered"},
        {0x80040154, kExe, "", kNotRegistered, "a class that is not"},
    };
    for (const auto& row : rows) {
        const auto box = failureBoxFor(row.status, {row.exe, row.layer}, texts);
        EXPECT_EQ(box.text, row.text) << row.why;
        EXPECT_EQ(box.kind, FailureBox::Kind::information) << row.why;
    }
    const auto offered = [&texts](std::uint32_t status, std::optional<std::string> exe) {
        const auto box = failureBoxFor(status, {exe, "RUNASADMIN"}, texts);
        EXPECT_EQ(box.kind, FailureBox::Kind::question);
        return box.text;
    };
    EXPECT_EQ(
        offered(0, kExe),
        "You have installed \"ZAB Integration\" extension successfully. Unfortunately the extension can not be "
        "used right away because it seems you did not install Zabrion yet. Would you like to know how to "
        "download and install Zabrion?")
        << "the start-up message asks no facts";
    EXPECT_EQ(
        offered(0x80040154, std::nullopt),
        "Cannot transfer file download to Zabrion. It's possible that it's not installed. Would you like to "
        "download and install Zabrion?")
        << "not installed, whatever the error";
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
