// The numbers by which the controller windows are spoken to.
#pragma once

#include <cstdint>

namespace zab::panel_messages {

inline constexpr std::uint32_t kFileEntry = 0x40E;      // a media entry changes owner
inline constexpr std::uint32_t kAlive = 0x465;          // answered with 1
inline constexpr std::uint32_t kRequestByCopy = 0x466;  // dwData of WM_COPYDATA: a media request
inline constexpr std::uint32_t kResolve = 0x467;        // is what is asked for known?
inline constexpr std::uint32_t kResolved = 0x468;       // it is: hand the next transfer over

// The system's own, which anybody may send as well.
inline constexpr std::uint32_t kDestroyed = 0x82;  // WM_NCDESTROY, the last message of a window
inline constexpr std::uint32_t kClose = 0x10;      // WM_CLOSE

}  // namespace zab::panel_messages
