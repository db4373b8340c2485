// A settings key that somebody damaged: what a browser's start makes of it, on a real registry, with real files
// and real message boxes.
#include <filesystem>
#include <fstream>
#include <future>

#include "binding/wide_win32.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

namespace fs = std::filesystem;

constexpr const char* kShellFolders = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

/// The user's folder below that of Windows.
fs::path windowsCache() {
    char windows[MAX_PATH], user[64];
    DWORD size = sizeof user;
    GetWindowsDirectoryA(windows, MAX_PATH);
    GetUserNameA(user, &size);
    return fs::path(windows) / "ZHCache" / user;
}

/// A backup in this folder, whose contents matter to the system alone, while roaming files have one of the
/// test's own.
class Backup {
  public:
    explicit Backup(bool roams)
        : roaming_(fs::temp_directory_path() / "zab restore"),
          cache_(roams ? roaming_ / "ZHCache" : windowsCache()) {
        DWORD size = sizeof before_;
        RegGetValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", RRF_RT_REG_SZ, nullptr, before_, &size);
        setRoaming(roaming_.string());
        fs::create_directories(cache_);
        std::ofstream(cache_ / "settings.bak", std::ios::binary) << "regf";
    }
    ~Backup() {
        setRoaming(before_);
        fs::remove_all(cache_);
    }

  private:
    static void setRoaming(const std::string& path) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", REG_SZ, path.c_str(),
                        static_cast<DWORD>(path.size() + 1));
    }

    fs::path roaming_, cache_;
    char before_[MAX_PATH]{};
};

std::string lineOfAClick(Browser& browser) {
    browser.takesDebugLines();
    browser.answers(browser.clicks("http://site.example/a.zip"), 200, kZip);
    const auto lines = browser.takesDebugLines();
    return lines.empty() ? "" : lines.back();
}

/// Nothing comes back: the backup holds nothing.
TEST(Restore, IsTriedFromTheBackupAndToldOnceAndLeavesTheModuleItsDefaults) {
    const struct {
        const char* why;
        bool keyIsThere, roams;
    } rows[] = {
        {"a key without its version mark", true, true},
        {"no key at all, and so no program; the user's own folder below that of Windows", false, false},
    };
    for (const auto& row : rows) {
        const Backup backup(row.roams);
        SettingsTree settings;
        settings.remove("zabvers");
        if (!row.keyIsThere) SettingsTree::removeAll();
        SoundBrowser browser;
        ASSERT_FALSE(messageBoxIsOpen()) << "a box of an earlier scenario would be answered instead";
        // The browser waits until its user has read this one.
        auto answered = std::async(std::launch::async, [] { return answerMessageBox(kOk); });
        browser.startsUp();
        browser.clicks("http://site.example/");
        const auto box = answered.get();
        ASSERT_TRUE(box) << row.why;
        EXPECT_EQ(box->title, u"Zabrion") << row.why;
        EXPECT_TRUE(box->text.starts_with(u"Zabrion detected that its registry keys had been damaged"))
            << row.why;
        EXPECT_EQ(answerMessageBox(kNo, std::chrono::milliseconds(300)).has_value(), !row.keyIsThere)
            << "offers the installation: " << row.why;
        EXPECT_EQ(settings.text("zabvers"), std::nullopt) << row.why;
        EXPECT_EQ(settings.number("ZABBI\\zab_scenarios\\int"), 1u) << "known and integrated: " << row.why;
        const auto byDefault = lineOfAClick(browser);
        EXPECT_TRUE(byDefault.starts_with("**********Examine browser: ")) << byDefault;
        settings.set("Extensions", "zip").set("ZABBI\\zab_scenarios\\int", 0u);
        EXPECT_NE(lineOfAClick(browser), byDefault) << "the key is read all the same: " << row.why;
    }
}

}  // namespace
}  // namespace zab::testbed
