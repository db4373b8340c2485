// Which browser hosts us: its major version, and the runtime library that goes with it.
//
// One number serves every version-dependent choice of the module. It is set once while the module is loaded.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zab {

/// The version of a browser that does not tell.
inline constexpr std::int32_t kUnknownBrowserVersion = 4;

/// The major number of a version resource's FileVersion: its leading digits before the first comma or, when
/// there is none, before the first full stop. Only the first 127 characters count; no digits give 0.
std::int32_t majorOfFileVersion(std::u16string_view fileVersion) noexcept;

/// The number by which the module treats a browser: Pale Moon counts on its own, and from 4 on is taken for 28.
/// `executable` is the full path of the process.
std::int32_t treatedAsVersion(std::int32_t major, std::u16string_view executable) noexcept;

/// File names of the runtime library, in the order in which they are looked for: first among the loaded
/// modules, then in the browser's folder. From 22 on all of the runtime is in xul.dll.
std::span<const char16_t* const> runtimeLibraries(std::int32_t major) noexcept;

/// The folder of a path with its trailing backslash; empty when the path has none.
std::u16string_view folderOf(std::u16string_view path) noexcept;

/// The process-wide number. Only the start of the module (and a test) sets it.
std::int32_t browserMajorVersion() noexcept;
void setBrowserMajorVersion(std::int32_t major) noexcept;

}  // namespace zab
