// A settings key that somebody damaged: what a browser's start makes of it, on a real registry, with real files
// and real message boxes.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "scenarios/import_hook.h"

namespace zab::testbed {
namespace {

namespace fs = std::filesystem;

constexpr const char* kShellFolders = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const char* kProduct = "C:\\Program Files\\Spyware Cleaner";

constexpr std::u16string_view kPlain =
    u"Zabrion detected that its registry keys had been damaged since the last run. It's possible that you run "
    u"a "
    u"flaky spyware remover program which corrupted system registry. Zabrion will try to restore all damaged "
    u"data, "
    u"but some data may remain corrupted.";
constexpr std::u16string_view kNamed =
    u"Zabrion detected that its registry keys had been damaged since the last run. It's possible that you run "
    u"a "
    u"flaky spyware remover program like Spyware Cleaner which corrupted system registry. Zabrion will try to "
    u"restore all damaged data, but some data may remain corrupted.";

/// The user's roaming folder is a folder of the test's own.
class RoamingFolder {
  public:
    RoamingFolder() : folder_(fs::temp_directory_path() / "zab restore") {
        DWORD size = sizeof(before_);
        RegGetValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", RRF_RT_REG_SZ, nullptr, before_, &size);
        write(folder_.string());
    }
    ~RoamingFolder() { write(before_); }
    RoamingFolder(const RoamingFolder&) = delete;
    RoamingFolder& operator=(const RoamingFolder&) = delete;

    [[nodiscard]] fs::path cache() const { return folder_ / "ZHCache"; }

  private:
    static void write(const std::string& path) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kShellFolders, "AppData", REG_SZ, path.c_str(),
                        static_cast<DWORD>(path.size() + 1));
    }

    fs::path folder_;
    char before_[MAX_PATH]{};
};

/// The user's own folder below the folder of Windows.
fs::path windowsCache() {
    char windows[MAX_PATH], user[64];
    DWORD size = sizeof(user);
    GetWindowsDirectoryA(windows, MAX_PATH);
    GetUserNameA(user, &size);
    return fs::path(windows) / "ZHCache" / user;
}

/// Answers and notes every message box that opens while it lives.
class BoxReader {
  public:
    BoxReader() : reader_([this] { reads(); }) {}
    ~BoxReader() { boxes(0); }
    BoxReader(const BoxReader&) = delete;
    BoxReader& operator=(const BoxReader&) = delete;

    /// Waits for as many boxes as must come, and a moment longer for one that must not.
    std::vector<ShownBox> boxes(std::size_t expected) {
        awaited_ = expected;
        if (reader_.joinable()) reader_.join();
        return shown_;
    }

  private:
    static constexpr std::size_t kForever = ~std::size_t{0};

    void reads() {
        constexpr std::chrono::milliseconds kMoment{300};
        for (int quiet = 0; quiet < 30 && (quiet == 0 || shown_.size() < awaited_);) {
            auto box = answerMessageBox(IDOK, kMoment);
            if (box) shown_.push_back(std::move(*box));
            quiet = box || awaited_ == kForever ? 0 : quiet + 1;
        }
    }

    std::atomic<std::size_t> awaited_{kForever};
    std::vector<ShownBox> shown_;
    std::thread reader_;
};

struct Backups {
    explicit Backups(const RoamingFolder& folder) : roaming(folder.cache()), windows(windowsCache()) {
        clear();
    }
    ~Backups() { clear(); }

    /// What the file holds matters to the system alone.
    static void putInto(const fs::path& folder) {
        fs::create_directories(folder);
        std::ofstream(folder / "settings.bak", std::ios::binary) << "regf";
    }
    void clear() const {
        std::error_code ignored;
        fs::remove_all(roaming, ignored);
        fs::remove_all(windows, ignored);
        fs::remove_all(kProduct, ignored);
    }

    fs::path roaming, windows;
};

TEST(Restore, LooksForTheBackupAndTellsTheUserOnceThatItWasTried) {
    const RoamingFolder folder;
    const Backups backups(folder);
    const auto intact = [](SettingsTree&) {};
    const auto unmarked = [](SettingsTree& settings) { settings.remove("zabvers"); };
    const auto absent = [](SettingsTree&) { SettingsTree::removeAll(); };
    const struct {
        const char* why;
        std::function<void(SettingsTree&)> damage;
        std::function<void()> arrange;
        std::u16string_view told;  // empty: the user is told nothing
        bool offersInstallation = false;
    } rows[] = {
        {"an intact key needs no backup", intact, [&] { Backups::putInto(backups.roaming); }, u""},
        {"a key without its version mark", unmarked, [&] { Backups::putInto(backups.roaming); }, kPlain},
        {"no key at all, and so no program", absent, [&] { Backups::putInto(backups.roaming); }, kPlain, true},
        {"the roaming folder rules out the other, even without a file", unmarked,
         [&] {
             fs::create_directories(backups.roaming);
             Backups::putInto(backups.windows);
         },
         u""},
        {"without it, the user's own below the folder of Windows", unmarked,
         [&] { Backups::putInto(backups.windows); }, kPlain},
        {"the suspect is installed", unmarked,
         [&] {
             Backups::putInto(backups.roaming);
             fs::create_directories(kProduct);
         },
         kNamed},
    };
    for (const auto& row : rows) {
        SettingsTree settings;
        row.damage(settings);
        backups.clear();
        row.arrange();
        BoxReader reader;
        Browser browser;
        browser.startsUp();
        for (int i = 0; i < 3; ++i) browser.clicks("http://site.example/");
        const std::size_t told = row.told.empty() ? 0 : 1;
        const auto boxes = reader.boxes(told + row.offersInstallation);
        ASSERT_EQ(boxes.size(), told + row.offersInstallation) << row.why;
        // The browser waits for this one, so it is the first.
        if (told != 0) {
            EXPECT_EQ(boxes.front().title, u"Zabrion") << row.why;
            EXPECT_EQ(boxes.front().text, row.told) << row.why;
        }
        EXPECT_EQ(browser.unbalanced(), "") << row.why;
    }
}

/// Nothing comes back: because the system refuses, or because the backup holds nothing.
class NothingRestored : public ::testing::TestWithParam<bool> {};

TEST_P(NothingRestored, LeavesTheModuleItsDefaults) {
    static constexpr HookedImport kRestore[] = {{"RegRestoreKeyA", ERROR_PRIVILEGE_NOT_HELD}};
    const RoamingFolder folder;
    const Backups backups(folder);
    Backups::putInto(backups.roaming);
    SettingsTree settings;
    settings.remove("zabvers").set("ExePath", SettingsTree::kProgram);
    BoxReader reader;
    Browser browser;
    const ImportHook hook(browser, kRestore);
    if (GetParam()) browser.faults().failAll("RegRestoreKeyA");
    browser.startsUp();
    const auto click = [&] {
        browser.takesDebugLines();
        browser.answers(browser.clicks("http://site.example/a.zip"), 200,
                        {{"Content-Type", "application/zip"}});
        const auto lines = browser.takesDebugLines();
        return lines.empty() ? "" : lines.back();
    };
    const auto byDefault = click();
    EXPECT_EQ(browser.faults().reached(), GetParam());
    EXPECT_EQ(reader.boxes(1).size(), 1u);
    EXPECT_EQ(settings.text("zabvers"), std::nullopt) << "nothing was restored";
    EXPECT_EQ(settings.number("ZABBI\\zab_scenarios\\int"), 1u) << "the browser is known and integrated";
    EXPECT_EQ(byDefault.find("**********Examine browser: "), 0u) << byDefault;

    settings.set("Extensions", "zip").set("ZABBI\\zab_scenarios\\int", 0u);
    const auto later = click();
    EXPECT_EQ(later.find("**********Examine browser: "), 0u) << later;
    EXPECT_NE(later, byDefault) << "the key that could not be restored is read all the same";
}

INSTANTIATE_TEST_SUITE_P(Restore, NothingRestored, ::testing::Bool(), [](const auto& refused) {
    return refused.param ? "BecauseTheSystemRefuses" : "BecauseTheBackupIsEmpty";
});

}  // namespace
}  // namespace zab::testbed
