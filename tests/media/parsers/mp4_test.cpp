#include "media/parsers/mp4.h"

#include "readings.h"

namespace {

using namespace zabtest;

std::string big(std::uint64_t value, int bytes) {
    std::string text;
    for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift & 0xFF);
    return text;
}
std::string u32(std::uint64_t value) { return big(value, 4); }
std::string zeros(std::size_t count) { return std::string(count, '\0'); }

std::string box(std::string_view type, std::string_view payload) {
    return u32(payload.size() + 8).append(type).append(payload);
}
std::string mvhd(std::uint32_t timescale, std::uint32_t duration) {
    return box("mvhd", zeros(12) + u32(timescale) + u32(duration) + zeros(80));
}
std::string tkhd(std::uint16_t volume, std::uint32_t width, std::uint32_t height, int version = 0) {
    return box("tkhd", std::string(1, static_cast<char>(version)) + zeros(version == 0 ? 35 : 47) +
                           big(volume, 2) + zeros(38) + u32(width << 16) + u32(height << 16));
}
std::string trak(const std::string& header) { return box("trak", header + box("mdia", zeros(40))); }
std::string mehd(std::uint32_t versionAndFlags, const std::string& duration) {
    return box("mvex", box("mehd", u32(versionAndFlags) + duration));
}

/// "timescale duration fragmentDuration height seconds"; "-" where nothing usable was found.
std::string readingOf(std::string_view file) {
    zab::CMp4DashReader reader;
    const bool isUsable = reader.read({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()});
    return (isUsable ? "" : "- ") + std::to_string(reader.timescale) + ' ' + std::to_string(reader.duration) +
           ' ' + std::to_string(reader.fragmentDuration) + ' ' + std::to_string(reader.height) + ' ' +
           reader.secondsText();
}

TEST(Mp4, FindsTheMovieBox) {
    const std::string movie = box("moov", mvhd(10, 55));
    const std::string longMovie = u32(1) + "moov" + big(16 + mvhd(10, 55).size(), 8) + mvhd(10, 55);
    const Reading rows[] = {
        {movie + box("moov", mvhd(1, 1)), "10 55 0 0 5", "the first ends the walk"},
        {u32(0) + "moov" + mvhd(10, 55), "10 55 0 0 5", "size 0: up to the end"},
        {longMovie, "10 55 0 0 5", "a 64-bit size"},
        {u32(1) + "mdat" + big(16, 8) + movie, "10 55 0 0 5", "a 64-bit size that is only a header"},
        {u32(1) + "mdat" + big(15, 8) + movie, "- 0 0 0 0 ", "a 64-bit size below its header"},
        {box("free", "") + u32(1) + "mdat" + big(UINT64_MAX - 7, 8), "- 0 0 0 0 ",
         "a size that leads back to 0"},
        {u32(1) + "moov" + big(UINT64_MAX, 8) + mvhd(10, 55), "10 55 0 0 5", "a movie box is clipped"},
        {u32(7) + "mdat" + movie, "- 0 0 0 0 ", "a size below the header"},
    };
    expectReadings(readingOf, rows);
}

TEST(Mp4, ReadsTimesAndHeightOfAMovie) {
    const std::string shortHeader = box("mvhd", zeros(12) + u32(10)), video = trak(tkhd(0, 1280, 720));
    const Reading rows[] = {
        {mvhd(10, 0), "- 10 0 0 0 ", "a timescale alone is not usable"},
        {mvhd(0, 10), "- 0 10 0 0 ", "nor is a duration"},
        {box("mvhd", u32(0x01000000) + zeros(8) + u32(7) + u32(70)), "7 70 0 0 10", "one layout for all"},
        {shortHeader + u32(77), "10 77 0 0 7", "16 bytes are enough; the duration lies behind the box"},
        {shortHeader, "- 10 0 0 0 ", "a field outside the buffer leaves its value"},
        {box("mvhd", zeros(15)), "- 0 0 0 0 ", "15 bytes are not enough"},
        {u32(0) + "free" + mvhd(10, 20), "- 0 0 0 0 ", "no child of size 0"},
        {u32(900) + "free" + mvhd(10, 20), "- 0 0 0 0 ", "no child beyond its parent"},
        {trak(tkhd(0, 1280, 1080, 1)), "0 0 0 1080 ", "a header with 64-bit times"},
        {video + trak(tkhd(0x100, 0, 0)), "0 0 0 720 ", "a track without a picture changes nothing"},
        {trak(tkhd(0x101, 640, 360)), "- 0 0 0 0 ", "volume one and a fraction"},
        {trak(tkhd(0x100, 640, 360)) + trak(tkhd(0x201, 640, 361)), "0 0 0 361 ", "without, and two with one"},
        {trak(box("tkhd", zeros(83))), "- 0 0 0 0 ", "too short for version 0"},
        {trak(box("tkhd", tkhd(0, 640, 360, 1).substr(8, 95))), "- 0 0 0 0 ", "too short for another"},
        {mvhd(1000, 5) + mehd(0, u32(90000)), "1000 5 90000 0 90", "before the movie's own duration"},
        {mvhd(0, 0) + mehd(0, u32(90000)), "0 0 90000 0 90", "timescale 0: 1000"},
        {mehd(1, u32(1) + u32(4000)), "0 0 4000 0 4", "flags count like a version"},
        {mehd(0, "") + u32(4000), "0 0 4000 0 4", "no size is checked: the field behind the box"},
        {box("mvex", box("trex", u32(0) + u32(4000))), "- 0 0 0 0 ", "another box"},
    };
    expectReadings([](const std::string& children) { return readingOf(box("moov", children)); }, rows);
}

}  // namespace
