// Settings that several browsers share, and settings that change under a browser that is busy.
#include <atomic>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "binding/wide_win32.h"
#include "intercept/decision.h"
#include "scenarios/scenario.h"
#include "settings/data_file.h"

namespace zab::testbed {
namespace {

std::string temporary(const char* name) {
    char folder[MAX_PATH];
    return std::string(folder, GetTempPathA(MAX_PATH, folder)) + name;
}

/// Runs one of the stand-in browsers with a list of one link that the force key takes before it is sent; the
/// outcome that it then shows. Otherwise nobody answers at that address.
std::string clicksIn(const std::string& program) {
    char path[MAX_PATH];
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string folder(path, std::string(path).rfind('\\') + 1);
    const std::string list = temporary("one_link.json"), output = temporary("one_link.txt");
    std::ofstream(list) << R"({"exchanges": [{"url": "http://127.0.0.1:1/page", "key": "ctrl"}]})";
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = CreateFileA(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    std::string command = "\"" + folder + "browsers\\" + program + "\" --module \"" + folder +
                          "zabcchandler7_64.dll\" --list \"" + list + "\"";
    PROCESS_INFORMATION process{};
    const bool started = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &startup, &process);
    EXPECT_TRUE(started) << command;
    if (started) {
        EXPECT_EQ(WaitForSingleObject(process.hProcess, 60'000), WAIT_OBJECT_0) << program;
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(startup.hStdOutput);
    std::ifstream words(output);
    for (std::string word; words >> word;)
        if (word.ends_with("/page") && words >> word) return word;
    return "nothing";
}

TEST(Browsers, EachHasARecordOfItsOwnThatIsNeverWrittenAgain) {
    SettingsTree settings;
    Manager manager;
    settings.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
    const struct {
        const char* program;
        const char* record;
        const char* name;
        const char* outcome;
        const char* why;
    } rows[] = {
        {"current\\firefox.exe", "firefox", "Stand-in current", "transfer", "the first start makes the record"},
        {"moon\\PaleMoon.exe", "PaleMoon", "Stand-in moon", "transfer", "another program, another record"},
        {"nameless\\browser.exe", "browser", "browser", "transfer", "no product name: the file's own"},
        {"ancient\\firefox.exe", "firefox", "Stand-in current", "transfer",
         "the same file name, the same record"},
        {"moon\\PaleMoon.exe", "PaleMoon", "renamed", "browser", "switched off, and the user's name stays"},
        {"current\\firefox.exe", "firefox", "Stand-in current", "transfer", "the others are not concerned"},
    };
    for (const auto& row : rows) {
        const auto where = std::string(row.program) + ": " + row.why;
        const std::string record = std::string("ZABBI\\") + row.record;
        const bool off = row.outcome == std::string("browser");
        if (off) settings.set(record + "\\int", 0u).set(record + "\\name", row.name);
        EXPECT_EQ(clicksIn(row.program), row.outcome) << where;
        EXPECT_EQ(settings.text(record + "\\name"), row.name) << where;
        EXPECT_EQ(settings.number(record + "\\int"), off ? 0u : 1u) << where;
    }
}

std::string lineOf(Outcome outcome, Reason reason, std::string_view extension) {
    Decision decision;
    decision.reason = reason;
    decision.ownExtension = extension;
    return "**********Examine " + std::string(outcomeName(outcome)) + ": " + sentenceOf(decision);
}

TEST(Settings, ThatChangeWhileResponsesAreExaminedGiveTheOldOutcomeOrTheNew) {
    const std::string folder = temporary("");
    const std::string dataFile = folder + "zabfc.dat";
    SettingsTree settings;
    settings.set("Extensions", "zip").set("ExceptionServers", "h.example").set("AppDataZABFolder", folder);
    settings.touchConfigTime();
    Browser browser;
    browser.startsUp();

    std::atomic<bool> ends{false};
    std::thread changes([&] {
        for (std::uint32_t n = 0; !ends; ++n) {
            settings.set("Extensions", n % 2 == 0 ? "rar" : "zip");
            settings.set("ZABBI\\zab_scenarios\\int", n / 2 % 2);
            // Fails while the module reads the file, which then has the text of an earlier turn.
            const std::string text = n % 3 == 0 ? "listen.skip=h.example\n" : "youtube.pairing=1\n";
            std::ofstream(dataFile, std::ios::binary)
                << applyDataFileCipher({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
            settings.touchConfigTime();
            Sleep(2);
        }
    });
    const struct {
        Request request;
        Headers answer;
        std::set<std::string> outcomes;
    } rows[] = {
        {{.url = "http://h.example/a.zip"},
         kZip,
         {lineOf(Outcome::browser, Reason::notInCatchList, "zip"),
          lineOf(Outcome::browser, Reason::integrationOff, {}),
          lineOf(Outcome::browser, Reason::serverExcepted, {})}},
        {{.url = "http://h.example/a.m3u8"},
         {{"Content-Type", "application/vnd.apple.mpegurl"}},
         {lineOf(Outcome::browser, Reason::notInCatchList, "m3u8"),
          lineOf(Outcome::listen, Reason::notInCatchList, "m3u8")}},
    };
    constexpr std::uint32_t kEnough = 2000, kMost = 20'000;
    std::set<std::string> seen[std::size(rows)];
    browser.takesDebugLines();
    for (std::uint32_t n = 0; n < kMost; ++n) {
        const std::size_t which = n % std::size(rows);
        auto& channel = browser.requests(rows[which].request);
        browser.answers(channel, 200, rows[which].answer);
        browser.finishes(channel);
        for (auto& line : browser.takesDebugLines()) seen[which].insert(std::move(line));
        if (n >= kEnough && seen[0].size() >= rows[0].outcomes.size() &&
            seen[1].size() >= rows[1].outcomes.size())
            break;
    }
    ends = true;
    changes.join();
    for (std::size_t which = 0; which < std::size(rows); ++which)
        EXPECT_EQ(seen[which], rows[which].outcomes) << "each of them, and no other: " << which;
    DeleteFileA(dataFile.c_str());
    EXPECT_EQ(browser.unbalanced(), "");
    EXPECT_EQ(browser.violations(), std::vector<std::string>{});
}

}  // namespace
}  // namespace zab::testbed
