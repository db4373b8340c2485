// Captured bodies in tests: entries as text, and what holds for every body of every kind.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "media/capture/body_capture.h"
#include "media/parsers/must.h"
#include "page/media_entry.h"

namespace zabtest {

/// The fields that are not empty, each with its name.
inline std::string shown(const zab::MediaEntry& entry) {
    std::string text = entry.link + " | " + entry.description + " | " + entry.extension;
    if (!entry.secondUrl.empty()) text += " | second " + entry.secondUrl;
    if (!entry.extra.empty()) text += " | extra " + entry.extra;
    if (entry.kind == zab::EntryKind::audio) text += " | audio";
    const std::pair<const char*, std::uint64_t> numbers[] = {{"size", entry.size},
                                                             {"duration", entry.duration},
                                                             {"width", entry.width},
                                                             {"height", entry.height},
                                                             {"bitrate", entry.bitrate}};
    for (const auto& [name, number] : numbers)
        if (number != 0) text.append(" | ").append(name).append(" ") += std::to_string(number);
    return text + "\n";
}

inline std::string shown(const std::vector<zab::MediaEntry>& entries) {
    std::string text;
    for (const auto& entry : entries) text += shown(entry);
    return text;
}

/// A response of each kind at an ordinary address.
inline zab::CaptureContext contextFor(std::string_view url, std::int64_t length = 0) {
    zab::CaptureContext context;
    context.url = url;
    context.contentLength = length;
    return context;
}

/// Feeds a body in chunks that `nextSize` names, and gives its entries.
template <class NextSize>
std::string capture(zab::MediaKind kind, const zab::CaptureContext& context, std::string_view body,
                    NextSize nextSize, std::string_view title = "") {
    zab::EntryPage identity;
    identity.title = title;
    zab::LocalPage page(identity);
    zab::BodyCapture listener(kind, context);
    while (!body.empty() && listener.wantsMore()) {
        const std::string_view chunk = body.substr(0, nextSize());
        body.remove_prefix(chunk.size());
        if (listener.add(chunk)) page.take(listener.finish(page));
    }
    page.take(listener.finish(page));
    return shown(page.media().entries());
}

inline std::string captureWhole(zab::MediaKind kind, const zab::CaptureContext& context, std::string_view body,
                                std::string_view title = "") {
    return capture(
        kind, context, body, [] { return std::string_view::npos; }, title);
}

/// Says of any body what its bytes say: for handlers that ask a library of the download manager.
class EchoingLibraries final : public zab::CompanionLibraries {
  public:
    std::optional<zab::DashStreams> dashStreams(std::string_view, std::string_view body) override {
        zab::DashStreams streams;
        for (const char c : body.substr(0, 200))
            (c % 2 == 0 ? streams.video : streams.audio)
                .push_back({std::string(1, c), static_cast<std::uint8_t>(c) * 9u, 0, 0});
        return streams;
    }
    zab::SniffedContent sniff(std::string_view body) override {
        constexpr const char* kExtensions[] = {"xml", "MP4", "mp3", ""};
        if (body.empty()) return {};
        const auto first = static_cast<std::uint8_t>(body.front());
        return {.verdict = static_cast<zab::SniffedContent::Verdict>(first % 3),
                .extension = kExtensions[first / 3 % 4]};
    }
};

/// For the fuzz targets: whatever the chunks, the entries are the same.
inline void checkHandler(zab::MediaKind kind, std::string_view body, std::size_t chunk = 7,
                         bool lengthIsKnown = false) {
    EchoingLibraries libraries;
    auto context = contextFor("http://manifest.googlevideo.com/api/manifest/aSeg1-Frag2?q",
                              lengthIsKnown ? static_cast<std::int64_t>(body.size()) : 0);
    context.companions = &libraries;
    must(captureWhole(kind, context, body) == capture(kind, context, body, [chunk] { return chunk; }));
}

/// The first byte names the kind, the second the chunks, the third whether the length is known.
inline void checkCapture(std::string_view bytes) {
    if (bytes.size() < 3) return;
    const auto byte = [bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    checkHandler(static_cast<zab::MediaKind>(byte(0) % zab::kMediaKindCount), bytes.substr(3),
                 byte(1) % 16 + 1u, byte(2) % 2 != 0);
}

}  // namespace zabtest
