#include "settings/restore.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "readings.h"

namespace zab {
namespace {

/// A machine as a table: which folders and files it has, and what was done to it.
struct Machine final : RestoreSystem {
    bool nt = true, hiveLoads = true, privileged = false;
    std::optional<std::string> roaming = "R:", windows = "W:", user = "ann";
    std::set<std::string> paths;
    std::string acts;

    void enableRestorePrivilege() override { privileged = true; }
    bool isNtFamily() override { return nt; }
    std::optional<std::string> roamingFolder() override { return roaming; }
    std::optional<std::string> windowsFolder() override { return windows; }
    std::optional<std::string> userName() override { return user; }
    bool exists(const std::string& path) override { return paths.count(path) != 0; }
    void restoreRootKey(const std::string& backup) override { acts += privileged ? " restore " + backup : ""; }
    bool loadTemporaryHive(const std::string& backup) override { return acts += " load " + backup, hiveLoads; }
    void copyTemporaryHive() override { acts += " copy"; }
    void deleteTemporaryHive() override { acts += " delete"; }
    void showMessage(const char* text) override {
        const std::string_view told(text);
        const bool plain = told.find("program which corrupted") != told.npos;
        const bool named = told.find("program like Spyware Cleaner which corrupted") != told.npos;
        acts += plain ? " told" : named ? " told the suspect" : " told something else";
    }
};

TEST(RestoreDamagedSettings, FindsTheBackupAndTellsTheUserOnlyThen) {
    // Changes, a letter each, see below; the folders that exist, with a backup in each but where a sign says
    // no.
    const zabtest::ReadingOf<std::string, std::pair<std::string_view, std::string>> rows[] = {
        {{"b", "R:\\ZHCache W:\\ZHCache\\ann"}, " restore R:\\ZHCache\\settings.bak told", "roaming first"},
        {{"", "-R:\\ZHCache W:\\ZHCache\\ann"}, "", "a roaming folder without a backup rules out the other"},
        {{"", "W:\\ZHCache\\ann W:\\ZHCache"}, " restore W:\\ZHCache\\ann\\settings.bak told", "of the user"},
        {{"ru", "W:\\ZHCache\\default_user"},
         " restore W:\\ZHCache\\default_user\\settings.bak told",
         "nobody"},
        {{"w", ""}, "", "no Windows folder"},
        {{"", ""}, "", "neither folder exists"},
        {{"s", "R:\\ZHCache"}, " restore R:\\ZHCache\\settings.bak told the suspect", "which is installed"},
        {{"n", "R:\\ZHCache W:\\ZHCache"},
         " load W:\\ZHCache\\settings.bak copy delete told",
         "the other family: no roaming folder, no user, a hive beside the users'"},
        {{"nh", "W:\\ZHCache"}, " load W:\\ZHCache\\settings.bak delete told", "a hive that does not load"},
    };
    const auto acts = [](const auto& given) {
        const auto changes = [&given](char letter) { return given.first.find(letter) != given.first.npos; };
        Machine machine;
        machine.nt = !changes('n');
        machine.hiveLoads = !changes('h');
        machine.roaming = changes('b') ? "R:\\" : "R:";  // with its backslash or without
        if (changes('r')) machine.roaming.reset();
        if (changes('u')) machine.user.reset();
        if (changes('w')) machine.windows.reset();
        if (changes('s')) machine.paths.insert("C:\\Program Files\\Spyware Cleaner");
        std::istringstream folders(given.second);
        for (std::string folder; folders >> folder;) {
            const bool bare = folder.starts_with('-');
            machine.paths.insert(folder.substr(bare));
            if (!bare) machine.paths.insert(folder + "\\settings.bak");
        }
        restoreDamagedSettings(machine);
        return machine.acts;
    };
    zabtest::expectReadings(acts, rows);
}

}  // namespace
}  // namespace zab
