#include "media/capture/f4f_drm_checker.h"

#include <algorithm>

#include "media/parsers/box_reader.h"

namespace zab {

void CF4FDrmChecker::feed(Bytes chunk) noexcept {
    while (!chunk.empty() && !ended_) {
        if (skip_ != 0) {
            const auto skipped = static_cast<std::size_t>(std::min<std::uint64_t>(skip_, chunk.size()));
            skip_ -= skipped;
            chunk = chunk.subspan(skipped);
            continue;
        }
        const std::size_t taken = std::min<std::size_t>(wanted_ - held_, chunk.size());
        std::copy_n(chunk.begin(), taken, header_.begin() + held_);
        held_ = static_cast<std::uint8_t>(held_ + taken);
        chunk = chunk.subspan(taken);
        if (held_ == wanted_) readHeader();
    }
}

void CF4FDrmChecker::readHeader() noexcept {
    if (inMediaData_) return readTag();
    // Size 1: a 64-bit size follows the type.
    const bool isLong = wanted_ == kBoxHeader && readerAt(header_, 0).u32be() == 1u;
    if (isLong) {
        wanted_ = kLongBoxHeader;
    } else {
        readBox();
    }
}

void CF4FDrmChecker::readBox() noexcept {
    ByteReader reader(Bytes(header_).first(held_));
    const std::uint32_t shortSize = reader.u32be().value_or(0);
    const std::uint32_t type = reader.u32be().value_or(0);
    const std::uint64_t size = wanted_ == kLongBoxHeader ? reader.u64be().value_or(0)
                               : shortSize == 0          ? UINT64_MAX  // up to the end of the fragment
                                                         : shortSize;
    if (size < wanted_) {
        ended_ = true;
        return;
    }
    const std::uint64_t payload = size - wanted_;
    expect(kBoxHeader);
    if (type != boxType("mdat")) {
        skip_ = payload;
        return;
    }
    mediaDataLeft_ = payload;
    expectTag();
}

/// The next tag of the media data, or, when it has no room for one, the box behind it.
void CF4FDrmChecker::expectTag() noexcept {
    inMediaData_ = mediaDataLeft_ >= kTagHeader;
    if (inMediaData_) {
        mediaDataLeft_ -= kTagHeader;
        expect(kTagHeader);
    } else {
        skip_ += mediaDataLeft_;
        expect(kBoxHeader);
    }
}

void CF4FDrmChecker::readTag() noexcept {
    constexpr std::uint8_t kFilter = 0x20;
    constexpr std::uint32_t kSizeOfTagBefore = 4;  // a number behind each tag
    ByteReader reader(Bytes(header_).first(held_));
    sawTag_ = true;
    if ((reader.u8().value_or(0) & kFilter) != 0) sawFilter_ = true;
    const std::uint64_t rest = std::uint64_t{reader.u24be().value_or(0)} + kSizeOfTagBefore;
    skip_ = std::min(rest, mediaDataLeft_);
    mediaDataLeft_ -= skip_;
    expectTag();
}

}  // namespace zab
