// Fragments of HDS streams (Adobe F4F): whether the FLV tags in them can be played, or are encrypted.
//
// A fragment is a row of boxes (ISO/IEC 14496-12); its media data is FLV tags, whose headers say whether their
// payload is filtered, which is how protection shows. Fed in pieces of any size; keeps no more than the header
// that is being read.
#pragma once

#include <array>
#include <cstdint>

#include "binding/byte_reader.h"

namespace zab {

class CF4FDrmChecker {
  public:
    void feed(Bytes chunk) noexcept;

    /// Whether there was at least one whole tag header, and none that says "filtered".
    [[nodiscard]] bool isPlayable() const noexcept { return sawTag_ && !sawFilter_; }

  private:
    static constexpr std::uint8_t kBoxHeader = 8, kLongBoxHeader = 16, kTagHeader = 11;

    void readHeader() noexcept;
    void readBox() noexcept;
    void readTag() noexcept;
    void expectTag() noexcept;
    void expect(std::uint8_t headerBytes) noexcept {
        wanted_ = headerBytes;
        held_ = 0;
    }

    std::array<std::uint8_t, kLongBoxHeader> header_{};
    std::uint8_t held_ = 0;  // bytes of the header so far
    std::uint8_t wanted_ = kBoxHeader;
    bool inMediaData_ = false;
    bool ended_ = false;  // by a box that cannot be
    bool sawTag_ = false;
    bool sawFilter_ = false;
    std::uint64_t skip_ = 0;           // bytes before the next header
    std::uint64_t mediaDataLeft_ = 0;  // bytes of the media data behind what was read or is skipped
};

}  // namespace zab
