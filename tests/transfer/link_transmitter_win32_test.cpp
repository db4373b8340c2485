// Real calls between two processes, and the message boxes of those that could not be made. Needs a display and
// zab_manager.exe beside the test program.
#include "transfer/link_transmitter_win32.h"

#include <gtest/gtest.h>

#include "binding/utf.h"
#include "browser/desktop.h"
#include "page/passwords.h"
#include "transfer/local_copy_win32.h"
#include "transfer/manager_process_win32.h"
#include "transfer/transfer.h"

namespace zab {
namespace {

using nlohmann::json;

/// Text of the message box that opens, which is then answered with `button`; empty without a box.
std::string answerBox(int button) {
    return utf8FromUtf16(testbed::answerMessageBox(button).value_or(testbed::ShownBox{}).text);
}

class Transfer : public ::testing::Test {
  protected:
    Transfer() { EXPECT_TRUE(manager.isRegistered(true)); }

    testing::ManagerProcess manager;
};

TEST_F(Transfer, CarriesEveryTextToItsPlace) {
    passwords().remember("http://page.example/", {"pu", "pp"});
    passwords().remember("http://second.example/", {"su", "sp"});
    TransferRecord record;
    record.url = "http://h.example/a%20\xE9.zip?x=1#part";  // the ANSI code page is 1252 here
    record.referrer = "referrer";
    record.cookies = "c=1; d=2";
    record.userAgent = "agent";
    record.user = "u";
    record.password = "p";
    record.fileName = "utf-8''\xC3\xA9";
    record.postBody = std::string("a\0b", 3);
    record.postContentType = "form";
    record.typeHint = "zip";
    record.contentType = "type";
    record.pageTitle = "title";
    record.pageUrl = "http://page.example/p";
    record.secondUrl = "http://second.example/s";
    record.extraData = "extra";
    record.description = "description";
    record.sizeBytes = 5'000'000'000;
    record.bodyOffered = true;
    record.flags = transfer_flags::kPostUnavailable;
    ASSERT_EQ(sendToDownloadManager(record), TransferResult::made);
    const json expected = {
        {"url", "http://h.example/a%20\xC3\xA9.zip?x=1"},
        {"referrer", "referrer"},
        {"cookies", "c=1; d=2"},
        {"postData", std::string("a\0b", 3)},
        {"user", "u"},
        {"password", "p"},
        {"reserved", nullptr},
        {"fileName", "utf-8''\xC3\x83\xC2\xA9"},
        {"flags", 0x1000008},
        {"extraData",
         {"agent", nullptr, "title", "zip", "form", "type", "5000000000", "http://page.example/p", "", nullptr,
          "pu", "pp", "http://second.example/s", "extra", nullptr, "su", "sp", "description", nullptr}},
        {"reservedVariant", VT_EMPTY},
    };
    EXPECT_EQ(manager.received(0), expected);
}

TEST_F(Transfer, TellsAbsentFromEmptyAndIsMadeWhateverTheManagerAnswers) {
    manager.set("TestbedAnswer", 0x80004005);
    ASSERT_EQ(sendToDownloadManager({.url = "#fragment"}), TransferResult::made);
    const json line = manager.received(0);
    ASSERT_TRUE(line.is_object());
    EXPECT_EQ(line.at("url"), "") << "a fragment alone is an empty address, and sent";
    for (const char* absent : {"referrer", "cookies", "postData", "user", "password", "reserved", "fileName"})
        EXPECT_EQ(line.at(absent), nullptr) << absent;
    json elements(19, nullptr);
    elements[8] = "";
    EXPECT_EQ(line.at("extraData"), elements);
}

TEST_F(Transfer, ToAManagerThatDiesIsNotMadeAndTheSessionFindsTheNextOne) {
    manager.set("TestbedDie", 1u);
    TransferSession session;
    EXPECT_EQ(session.send({.url = "http://h.example/1"}), TransferResult::notMade);
    EXPECT_TRUE(answerBox(IDOK).starts_with("Cannot transfer the download to ZAB\r\nError 0x8"));
    manager.set("TestbedDie", 0u);
    for (const char* url : {"http://h.example/2", "http://h.example/3"})
        EXPECT_EQ(session.send({.url = url}), TransferResult::made);
    EXPECT_EQ(manager.received(2).value("url", ""), "http://h.example/3");
}

TEST_F(Transfer, ToAManagerThatRunsElevatedIsToldAsThat) {
    ASSERT_TRUE(manager.isRegistered(false));
    constexpr const char* kLayers = "Software\\Microsoft\\Windows NT\\CurrentVersion\\AppCompatFlags\\Layers";
    RegSetKeyValueA(HKEY_CURRENT_USER, kLayers, testbed::SettingsTree::kProgram, REG_SZ, "RUNASADMIN", 11);
    EXPECT_EQ(sendToDownloadManager({.url = "http://h.example/"}), TransferResult::notMade);
    EXPECT_TRUE(
        answerBox(IDOK).starts_with("Firefox cannot transfer file download to Zabrion because you have"));
    RegDeleteKeyValueA(HKEY_CURRENT_USER, kLayers, testbed::SettingsTree::kProgram);
}

TEST_F(Transfer, WithoutAnAddressNobodyIsTold) {
    EXPECT_EQ(sendToDownloadManager({}), TransferResult::notMade);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(testbed::messageBoxIsOpen());
}

TEST_F(Transfer, LeavesComAsItWasOnTheThread) {
    for (const bool registered : {true, false}) {
        ASSERT_TRUE(manager.isRegistered(registered));
        std::thread([&] {
            sendToDownloadManager({.url = "http://h.example/"});
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK)
                << "nothing is left of its apartment";
            EXPECT_EQ(sendToDownloadManager({.url = "http://h.example/"}),
                      registered ? TransferResult::made : TransferResult::notMade);
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE)
                << "still in the mode that it had";
            CoUninitialize();
            CoUninitialize();
        }).join();
    }
    EXPECT_NE(answerBox(IDOK), "");
}

TEST(LocalCopy, IsOfferedOnlyWithExactlyTheExpectedSize) {
    char16_t folder[MAX_PATH]{};
    GetTempPathW(MAX_PATH, wide(folder));
    const std::u16string plain = std::u16string(folder) + u"copy_\u00E9.bin",
                         foreign = std::u16string(folder) + u"copy_\u0101.bin";
    for (const auto& path : {plain, foreign}) std::ofstream(wide(path)) << "12345";
    EXPECT_TRUE(usableCopy(plain, 5).ends_with("copy_\xE9.bin"));
    EXPECT_EQ(usableCopy(plain, 4), "") << "one byte more than expected";
    EXPECT_EQ(usableCopy(plain, 6), "") << "one byte less than expected";
    EXPECT_EQ(usableCopy(foreign, 5), "") << "the code page lacks a character of its name";
    for (const auto& path : {plain, foreign}) DeleteFileW(wide(path));
    EXPECT_EQ(usableCopy(plain, 0), "") << "no file";
    EXPECT_EQ(usableCopy(u"", 0), "") << "no path";
}

}  // namespace
}  // namespace zab
