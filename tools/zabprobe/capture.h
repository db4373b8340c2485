// The media entries that a response offers, as JSON.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "intercept/decision.h"
#include "media/capture/body_capture.h"
#include "zabprobe/command.h"

namespace zabprobe {

struct KeptExchange {
    const zab::Decision& decision;
    const zab::CapturedHeaders& headers;  // of the response
    std::uint32_t loadFlags;
};

/// An entry with its eleven keys.
Json entryJson(const zab::MediaEntry& entry);

/// What the response offers to this page, without companion libraries; the page has still to take it.
std::vector<zab::MediaEntry> offersOf(const KeptExchange& exchange, std::string_view body,
                                      zab::CapturePage& page, std::size_t chunkBytes = 0);

/// What the response offers to a page that has nothing yet, without companion libraries. The body comes in
/// chunks of `chunkBytes`; 0: as one.
Json capturedEntries(const KeptExchange& exchange, std::string_view body, std::size_t chunkBytes = 0);

}  // namespace zabprobe
