// The executable of this process, and what the version resource of a file says.
#pragma once

#include <optional>
#include <string>

namespace zab {

/// Full path of the process's executable; nothing when Windows cannot tell or it is 260 characters or longer.
std::optional<std::u16string> executablePath();

/// A text of the version resource ("FileVersion", "ProductName") in the resource's first language; nothing when
/// the file has no such resource or text.
std::optional<std::u16string> versionResourceText(const std::u16string& path, const char16_t* name);

}  // namespace zab
