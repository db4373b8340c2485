// The media entries that a response offers, as JSON.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "intercept/decision.h"
#include "zabprobe/command.h"

namespace zabprobe {

struct KeptExchange {
    const zab::Decision& decision;
    const zab::CapturedHeaders& headers;  // of the response
    std::uint32_t loadFlags;
};

/// What the response offers to a page that has nothing yet, without companion libraries. The body comes in
/// chunks of `chunkBytes`; 0: as one.
Json capturedEntries(const KeptExchange& exchange, std::string_view body, std::size_t chunkBytes = 0);

}  // namespace zabprobe
