#include <array>

#include "binding/guard.h"
#include "binding/handle_win32.h"
#include "binding/library_win32.h"
#include "settings/restore.h"
#include "settings/settings_keys_win32.h"

namespace zab {
namespace {

constexpr const char* kTemporaryHive = "zabtmp";
constexpr const char* kProductName = "Zabrion";
constexpr DWORD kLongestPath = 260, kLongestUserName = 64;

class WindowsRestore final : public RestoreSystem {
  public:
    explicit WindowsRestore(const RegistryKey& root) noexcept : root_(root) {}

    void enableRestorePrivilege() override {
        Handle token;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, token.put())) return;
        TOKEN_PRIVILEGES privileges{};
        privileges.PrivilegeCount = 1;
        privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
        LookupPrivilegeValueA(nullptr, "SeRestorePrivilege", &privileges.Privileges[0].Luid);
        AdjustTokenPrivileges(token.get(), FALSE, &privileges, 0, nullptr, nullptr);
    }

    bool isNtFamily() override {
        OSVERSIONINFOA version{};
        version.dwOSVersionInfoSize = sizeof version;
        return GetVersionExA(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
    }

    std::optional<std::string> roamingFolder() override {
        const auto key = RegistryKey::open(kShellFoldersPath, RegistryKey::kQuery);
        return key ? key.text(kRoamingFolder) : std::nullopt;
    }

    std::optional<std::string> windowsFolder() override {
        std::array<char, kLongestPath> folder{};
        const UINT length = GetWindowsDirectoryA(folder.data(), kLongestPath);
        if (length == 0 || length >= kLongestPath) return std::nullopt;
        return std::string(folder.data(), length);
    }

    std::optional<std::string> userName() override {
        std::array<char, kLongestUserName> name{};
        DWORD size = kLongestUserName;
        if (!GetUserNameA(name.data(), &size)) return std::nullopt;
        return std::string(name.data());
    }

    bool exists(const std::string& path) override {
        return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    void restoreRootKey(const std::string& backup) override { root_.restoreFrom(backup.c_str()); }

    bool loadTemporaryHive(const std::string& backup) override {
        return RegistryKey::loadHive(kTemporaryHive, backup.c_str());
    }

    void copyTemporaryHive() override {
        const Library library(LoadSystemLibrary("shlwapi.dll"));
        const auto copyKey = exportOf<LSTATUS WINAPI(HKEY, LPCSTR, HKEY, DWORD)>(library.get(), "SHCopyKeyA");
        if (copyKey != nullptr) copyKey(HKEY_USERS, kTemporaryHive, root_.get(), 0);
    }

    void deleteTemporaryHive() override { RegistryKey::deleteHive(kTemporaryHive); }

    void showMessage(const char* text) override { MessageBoxA(nullptr, text, kProductName, MB_SETFOREGROUND); }

  private:
    const RegistryKey& root_;
};

}  // namespace

void RestoreDamagedSettings() noexcept {
    guarded([] {
        const RegistryKey* root = rootKey();
        if (root == nullptr) return;
        WindowsRestore system(*root);
        restoreDamagedSettings(system);
    });
}

}  // namespace zab
