#include "settings/restore.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace zab {
namespace {

/// A machine as a table: which folders and files it has, and what was done to it.
struct Machine final : RestoreSystem {
    bool nt = true;
    std::optional<std::string> roaming = "R:\\Roaming", windows = "C:\\WINDOWS", user = "ann";
    std::set<std::string> paths;
    bool hiveLoads = true;
    std::vector<std::string> acts;

    void enableRestorePrivilege() override { acts.emplace_back("privilege"); }
    bool isNtFamily() override { return nt; }
    std::optional<std::string> roamingFolder() override { return roaming; }
    std::optional<std::string> windowsFolder() override { return windows; }
    std::optional<std::string> userName() override { return user; }
    bool exists(const std::string& path) override { return paths.count(path) != 0; }
    void restoreRootKey(const std::string& backup) override { acts.push_back("restore " + backup); }
    bool loadTemporaryHive(const std::string& backup) override {
        acts.push_back("load " + backup);
        return hiveLoads;
    }
    void copyTemporaryHive() override { acts.emplace_back("copy"); }
    void deleteTemporaryHive() override { acts.emplace_back("delete"); }
    void showMessage(const char* text) override {
        const bool named =
            std::string_view(text).find(
                "spyware remover program like Spyware Cleaner which corrupted system registry.") !=
            std::string_view::npos;
        const bool plain = std::string_view(text).find("a flaky spyware remover program which corrupted") !=
                           std::string_view::npos;
        acts.emplace_back(named ? "message, product named" : plain ? "message" : "another text");
    }
};

TEST(RestoreDamagedSettings, FindsTheBackupAndTellsTheUserOnlyThen) {
    using Acts = std::vector<std::string>;
    const struct {
        const char* why;
        void (*arrange)(Machine&);
        Acts acts;
    } rows[] = {
        {"the roaming folder first",
         [](Machine& m) {
             m.paths = {"R:\\Roaming\\ZHCache", "R:\\Roaming\\ZHCache\\settings.bak"};
         },
         {"privilege", "restore R:\\Roaming\\ZHCache\\settings.bak", "message"}},
        {"a folder that ends in a backslash gets no second one",
         [](Machine& m) {
             m.roaming = "R:\\";
             m.paths = {"R:\\ZHCache", "R:\\ZHCache\\settings.bak"};
         },
         {"privilege", "restore R:\\ZHCache\\settings.bak", "message"}},
        {"a roaming folder without a backup rules out the Windows folder",
         [](Machine& m) {
             m.paths = {"R:\\Roaming\\ZHCache", "C:\\WINDOWS\\ZHCache\\ann",
                        "C:\\WINDOWS\\ZHCache\\ann\\settings.bak"};
         },
         {"privilege"}},
        {"no roaming folder: the user's own below the Windows folder",
         [](Machine& m) {
             m.paths = {"C:\\WINDOWS\\ZHCache\\ann", "C:\\WINDOWS\\ZHCache\\ann\\settings.bak"};
         },
         {"privilege", "restore C:\\WINDOWS\\ZHCache\\ann\\settings.bak", "message"}},
        {"a user without a name",
         [](Machine& m) {
             m.roaming.reset(), m.user.reset();
             m.paths = {"C:\\WINDOWS\\ZHCache\\default_user",
                        "C:\\WINDOWS\\ZHCache\\default_user\\settings.bak"};
         },
         {"privilege", "restore C:\\WINDOWS\\ZHCache\\default_user\\settings.bak", "message"}},
        {"no Windows folder", [](Machine& m) { m.windows.reset(); }, {"privilege"}},
        {"no folder at all", [](Machine&) {}, {"privilege"}},
        {"the suspect is installed",
         [](Machine& m) {
             m.paths = {"R:\\Roaming\\ZHCache", "R:\\Roaming\\ZHCache\\settings.bak",
                        "C:\\Program Files\\Spyware Cleaner"};
         },
         {"privilege", "restore R:\\Roaming\\ZHCache\\settings.bak", "message, product named"}},
        {"the other family: no roaming folder, no user, a hive beside the users'",
         [](Machine& m) {
             m.nt = false;
             m.paths = {"R:\\Roaming\\ZHCache", "R:\\Roaming\\ZHCache\\settings.bak", "C:\\WINDOWS\\ZHCache",
                        "C:\\WINDOWS\\ZHCache\\settings.bak"};
         },
         {"privilege", "load C:\\WINDOWS\\ZHCache\\settings.bak", "copy", "delete", "message"}},
        {"the other family, a hive that does not load: taken away and told all the same",
         [](Machine& m) {
             m.nt = m.hiveLoads = false;
             m.paths = {"C:\\WINDOWS\\ZHCache", "C:\\WINDOWS\\ZHCache\\settings.bak"};
         },
         {"privilege", "load C:\\WINDOWS\\ZHCache\\settings.bak", "delete", "message"}},
    };
    for (const auto& row : rows) {
        Machine machine;
        row.arrange(machine);
        restoreDamagedSettings(machine);
        EXPECT_EQ(machine.acts, row.acts) << row.why;
    }
}

}  // namespace
}  // namespace zab
