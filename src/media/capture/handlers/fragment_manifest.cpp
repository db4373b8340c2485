// Fragment manifests (JSON): one stream in numbered fragments, whose addresses a template tells.
//
// The text is searched for its keys, not parsed.

#include <optional>

#include "binding/text.h"
#include "media/capture/handlers/handlers.h"
#include "web/json_text.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

constexpr std::string_view kPlaceholder = "$fragment$";

/// What stands behind the first place of a key with its quotes that is followed by ":"; empty: none.
std::string_view valueOf(std::string_view text, std::string_view key) noexcept {
    for (auto at = text.find(key); at != std::string_view::npos; at = text.find(key)) {
        text = text.substr(at + key.size());
        const std::string_view rest = trimLeft(text);
        if (rest.starts_with(':')) return trimLeft(rest.substr(1));
    }
    return {};
}

std::string withFirstFragment(std::string_view text) {
    std::string filled;
    for (auto at = text.find(kPlaceholder); at != std::string_view::npos; at = text.find(kPlaceholder)) {
        filled.append(text.substr(0, at)) += '1';
        text.remove_prefix(at + kPlaceholder.size());
    }
    return filled.append(text);
}

}  // namespace

void offerFragmentManifest(std::string_view body, CaptureRun& run) {
    const std::string_view text = upToNul(body);
    const auto fragments = leadingDigits(valueOf(text, "\"fragments\""), INT32_MAX).value_or(0);
    const auto written = jsonString(valueOf(text, "\"template\""));
    if (fragments == 0 || !written) return;
    const std::string_view pattern = upToNul(*written);
    if (!contains(pattern, kPlaceholder)) return;

    const std::string resolved = resolveUrl(run.context().url, pattern);
    MediaEntry entry = run.plainEntry(withFirstFragment(resolved));
    entry.extra =
        "<fragments>" + std::to_string(fragments) + "</fragments><template>" + resolved + "</template>";
    entry.extension = kMp4Extension;
    entry.kind = EntryKind::video;
    entry.duration = entryNumber(valueOf(text, "\"duration\""));
    entry.height = entryNumber(valueOf(text, "\"height\""));
    if (entry.height != 0) entry.description = std::to_string(entry.height) + 'p';
    run.offer(std::move(entry));
}

}  // namespace zab
