#include "bench/bench.h"
#include "media/parsers/mp4.h"

namespace {

std::string big(std::uint32_t value) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(value >> shift & 0xFF);
    return text;
}
std::string zeros(std::size_t count) { return std::string(count, '\0'); }
std::string box(std::string_view type, std::string_view payload) {
    return big(static_cast<std::uint32_t>(payload.size() + 8)).append(type).append(payload);
}

std::string table(std::string_view type, std::string_view head, std::size_t n, std::uint32_t step) {
    std::string entries = zeros(4) + std::string(head) + big(static_cast<std::uint32_t>(n));
    for (std::size_t i = 0; i < n; ++i)
        entries += big(static_cast<std::uint32_t>(1000 + step * (i % 1'000'000)));
    return box(type, entries);
}

/// How the samples of a track are encoded: one entry, as small as a full reader accepts it.
std::string sampleDescription(bool video) {
    constexpr std::string_view kConfiguration("\1\x64\0\x1f\xff\xe0\0", 7);
    const std::string entry =
        zeros(6) + std::string("\0\1", 2) +
        (video ? zeros(16) + std::string("\7\x80\4\x38", 4) + zeros(50) + box("avcC", kConfiguration)
               : zeros(8) + std::string("\0\2\0\x10", 4) + zeros(4) + big(48'000u << 16));
    return box("stsd", zeros(4) + big(1) + box(video ? "avc1" : "mp4a", entry));
}

/// A track of n samples: the tables that a player needs make up nearly all of a movie box.
std::string track(std::size_t n, bool video) {
    constexpr std::string_view kMatrix(
        "\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x40\0\0\0", 36);
    const std::string header =
        box("tkhd", big(7) + zeros(8) + big(video ? 1 : 2) + zeros(4) + big(7'200'000) + zeros(12) +
                        (video ? zeros(4) : std::string("\1\0\0\0", 4)) + std::string(kMatrix) +
                        big(video ? 1920u << 16 : 0) + big(video ? 1080u << 16 : 0));
    const std::string samples = sampleDescription(video) +
                                box("stts", zeros(4) + big(1) + big(static_cast<std::uint32_t>(n)) + big(512)) +
                                box("stsc", zeros(4) + big(1) + big(1) + big(10) + big(1)) +
                                table("stsz", big(0), n, 1) + table("stco", "", n / 10, 40'000);
    const std::string handler = box("hdlr", zeros(8) + (video ? "vide" : "soun") + zeros(13));
    const std::string information = box("minf", (video ? box("vmhd", zeros(12)) : box("smhd", zeros(8))) +
                                                    box("dinf", box("dref", zeros(8))) + box("stbl", samples));
    return box("trak", header + box("mdia", box("mdhd", zeros(12) + big(12'800) + big(92'160'000) + zeros(4)) +
                                                handler + information));
}

/// A film of n pictures, its movie box in front.
std::string head(std::size_t n) {
    const std::string movieHeader =
        box("mvhd", zeros(12) + big(1000) + big(7'200'000) + big(0x10000) + std::string("\1\0", 2) + zeros(74));
    return box("ftyp", "isom" + zeros(4) + "isomavc1") +
           box("moov", movieHeader + track(n, true) + track(n * 3 / 2, false));
}

std::string smallBoxes(std::size_t n) {
    std::string body;
    for (std::size_t i = 0; i < n; ++i) body += box("free", "");
    return body;
}
std::string smallChildren(std::size_t n) {
    return box("moov", smallBoxes(n / 2) + box("trak", smallBoxes(n / 2)));
}

std::function<void()> read(const std::string& body) {
    return [&body] {
        zab::CMp4DashReader().read({reinterpret_cast<const std::uint8_t*>(body.data()), body.size()});
    };
}

const zabbench::Case kCases[] = {
    {"mp4", "head", head, 172'800, read},
    {"mp4", "small boxes", smallBoxes, 250'000, read},
    {"mp4", "small children", smallChildren, 250'000, read},
};

}  // namespace
