// What a page's streams cost each of its later responses.

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "bench/bench.h"
#include "bench/memory.h"
#include "binding/pieces.h"
#include "intercept/decision.h"
#include "media/capture/body_capture.h"

namespace {

constexpr std::size_t kStreams = 5, kSegments = 2'000;
constexpr std::size_t kMostBytes = 64 * 1024;  // of what a page knows of its streams, entries included

std::string directoryOf(std::size_t stream) {
    return "https://media.example.com/film/" + std::to_string(stream) + "/1080p/";
}

/// Addresses of segments, one a line, as players of all streams ask for them.
std::string segments(std::size_t n) {
    std::string addresses;
    for (std::size_t i = 0; i < n; ++i)
        addresses += directoryOf(i % kStreams) + "segment_" + std::to_string(i / kStreams) + ".mp4\n";
    return addresses;
}

void readPlaylist(std::size_t stream, zab::LocalPage& page) {
    zab::CaptureContext context;
    context.url = directoryOf(stream) + "index.m3u8";
    zab::BodyCapture listener(zab::MediaKind::hls, context);
    listener.add("#EXTM3U\n#EXT-X-TARGETDURATION:4\n" +
                 zabbench::repeated("#EXTINF:4.0,\nsegment_%.mp4\n", kSegments) + "#EXT-X-ENDLIST\n");
    page.take(listener.finish(page));
}

/// What becomes of each response, from its headers to its page.
void examine(std::string_view addresses, zab::LocalPage& page) {
    zab::GivenSettings settings;
    zab::CapturedHeaders headers;
    constexpr std::uint32_t kOk = 200;
    for (const std::string_view address : zab::piecesOf(addresses, '\n')) {
        headers.clear();
        headers.url = address;
        zab::visitHeader(headers, "Content-Type", "video/mp4");
        zab::visitHeader(headers, "Content-Length", "400000");
        const zab::Decision decision = zab::decide(zab::factsOf(headers, kOk, 0), settings);
        page.take(zab::captureResponse(decision, 0, zab::captureContextOf(headers, decision), page));
    }
}

std::function<void()> onAPlainPage(const std::string& addresses) {
    return [&addresses, page = std::make_shared<zab::LocalPage>()] { examine(addresses, *page); };
}

std::function<void()> onAPageOfStreams(const std::string& addresses) {
    const auto page = std::make_shared<zab::LocalPage>();
    const std::size_t before = zabbench::memory.held;
    for (std::size_t stream = 0; stream < kStreams; ++stream) readPlaylist(stream, *page);
    if (zabbench::memory.held - before > kMostBytes) throw std::runtime_error("a page's streams take too much");
    return [&addresses, page] { examine(addresses, *page); };
}

const zabbench::Case kCases[] = {
    {"streams", "segments on a page without streams", segments, kStreams* kSegments, onAPlainPage},
    {"streams", "segments on a page of five streams", segments, kStreams* kSegments, onAPageOfStreams},
};

}  // namespace
