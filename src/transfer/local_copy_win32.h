// The browser's own copy of a body on disk, which spares the download manager the download.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

/// Path in the ANSI code page of the local file that holds the body of `url`, as the extension knows it; empty
/// when there is none or it is no usable copy. For the browser's main thread.
std::string localCopyOf(std::string_view url, std::uint64_t sizeBytes);

/// `path` in the ANSI code page; empty when the file cannot be read or has not exactly `sizeBytes`, and when
/// its path cannot be told in the ANSI code page or needs more than 520 bytes there.
std::string usableCopy(std::u16string_view path, std::uint64_t sizeBytes);

}  // namespace zab
