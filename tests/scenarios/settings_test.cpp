// Settings that several browsers share.
#include <fstream>

#include "binding/wide_win32.h"
#include "scenarios/scenario.h"

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
    std::ofstream(list) << R"({"exchanges": [{"url": "http://127.0.0.1:1/page", "keys": [17]}]})";
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

}  // namespace
}  // namespace zab::testbed
