#include "settings/restore.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace zab {
namespace {

constexpr const char* kBackup = "\\settings.bak";

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
    constexpr auto nothing = [](Machine&) {};
    constexpr auto otherFamily = [](Machine& m) { m.nt = false; };
    const std::string roaming = "R:\\Roaming\\ZHCache", windows = "C:\\WINDOWS\\ZHCache",
                      ann = windows + "\\ann", nobody = windows + "\\default_user";
    const struct {
        const char* why;
        void (*change)(Machine&);
        std::vector<std::string> folders;  // with a backup in each
        Acts acts;                         // behind "privilege"
        std::vector<std::string> others = {};
    } rows[] = {
        {"the roaming folder first", nothing, {roaming, ann}, {"restore " + roaming, "message"}},
        {"a folder that ends in a backslash gets no second one",
         [](Machine& m) { m.roaming = "R:\\"; },
         {"R:\\ZHCache"},
         {"restore R:\\ZHCache", "message"}},
        {"a roaming folder without a backup rules out the Windows folder", nothing, {ann}, {}, {roaming}},
        {"no roaming folder: the user's own below the Windows folder",
         nothing,
         {ann, windows},
         {"restore " + ann, "message"}},
        {"a user without a name",
         [](Machine& m) { m.roaming.reset(), m.user.reset(); },
         {nobody},
         {"restore " + nobody, "message"}},
        {"no Windows folder", [](Machine& m) { m.windows.reset(); }, {}, {}},
        {"no folder at all", nothing, {}, {}},
        {"the suspect is installed",
         nothing,
         {roaming},
         {"restore " + roaming, "message, product named"},
         {"C:\\Program Files\\Spyware Cleaner"}},
        {"the other family: no roaming folder, no user, a hive beside the users'",
         otherFamily,
         {roaming, windows},
         {"load " + windows, "copy", "delete", "message"}},
        {"the other family, a hive that does not load: taken away and told all the same",
         [](Machine& m) { m.nt = m.hiveLoads = false; },
         {windows},
         {"load " + windows, "delete", "message"}},
    };
    for (const auto& row : rows) {
        Machine machine;
        row.change(machine);
        machine.paths.insert(row.others.begin(), row.others.end());
        for (const std::string& folder : row.folders) machine.paths.insert({folder, folder + kBackup});
        restoreDamagedSettings(machine);
        Acts expected{"privilege"};
        for (const std::string& act : row.acts)
            expected.push_back(act.starts_with("restore") || act.starts_with("load") ? act + kBackup : act);
        EXPECT_EQ(machine.acts, expected) << row.why;
    }
}

}  // namespace
}  // namespace zab
