// The long name of a file that is known by its short one (8.3).
#pragma once

#include <optional>
#include <string>

namespace zab {

/// The path as the shell spells it; nothing when it cannot tell.
std::optional<std::u16string> longPathOf(const std::u16string& path);

}  // namespace zab
