// What a load is for: the load flags of a request, as the extension's helper tells them, and the types of the
// browser's content policy (nsIContentPolicy) with what it may answer.
#pragma once

#include <cstdint>

namespace zab {

inline constexpr std::uint32_t kDocumentLoad = 0x10000;  // a page, of the window or of a frame
inline constexpr std::uint32_t kTopLevelLoad = 0x80000;  // the page of the window itself

namespace policy_types {
inline constexpr std::uint32_t kObject = 5;
inline constexpr std::uint32_t kDocument = 6;
inline constexpr std::uint32_t kObjectSubrequest = 12;  // what a plug-in asks for
inline constexpr std::uint32_t kMedia = 15;
}  // namespace policy_types

/// A part of a page that may be a download of its own.
constexpr bool isObjectRequest(std::uint32_t policyType) noexcept {
    return policyType == policy_types::kObject || policyType == policy_types::kObjectSubrequest ||
           policyType == policy_types::kMedia;
}

inline constexpr std::int32_t kPolicyAccept = 1;
inline constexpr std::int32_t kPolicyReject = -1;

}  // namespace zab
