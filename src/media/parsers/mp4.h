// MP4 (ISO/IEC 14496-12): just enough of its boxes to learn how long a file runs and how high its picture is.
//
// Takes the first bytes of a body, which stay the caller's. A box that claims more than its parent holds ends
// the walk; what was read before stays. Media data and fragments are never looked at.
//
// Cost: linear in the number of boxes on the way; no memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "binding/byte_reader.h"

namespace zab {

class CMp4DashReader {
  public:
    virtual ~CMp4DashReader() = default;

    /// True when a play time or a height was found. Forgets what an earlier read gave.
    bool read(Bytes buffer) noexcept;

    /// The play time in whole seconds, when there is one.
    [[nodiscard]] std::optional<std::uint32_t> seconds() const noexcept;
    /// The two texts that an entry shows; empty when not known.
    [[nodiscard]] std::string secondsText() const;
    [[nodiscard]] std::string heightText() const;

    std::uint32_t timescale = 0;         // units of a second, of "mvhd"
    std::uint32_t duration = 0;          // of "mvhd", in units of the timescale
    std::uint32_t fragmentDuration = 0;  // of "mehd", in units of the timescale
    std::uint16_t height = 0;            // pixels, of the last track that has a picture
    const std::uint8_t* moov = nullptr;  // the payload of "moov" in the caller's buffer
    std::uint32_t moovSize = 0;          // bytes of it that lie in the buffer
};

}  // namespace zab
