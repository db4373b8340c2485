// The module's configuration, as the download manager keeps it in the registry, and the module's own record of
// this browser there.
//
// Values are read at each use; only the keys stay open. A value that is missing, of the wrong type or too long
// is its documented default. Nothing here reports to the user. Any thread may call.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/exception_servers.h"
#include "settings/setting_values.h"

namespace zab {

/// Whether the settings root key is open; opens or makes it, and repairs it when it looks damaged.
bool EnsureRootKey() noexcept;

enum class Registration {
    failed,   // to be tried again with the next notification
    known,    // the record of this browser was there, or was found by an earlier call
    created,  // first start in this browser: this very call made the record
};
/// Called at the start of every browser notification. Until it has succeeded once: makes the shared-list mutex,
/// reads the data file, and finds or makes the per-browser record. Later calls cost one load.
Registration RegisterBrowser() noexcept;

/// 0 when the record of this browser says so; else, and before there is a record, 1.
std::uint32_t IsBrowserIntegrationEnabled() noexcept;
/// 0 when the user wants no panel, else 1.
std::uint32_t GetPanelViewFlag() noexcept;

/// The list of extensions to catch.
std::optional<std::string> extensionList();
std::optional<std::uint32_t> languageId() noexcept;
/// Full path of the download manager's program file.
std::optional<std::u16string> exePath();
std::optional<std::string> exePathNarrow();
/// Folder of the data file, with its backslash at the end.
std::optional<std::u16string> dataFolder();
/// Full path of a file beside the download manager's program file; nothing without its folder.
std::optional<std::u16string> companionPath(std::u16string_view fileName);
/// What the compatibility layers of the system say about this program.
std::optional<std::string> layersValue(const std::string& programPath);
/// One of kExceptionServers and kPanelExceptionServers, as it stands now.
CExceptionServersList readExceptionServers(const TextValue& value);

/// For the end of the browser or the module, when no other thread is inside: closes the mutex and the kept
/// keys.
void closeSharedState() noexcept;

}  // namespace zab
