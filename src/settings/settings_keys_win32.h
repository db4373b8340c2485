// The keys that stay open, for edge files that read values of their own from them. Null: cannot be opened now.
#pragma once

#include "settings/registry_key_win32.h"

namespace zab {

/// Makes sure of the root key as `EnsureRootKey` does.
const RegistryKey* rootKey();
const RegistryKey* specialKeysKey();
/// Per-type panel values ("MP4", "!ALL!", ...) and panel options.
const RegistryKey* panelKey();
/// Minimum sizes in bytes, one DWORD per extension.
const RegistryKey* minimumSizesKey();

}  // namespace zab
