// Settings that several browsers share.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "binding/wide_win32.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

/// Runs one of the stand-in browsers with a list of one link that the force key takes before it is sent; the
/// outcome that it then shows. Otherwise nobody answers at that address.
std::string clicksIn(const std::string& program) {
    char path[MAX_PATH];
    const std::string own(path, GetModuleFileNameA(nullptr, path, MAX_PATH));
    const std::string folder = own.substr(0, own.rfind('\\') + 1);
    const auto temporary = std::filesystem::temp_directory_path();
    const auto list = (temporary / "one_link.json").string(), output = (temporary / "one_link.txt").string();
    std::ofstream(list) << R"({"exchanges": [{"url": "http://127.0.0.1:1/page", "keys": [17]}]})";
    const std::string command = "\"" + folder + "browsers\\" + program + "\" --module \"" + folder +
                                "zabcchandler7_64.dll\" --list \"" + list + "\" >\"" + output + "\"";
    std::system(('"' + command + '"').c_str());  // fails where a link is left to the server that there is not
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
