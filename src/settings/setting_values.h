// Every registry key and value that the module reads or writes: name, longest form, default. Each in one place.
//
// All keys lie under HKEY_CURRENT_USER. Sizes are bytes as stored, terminator included; what is longer cannot
// be read. The download manager owns all of them but the per-browser record.
#pragma once

#include <cstdint>

namespace zab {

inline constexpr const char* kRootKeyPath = "Software\\ZabrionHub\\";
inline constexpr const char* kSpecialKeysPath = "Software\\ZabrionHub\\SpecialKeys";
inline constexpr const char* kBrowsersPath = "Software\\ZabrionHub\\ZABBI\\";  // + the browser's file name
inline constexpr const char* kPanelKeyPath = "Software\\ZabrionHub\\ZABBI\\Firefox\\DwnlPanel";
inline constexpr const char* kMinimumSizesPath = "Software\\ZabrionHub\\DwnlPanel\\minsize";
inline constexpr const char* kSelectedPanelPath = "Software\\ZabrionHub\\DwnlSelPanel";
inline constexpr const char16_t* kConfigTimePath =
    u"Software\\ZabrionHub\\ConfigTime";  // touched at each change
inline constexpr const char* kLayersPath =
    "Software\\Microsoft\\Windows NT\\CurrentVersion\\AppCompatFlags\\Layers";
inline constexpr const char* kShellFoldersPath =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

/// Narrow text; absent: nothing.
struct TextValue {
    const char* name;
    std::uint32_t sizeBytes;
};

/// Wide text; absent: nothing.
struct WideTextValue {
    const char16_t* name;
    std::uint32_t sizeBytes;
};

/// A DWORD; absent or of another type: the default.
struct NumberValue {
    const char* name;
    std::uint32_t fallback;
};

inline constexpr std::uint32_t kLongestServerList = 1 << 20;
inline constexpr std::uint32_t kLongestLayers = 1024;

// Root key.
inline constexpr TextValue kVersionMark{"zabvers", 64};  // only its presence counts
inline constexpr TextValue kExePathNarrow{"ExePath", 260};
inline constexpr WideTextValue kExePath{u"ExePath", 520};
inline constexpr WideTextValue kDataFolder{u"AppDataZABFolder", 1040};  // ends in a backslash
inline constexpr TextValue kExtensions{"Extensions", 1999};
inline constexpr const char* kLanguageId = "LanguageID";  // absent: the built-in texts
inline constexpr TextValue kExceptionServers{"ExceptionServers", kLongestServerList};
inline constexpr TextValue kPanelExceptionServers{"PanelExceptionServers", kLongestServerList};

// Per-browser record.
inline constexpr const char* kBrowserDisplayName = "name";
inline constexpr NumberValue kIntegration{"int", 1};

// Panel keys.
inline constexpr NumberValue kPanelView{"PanelView", 1};  // 2: no panel
inline constexpr NumberValue kAllTypes{"!ALL!", 0};
inline constexpr NumberValue kCaptureWithoutPanel{"DonlCaptWP", 0};
inline constexpr NumberValue kPanelMode{"PanelMode", 1};

// Shell folders of the user.
inline constexpr TextValue kRoamingFolder{"AppData", 260};

}  // namespace zab
