// Load flags of a request, as the extension's helper tells them.
#pragma once

#include <cstdint>

namespace zab {

inline constexpr std::uint32_t kDocumentLoad = 0x10000;  // a page, of the window or of a frame
inline constexpr std::uint32_t kTopLevelLoad = 0x80000;  // the page of the window itself

}  // namespace zab
