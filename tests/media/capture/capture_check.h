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

/// For the fuzz targets of the handlers: bounded, with an address behind every scheme, and the same each time.
inline void checkHandler(zab::MediaKind kind, std::string_view body) {
    EchoingLibraries libraries;
    zab::CaptureContext context = contextFor("http://manifest.googlevideo.com/api/manifest/aSeg1-Frag2?q");
    context.companions = &libraries;
    const auto entriesOf = [&] {
        zab::LocalPage page;
        zab::BodyCapture listener(kind, context);
        listener.add(body);
        page.take(listener.finish(page));
        return page.media().entries();
    };
    const auto entries = entriesOf();
    must(entries.size() <= zab::OfferedMedia::kMostEntries);
    for (const auto& entry : entries) must(!zab::addressOf(entry.link).empty());
    must(shown(entries) == shown(entriesOf()));
}

/// For the fuzz target that cuts bodies: the first byte names the kind, the second the chunks, the third the
/// length.
inline void checkCapture(std::string_view bytes) {
    if (bytes.size() < 3) return;
    const auto byte = [bytes](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const auto kind = static_cast<zab::MediaKind>(byte(0) % zab::kMediaKindCount);
    const std::size_t chunk = byte(1) % 16 + 1u;
    const std::string_view body = bytes.substr(3);
    const std::int64_t length = byte(2) % 2 == 0 ? 0 : static_cast<std::int64_t>(body.size());
    const auto context = contextFor("http://h.example/d/aSeg1-Frag2?q", length);
    must(captureWhole(kind, context, body) == capture(kind, context, body, [chunk] { return chunk; }));
}

}  // namespace zabtest
