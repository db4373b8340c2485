// A settings key that somebody damaged: what a browser's start makes of it, on a real registry, with real files
// and real message boxes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <future>

#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "scenarios/import_hook.h"

namespace zab::testbed {
namespace {

namespace fs = std::filesystem;

/// A roaming folder of the test's own, and the folder of the user below that of Windows: neither has a backup.
class Folders {
  public:
    Folders() : roaming_(fs::temp_directory_path() / "zab restore") {
        DWORD size = sizeof before_;
        RegGetValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", RRF_RT_REG_SZ, nullptr, before_, &size);
        setRoaming(roaming_.string());
    }
    ~Folders() {
        setRoaming(before_);
        for (const auto& cache : {roamingCache(), windowsCache()}) fs::remove_all(cache);
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    [[nodiscard]] fs::path roamingCache() const { return roaming_ / "ZHCache"; }
    static fs::path windowsCache() {
        char windows[MAX_PATH], user[64];
        DWORD size = sizeof user;
        GetWindowsDirectoryA(windows, MAX_PATH);
        GetUserNameA(user, &size);
        return fs::path(windows) / "ZHCache" / user;
    }
    /// What the file holds matters to the system alone.
    static void putBackupInto(const fs::path& cache) {
        fs::create_directories(cache);
        std::ofstream(cache / "settings.bak", std::ios::binary) << "regf";
    }

  private:
    static constexpr const char* kShellFolders =
        "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

    static void setRoaming(const std::string& path) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", REG_SZ, path.c_str(),
                        static_cast<DWORD>(path.size() + 1));
    }

    fs::path roaming_;
    char before_[MAX_PATH]{};
};

std::string lineOfAClick(Browser& browser) {
    browser.takesDebugLines();
    browser.answers(browser.clicks("http://site.example/a.zip"), 200, {{"Content-Type", "application/zip"}});
    const auto lines = browser.takesDebugLines();
    return lines.empty() ? "" : lines.back();
}

/// Nothing comes back: the system refuses, or the backup holds nothing.
TEST(Restore, IsTriedFromTheBackupAndToldOnceAndLeavesTheModuleItsDefaults) {
    const struct {
        const char* why;
        bool keyIsThere, roaming, refused;
    } rows[] = {
        {"a key without its version mark", true, true, false},
        {"no key at all, and so no program", false, true, false},
        {"without a roaming folder, the user's own below that of Windows", true, false, true},
    };
    static constexpr HookedImport kRestore[] = {{"RegRestoreKeyA", ERROR_PRIVILEGE_NOT_HELD}};
    for (const auto& row : rows) {
        const Folders folders;
        SettingsTree settings;
        settings.remove("zabvers");
        if (!row.keyIsThere) SettingsTree::removeAll();
        Folders::putBackupInto(row.roaming ? folders.roamingCache() : Folders::windowsCache());
        Browser browser;
        const ImportHook hook(browser, kRestore);
        if (row.refused) browser.faults().failAll("RegRestoreKeyA");
        // The browser waits until its user has read this one.
        auto answered = std::async(std::launch::async, [] { return answerMessageBox(kOk); });
        browser.startsUp();
        browser.clicks("http://site.example/");
        const auto box = answered.get();
        ASSERT_TRUE(box) << row.why;
        EXPECT_EQ(box->title, u"Zabrion") << row.why;
        EXPECT_EQ(box->text,
                  u"Zabrion detected that its registry keys had been damaged since the last run. It's possible "
                  u"that you run a flaky spyware remover program which corrupted system registry. Zabrion will "
                  u"try to restore all damaged data, but some data may remain corrupted.")
            << row.why;
        EXPECT_EQ(answerMessageBox(kNo, std::chrono::milliseconds(300)).has_value(), !row.keyIsThere)
            << "offers the installation: " << row.why;
        EXPECT_EQ(browser.faults().reached(), row.refused) << row.why;
        EXPECT_EQ(settings.text("zabvers"), std::nullopt) << row.why;
        EXPECT_EQ(settings.number("ZABBI\\zab_scenarios\\int"), 1u) << "known and integrated: " << row.why;
        const auto byDefault = lineOfAClick(browser);
        EXPECT_TRUE(byDefault.starts_with("**********Examine browser: ")) << byDefault;
        settings.set("Extensions", "zip").set("ZABBI\\zab_scenarios\\int", 0u);
        EXPECT_NE(lineOfAClick(browser), byDefault) << "the key is read all the same: " << row.why;
        EXPECT_EQ(browser.unbalanced(), "") << row.why;
    }
}

}  // namespace
}  // namespace zab::testbed
