// Repair of a settings key that a registry cleaner damaged: from the backup that the download manager keeps on
// disk.
//
// Where the backup is looked for and what is tried in which order is decided here; the system's calls are a
// table of their own, so that both families of Windows can be played by a test.
#pragma once

#include <optional>
#include <string>

namespace zab {

/// What the repair asks of Windows. Narrow text in the ANSI code page.
class RestoreSystem {
  public:
    virtual void enableRestorePrivilege() = 0;
    virtual bool isNtFamily() = 0;
    /// The user's roaming application-data folder.
    virtual std::optional<std::string> roamingFolder() = 0;
    virtual std::optional<std::string> windowsFolder() = 0;
    virtual std::optional<std::string> userName() = 0;
    /// File or folder.
    virtual bool exists(const std::string& path) = 0;
    /// Replaces the settings root key by the backup.
    virtual void restoreRootKey(const std::string& backup) = 0;
    /// Loads the backup as a key of its own beside the users' keys; copies it into the root key; takes it away.
    virtual bool loadTemporaryHive(const std::string& backup) = 0;
    virtual void copyTemporaryHive() = 0;
    virtual void deleteTemporaryHive() = 0;
    virtual void showMessage(const char* text) = 0;

  protected:
    ~RestoreSystem() = default;
};

/// Restores the backup, if there is one, and tells the user; says nothing otherwise.
void restoreDamagedSettings(RestoreSystem& system);

/// The same with the Windows of this process. To be called with the root key open. Never throws.
void RestoreDamagedSettings() noexcept;

}  // namespace zab
