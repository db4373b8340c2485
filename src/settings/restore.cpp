#include "settings/restore.h"

namespace zab {
namespace {

constexpr const char* kDefaultUser = "default_user";
constexpr const char* kSuspectFolder = "C:\\Program Files\\Spyware Cleaner";

#define ZAB_DAMAGED                                                                                        \
    "Zabrion detected that its registry keys had been damaged since the last run. It's possible that you " \
    "run a flaky spyware remover program "
#define ZAB_WILL_RESTORE                                                                       \
    "which corrupted system registry. Zabrion will try to restore all damaged data, but some " \
    "data may remain corrupted."
constexpr const char* kMessage = ZAB_DAMAGED ZAB_WILL_RESTORE;
constexpr const char* kMessageWithSuspect = ZAB_DAMAGED "like Spyware Cleaner " ZAB_WILL_RESTORE;
#undef ZAB_DAMAGED
#undef ZAB_WILL_RESTORE

std::string cacheFolderIn(const std::string& folder) {
    return folder + (folder.ends_with('\\') ? "" : "\\") + "ZHCache";
}

/// The folder that must hold the backup. One that exists in the user's roaming folder rules out the others,
/// whatever it holds.
std::optional<std::string> backupFolder(RestoreSystem& system, bool ntFamily) {
    if (ntFamily) {
        if (const auto roaming = system.roamingFolder()) {
            const std::string folder = cacheFolderIn(*roaming);
            if (system.exists(folder)) return folder;
        }
    }
    const auto windows = system.windowsFolder();
    if (!windows) return std::nullopt;
    std::string folder = cacheFolderIn(*windows);
    if (ntFamily) folder.append("\\").append(system.userName().value_or(kDefaultUser));
    if (!system.exists(folder)) return std::nullopt;
    return folder;
}

}  // namespace

void restoreDamagedSettings(RestoreSystem& system) {
    system.enableRestorePrivilege();
    const bool ntFamily = system.isNtFamily();
    const auto folder = backupFolder(system, ntFamily);
    if (!folder) return;
    const std::string backup = *folder + "\\settings.bak";
    if (!system.exists(backup)) return;
    if (ntFamily) {
        system.restoreRootKey(backup);
    } else {
        if (system.loadTemporaryHive(backup)) system.copyTemporaryHive();
        system.deleteTemporaryHive();
    }
    system.showMessage(system.exists(kSuspectFolder) ? kMessageWithSuspect : kMessage);
}

}  // namespace zab
