// capture: the media entries that a response with a given body offers to its page.

#include "zabprobe/capture.h"

#include <iostream>

#include "binding/text.h"
#include "intercept/load_types.h"
#include "zabprobe/text_json.h"

namespace zabprobe {
namespace {

std::vector<zab::MediaEntry> readBody(const KeptExchange& exchange, std::string_view body,
                                      zab::CapturePage& page, std::size_t chunkBytes) {
    zab::BodyCapture capture(exchange.decision.listener,
                             zab::captureContextOf(exchange.headers, exchange.decision));
    while (!body.empty() && capture.wantsMore()) {
        const std::string_view chunk = body.substr(0, chunkBytes == 0 ? body.size() : chunkBytes);
        body.remove_prefix(chunk.size());
        capture.add(chunk);
    }
    return capture.finish(page);
}

bool asksCompanion(zab::MediaKind kind) {
    return kind == zab::MediaKind::dash || kind == zab::MediaKind::sniff;
}

Answer runCapture(const Arguments& arguments) {
    zab::CapturedHeaders headers;
    headers.url = zab::upToNul(arguments.url);
    zab::visitHeader(headers, "Content-Type", arguments.contentType);
    headers.contentLength = arguments.length;
    const bool isPage = zab::startsWithIgnoringCase(headers.contentType, "text/html");
    const std::uint32_t loadFlags = isPage ? zab::kDocumentLoad | zab::kTopLevelLoad : 0;
    constexpr std::uint32_t kOk = 200;
    const zab::Decision decision =
        zab::afterFailedTransfer(zab::factsOf(headers, kOk, loadFlags), zab::GivenSettings{});
    const std::string body = arguments.bytes();
    if (asksCompanion(decision.listener)) std::cerr << "zabprobe: this body needs a companion library\n";
    Json entries =
        capturedEntries({decision, headers, loadFlags}, body, static_cast<std::size_t>(arguments.chunk));
    return {!entries.empty(), std::move(entries)};
}

constexpr Option kOptions[] = {
    kFile,
    {"--url", "The final request URL", &Arguments::url, kRequired},
    {"--content-type", "The Content-Type header", &Arguments::contentType, kRequired},
    {"--length", "The Content-Length; 0: unknown", &Arguments::length},
    {"--chunk", "Bytes in a chunk; 0: all in one", &Arguments::chunk},
};

constexpr Command kCommands[] = {
    {"capture", "The media entries that a response with this body offers", kOptions, runCapture},
};

}  // namespace

Json entryJson(const zab::MediaEntry& entry) {
    return {{"link", asJson(entry.link)},
            {"secondUrl", asJson(entry.secondUrl)},
            {"extra", asJson(entry.extra)},
            {"description", asJson(entry.description)},
            {"extension", asJson(entry.extension)},
            {"kind", entry.kind == zab::EntryKind::audio ? "audio" : "video"},
            {"size", entry.size},
            {"duration", entry.duration},
            {"width", entry.width},
            {"height", entry.height},
            {"bitrate", entry.bitrate}};
}

std::vector<zab::MediaEntry> offersOf(const KeptExchange& exchange, std::string_view body,
                                      zab::CapturePage& page, std::size_t chunkBytes) {
    const zab::Decision& decision = exchange.decision;
    if (decision.outcome == zab::Outcome::listen) return readBody(exchange, body, page, chunkBytes);
    return zab::captureResponse(decision, exchange.loadFlags, zab::captureContextOf(exchange.headers, decision),
                                page);
}

Json capturedEntries(const KeptExchange& exchange, std::string_view body, std::size_t chunkBytes) {
    zab::LocalPage page;
    page.take(offersOf(exchange, body, page, chunkBytes));
    Json entries = Json::array();
    for (const zab::MediaEntry& entry : page.media().entries()) entries.push_back(entryJson(entry));
    return entries;
}

std::span<const Command> captureCommands() { return kCommands; }

}  // namespace zabprobe
