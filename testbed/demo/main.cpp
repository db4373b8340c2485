// zab_demo: the module at work. Starts the loopback site, lets the stand-in browser make every exchange of the
// site's list with the module loaded, and prints what came of each, beside what had to come.
//
//   zab_demo --build FOLDER [--verbose]
//
// FOLDER holds the built presets. Wine must be ready: WINEPREFIX names a prefix, and DISPLAY a display. What
// the run leaves lies in FOLDER/demo. Exit status: 0 every exchange came out as expected, 1 one did not, 2 the
// demo could not be made.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <thread>

#include "exchanges.h"
#include "join.h"
#include "process.h"
#include "table.h"

namespace {

using namespace zab::demo;
using namespace std::chrono_literals;
using nlohmann::json;
namespace fs = std::filesystem;

constexpr auto kStartLimit = 10s;
constexpr auto kRegistrationLimit = 60s;  // the first program in a prefix may still have to start Wine
constexpr auto kBrowserLimit = 120s;
constexpr auto kDownloadLimit = 20s;
constexpr auto kPollStep = 50ms;

[[noreturn]] void fail(const std::string& why) { throw std::runtime_error(why); }

void writeFile(const fs::path& path, const std::string& text) {
    if (!(std::ofstream(path, std::ios::binary) << text)) fail("cannot write " + path.string());
}

// The whole lines of a file that may still grow; a line that is no JSON ends the demo.
std::vector<json> readLines(const fs::path& path) {
    std::vector<json> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line) && !file.eof();) lines.push_back(json::parse(line));
    return lines;
}

/// A path as Windows programs under Wine see it.
std::string windowsPath(const fs::path& path) {
    std::string text = "Z:" + fs::absolute(path).lexically_normal().string();
    for (char& c : text)
        if (c == '/') c = '\\';
    return text;
}

std::string registryText(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '\\' || c == '"') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

struct Folders {
    fs::path windows, host, scratch;
    explicit Folders(const fs::path& build)
        : windows(build / "windows-release"), host(build / "host-release"), scratch(build / "demo") {
        fs::remove_all(scratch);
        fs::create_directories(scratch);
    }
    fs::path manager() const { return windows / "zab_manager.exe"; }
    fs::path companions() const { return windows / "companions"; }
    fs::path managerLog() const { return scratch / "transfers.jsonl"; }
    std::string output(const std::string& name) const { return (scratch / (name + ".out")).string(); }
    std::string errors(const std::string& name) const { return (scratch / (name + ".err")).string(); }
};

/// Runs a Windows program to its end.
void runUnderWine(const Folders& folders, const std::string& name, std::vector<std::string> arguments,
                  std::chrono::milliseconds limit) {
    arguments.insert(arguments.begin(), "wine");
    Process program(arguments, folders.output(name), folders.errors(name));
    const auto status = program.wait(limit);
    if (!status) fail(name + " did not come to its end (see " + folders.errors(name) + ")");
    if (*status)
        fail(name + " ended with status " + std::to_string(*status) + " (see " + folders.errors(name) + ")");
}

/// The user's settings, in place of all that were there.
std::string settingsFile(const Folders& folders, const json& settings) {
    const std::string root = "HKEY_CURRENT_USER\\Software\\ZabrionHub";
    const std::pair<std::string, std::string> texts[] = {
        {"zabvers", "1.0"},
        {"ExePath", windowsPath(folders.companions() / "zabrion.exe")},
        {"Extensions", settings.at("extensions")},
        {"ExceptionServers", settings.at("exceptions")},
        {"TestbedLog", windowsPath(folders.managerLog())},
    };
    // "alt" held prevents by the value AltP, "ctrl" forces by CtrlF.
    const auto keyValue = [](std::string key, char policy) {
        key[0] = static_cast<char>(key[0] - 'a' + 'A');
        return registryText(key + policy) + "=dword:00000001\r\n";
    };
    std::string file = "Windows Registry Editor Version 5.00\r\n\r\n[-" + root + "]\r\n\r\n[" + root + "]\r\n";
    for (const auto& [name, value] : texts) file += registryText(name) + "=" + registryText(value) + "\r\n";
    file += "\r\n[" + root + "\\SpecialKeys]\r\n";
    file += "\"UseKeyToPrevent\"=dword:00000001\r\n" + keyValue(settings.at("preventKey"), 'P');
    file += "\"UseKeyToForce\"=dword:00000001\r\n" + keyValue(settings.at("forceKey"), 'F');
    return file;
}

void prepareRegistry(const Folders& folders, const json& settings) {
    const fs::path file = folders.scratch / "settings.reg";
    writeFile(file, settingsFile(folders, settings));
    runUnderWine(folders, "regedit", {"regedit", "/S", windowsPath(file)}, kRegistrationLimit);
    runUnderWine(folders, "manager", {folders.manager().string(), "--register"}, kRegistrationLimit);
}

/// The running site; its port stands in the first line that it prints.
class Site {
  public:
    explicit Site(const Folders& folders)
        : process_({(folders.host / "zab_site").string()}, folders.output("site"), folders.errors("site")) {
        const auto end = std::chrono::steady_clock::now() + kStartLimit;
        while (port_ == 0) {
            if (process_.wait(kPollStep) || std::chrono::steady_clock::now() > end)
                fail("the site did not start");
            for (const json& line : readLines(folders.output("site"))) port_ = line.get<int>();
        }
    }
    int port() const { return port_; }

  private:
    Process process_;
    int port_ = 0;
};

std::vector<json> runBrowser(const Folders& folders, const json& list) {
    const fs::path file = folders.scratch / "exchanges.json";
    writeFile(file, list.dump(1));
    runUnderWine(folders, "browser",
                 {(folders.windows / "zab_browser.exe").string(), "--module",
                  windowsPath(folders.windows / "zabcchandler7_64.dll"), "--list", windowsPath(file)},
                 kBrowserLimit);
    std::vector<json> lines = readLines(folders.output("browser"));
    if (lines.empty() || !lines.front().contains("browser")) fail("the browser did not say what it is");
    std::cout << lines.front().value("browser", "") << ' ' << lines.front().value("version", "") << " with "
              << lines.front().value("runtime", "") << "\n\n";
    lines.erase(lines.begin());
    return lines;
}

/// The download manager writes a line when a download has ended, so the last ones may be late.
std::vector<json> awaitTransfers(const Folders& folders, std::size_t count) {
    const auto end = std::chrono::steady_clock::now() + kDownloadLimit;
    for (;;) {
        std::vector<json> lines = readLines(folders.managerLog());
        if (lines.size() >= count || std::chrono::steady_clock::now() > end) return lines;
        std::this_thread::sleep_for(kPollStep);
    }
}

bool runDemo(const fs::path& build, bool verbose) {
    // The settings are replaced, so never those of the user's own prefix.
    if (!std::getenv("WINEPREFIX")) fail("WINEPREFIX is not set");
    const auto start = std::chrono::steady_clock::now();
    const Folders folders(build);
    const Site site(folders);
    const json list = zab::site::exchangeList(site.port());
    prepareRegistry(folders, list.at("settings"));
    const std::vector<json> browser = runBrowser(folders, list);
    const auto taken = std::count_if(browser.begin(), browser.end(),
                                     [](const json& line) { return outcomeOf(line) == "transfer"; });
    const std::vector<json> transfers = awaitTransfers(folders, static_cast<std::size_t>(taken));
    bool isExpected = printTable(std::cout, join(list.at("exchanges"), browser, transfers), verbose);
    isExpected &= printOffers(std::cout, joinOffers(list.at("offers"), browser));
    const std::string held =
        browser.empty() ? "" : browser.back().value("heldAtEnd", "(the browser did not say)");
    if (!held.empty()) std::cout << "NO  the module still holds " << held << '\n';
    isExpected &= held.empty();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::cout << "in " << std::fixed << std::setprecision(1) << took.count() << " s\n";
    return isExpected;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("The module at work: every exchange of a local site in one table.");
    std::string build;
    bool verbose = false;
    app.add_option("--build", build, "folder of the built presets")->required()->check(CLI::ExistingDirectory);
    app.add_flag("--verbose", verbose,
                 "also what the download manager received (cookies and credentials masked)");
    CLI11_PARSE(app, argc, argv);
    try {
        return runDemo(build, verbose) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "zab_demo: " << error.what() << '\n';
        return 2;
    }
}
