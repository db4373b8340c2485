#include "media/parsers/mp4.h"

#include <algorithm>

#include "media/parsers/box_reader.h"

namespace zab {
namespace {

/// Big-endian fields of a box by their place in its payload. They may lie behind the box, never behind the
/// buffer: a field that is not in the buffer whole is no field.
class Fields {
  public:
    Fields(Bytes buffer, const Box& box) noexcept : buffer_(buffer), payload_(box.payload) {}

    [[nodiscard]] std::optional<std::uint8_t> u8(std::size_t at) const noexcept { return from(at).u8(); }
    [[nodiscard]] std::optional<std::uint16_t> u16(std::size_t at) const noexcept { return from(at).u16be(); }
    [[nodiscard]] std::optional<std::uint32_t> u32(std::size_t at) const noexcept { return from(at).u32be(); }

  private:
    [[nodiscard]] ByteReader from(std::size_t at) const noexcept { return readerAt(buffer_, payload_ + at); }

    Bytes buffer_;
    std::size_t payload_;
};

/// Where the fields of a track header stand in its payload.
struct TrackHeaderLayout {
    std::uint64_t leastSize;
    std::size_t volume, width, height;  // 8.8 and 16.16 fixed-point numbers
};
constexpr TrackHeaderLayout kTrackHeader32{84, 36, 76, 80};
constexpr TrackHeaderLayout kTrackHeader64{96, 48, 88, 92};

// Deliberate: the layout of version 0 is taken for every "mvhd", and a payload of 16 bytes is enough although
// the duration ends at byte 20. Held by Mp4.ReadsTimesAndHeightOfAMovie.
void readMovieHeader(Bytes buffer, const Box& header, CMp4DashReader& reader) noexcept {
    constexpr std::uint64_t kLeastSize = 16;
    if (header.size < kLeastSize) return;
    const Fields fields(buffer, header);
    reader.timescale = fields.u32(12).value_or(reader.timescale);
    reader.duration = fields.u32(16).value_or(reader.duration);
}

void readTrackHeader(Bytes buffer, const Box& header, CMp4DashReader& reader) noexcept {
    const Fields fields(buffer, header);
    const TrackHeaderLayout& layout = fields.u8(0).value_or(0) == 0 ? kTrackHeader32 : kTrackHeader64;
    if (header.size < layout.leastSize) return;
    const auto volume = fields.u16(layout.volume);
    const auto width = fields.u16(layout.width);  // the whole parts
    const auto height = fields.u16(layout.height);
    if (!volume || !width || !height || *width == 0 || *height == 0) return;
    const bool isOneAndAFraction = *volume >> 8 == 1 && (*volume & 0xFF) != 0;
    if (!isOneAndAFraction) reader.height = *height;
}

void readTrack(Bytes buffer, const Box& track, CMp4DashReader& reader) noexcept {
    BoxChildren children(buffer, track);
    for (Box child; children.next(child);)
        if (child.is("tkhd")) readTrackHeader(buffer, child, reader);
}

void readExtends(Bytes buffer, const Box& extends, CMp4DashReader& reader) noexcept {
    BoxChildren children(buffer, extends);
    for (Box child; children.next(child);) {
        if (!child.is("mehd")) continue;
        const Fields fields(buffer, child);
        const auto versionAndFlags = fields.u32(0);
        if (!versionAndFlags) continue;
        // Of a 64-bit duration the low half.
        reader.fragmentDuration = fields.u32(*versionAndFlags != 0 ? 8 : 4).value_or(reader.fragmentDuration);
    }
}

void readMovie(Bytes buffer, const Box& movie, CMp4DashReader& reader) noexcept {
    BoxChildren children(buffer, movie);
    for (Box child; children.next(child);) {
        if (child.is("mvhd")) readMovieHeader(buffer, child, reader);
        if (child.is("trak")) readTrack(buffer, child, reader);
        if (child.is("mvex")) readExtends(buffer, child, reader);
    }
}

}  // namespace

bool CMp4DashReader::read(Bytes buffer) noexcept {
    *this = {};
    std::uint64_t at = 0;
    while (const auto box = topLevelBoxAt(buffer, at)) {
        const std::uint64_t left = buffer.size() - box->payload;
        if (box->is("moov")) {
            moov = buffer.data() + box->payload;
            moovSize = static_cast<std::uint32_t>(std::min({box->size, left, std::uint64_t{UINT32_MAX}}));
            readMovie(buffer, {box->type, box->payload, moovSize}, *this);
            break;
        }
        if (box->size > left) break;
        at = box->payload + box->size;
    }
    return fragmentDuration != 0 || height != 0 || (duration != 0 && timescale != 0);
}

std::optional<std::uint32_t> CMp4DashReader::seconds() const noexcept {
    constexpr std::uint32_t kUsualTimescale = 1000;
    if (fragmentDuration != 0) return fragmentDuration / (timescale != 0 ? timescale : kUsualTimescale);
    if (duration != 0 && timescale != 0) return duration / timescale;
    return std::nullopt;
}

std::string CMp4DashReader::secondsText() const {
    const auto known = seconds();
    return known ? std::to_string(*known) : std::string{};
}

std::string CMp4DashReader::heightText() const { return height != 0 ? std::to_string(height) : std::string{}; }

}  // namespace zab
