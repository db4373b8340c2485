#include "transfer/failure_report.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using Kind = FailureBox::Kind;

TEST(FailureReport, SaysWhatWentWrongInItsOwnWords) {
    MessageTexts texts;
    texts.replace(20865, "elevated");
    texts.replace(20905, "failed \xC3\xA9");
    texts.replace(20906, "privileges");
    texts.replace(20907, "browser");
    const char* const kExe = "C:\\ZAB\\ZABMan.exe";
    const struct {
        std::uint32_t status;
        FailureReportFacts facts;
        FailureBox box;
        const char* why;
    } rows[] = {
        {0,
         {kExe, "RUNASADMIN"},
         {Kind::question,
          "You have installed \"ZAB Integration\" extension successfully. Unfortunately the extension can not "
          "be "
          "used right away because it seems you did not install Zabrion yet. Would you like to know how to "
          "download and install Zabrion?"},
         "the start-up message asks no facts"},
        {0x80040154,
         {std::nullopt, "RUNASADMIN"},
         {Kind::question,
          "Cannot transfer file download to Zabrion. It's possible that it's not installed. Would you like to "
          "download and install Zabrion?"},
         "not installed, whatever the error"},
        {0x80040154, {kExe, "RUNASADMIN"}, {Kind::information, "elevated"}, "that text and nothing else"},
        {0x80080005, {kExe, "~ RUNASADMIN"}, {Kind::information, "elevated"}, "one word of several"},
        {0x80080005,
         {kExe, "NORUNASADMIN RUNASADMINS"},
         {Kind::information, "failed \xC3\xA9\r\nError 0x80080005"},
         "other words"},
        {0x800702E4,
         {kExe, ""},
         {Kind::information, "failed \xC3\xA9\r\n\r\nprivileges\r\n\r\nbrowser"},
         "elevation required"},
        {0x8001010D,
         {kExe, ""},
         {Kind::information, "failed \xC3\xA9\r\nError 0x8001010D"},
         "upper-case digits"},
        {0x1,
         {"", ""},
         {Kind::information, "failed \xC3\xA9\r\nError 0x1"},
         "an empty path is a path; no zeros"},
    };
    for (const auto& row : rows) {
        const auto box = failureBoxFor(row.status, row.facts, texts);
        EXPECT_EQ(box.text, row.box.text) << row.why;
        EXPECT_EQ(box.kind, row.box.kind) << row.why;
    }
    for (const std::uint32_t status : {0x80070003u, 0x8002801Du, 0x80040154u})
        EXPECT_EQ(
            failureBoxFor(status, {kExe, ""}, texts).text,
            "failed \xC3\xA9\r\n\r\nThe required ZAB components are not registered/found. Please reinstall "
            "Zabrion with Administrator rights")
            << std::hex << status;
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
