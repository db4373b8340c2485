// Finding the browser's version and runtime, once, while the module is loaded.
#pragma once

#include <cstdint>

namespace zab {

/// Reads the version of the process's executable anew; kUnknownBrowserVersion when it has none.
std::int32_t GetBrowserMajorVersion() noexcept;

/// Fills the runtime record: finds the library and looks up every entry point, null or not. Always 1, whatever
/// was found; a record that has its library is only looked up again.
std::int32_t BindXpcomRuntime() noexcept;

}  // namespace zab
