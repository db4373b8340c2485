// YouTube's DASH manifests: each video record with the audio record that goes with it. Records of a live stream
// number their segments; a link to one says where both begin.

#include <algorithm>
#include <map>
#include <optional>

#include "binding/text.h"
#include "media/capture/handlers/handlers.h"
#include "media/capture/handlers/youtube_entry.h"
#include "media/parsers/dash.h"
#include "media/parsers/tag_scanner.h"
#include "web/url.h"
#include "web/xml_text.h"

namespace zab {
namespace {

constexpr std::string_view kSequence = "sq/";
constexpr std::string_view kStartSequence = "start_seq/";
constexpr std::string_view kLanguage = "lang";
constexpr std::string_view kMedia[] = {"media"};

/// The digits behind the first "sq/" that begins the address or a segment of it and has any.
std::string_view sequenceIn(std::string_view address) noexcept {
    for (auto at = address.find(kSequence); at != std::string_view::npos;
         at = address.find(kSequence, at + kSequence.size())) {
        if (at != 0 && address[at - 1] != '/') continue;
        const std::string_view rest = address.substr(at + kSequence.size());
        const auto end = std::min(rest.find_first_not_of("0123456789"), rest.size());
        if (end != 0) return rest.substr(0, end);
    }
    return {};
}

/// The first sequence number of a record, as written; empty: it is not live.
std::string_view firstSequenceOf(const DashRepresentation& record) {
    const std::string_view list = record.segmentList;
    if (!contains(list, kSequence)) return {};
    TagAttributes attributes(list, kMedia);
    for (auto tag = list.find('<'); tag != std::string_view::npos; tag = list.find('<', tag + 1)) {
        const auto name = list.find_first_not_of(kWhiteSpace, tag + 1);
        if (name == std::string_view::npos) break;
        const auto behindName = std::min(list.find_first_of(" \t\r\n/>", name), list.size());
        const std::string_view sequence = sequenceIn(attributes.readAt(behindName).of[0]);
        if (!sequence.empty()) return sequence;
    }
    return {};
}

/// The start of the query or fragment, where the path ends.
std::size_t pathEndOf(std::string_view url) noexcept { return beforeQuery(url).size(); }

/// Where the value of the path element "/NAME/" begins, up to the path's end.
std::optional<std::size_t> elementValue(std::string_view url, std::string_view element) noexcept {
    const std::size_t path = url.size() - behindHost(url).size();
    const auto at = url.substr(0, pathEndOf(url)).find(element, path);
    if (at == std::string_view::npos) return std::nullopt;
    return at + element.size();
}

std::string withStartSequence(std::string_view url, std::string_view sequence) {
    const std::size_t pathEnd = pathEndOf(url);
    std::string started;
    if (const auto value = elementValue(url, "/start_seq/")) {
        const auto end = std::min(url.find('/', *value), pathEnd);
        return started.append(url.substr(0, *value)).append(sequence).append(url.substr(end));
    }
    const bool endsInSlash = pathEnd != 0 && url[pathEnd - 1] == '/';
    started.append(url.substr(0, pathEnd)).append(endsInSlash ? "" : "/");
    started.append(kStartSequence).append(sequence).append(endsInSlash ? "/" : "");
    return started.append(url.substr(pathEnd));
}

std::string_view languageOf(std::string_view url) noexcept {
    if (const auto value = elementValue(url, "/lang/")) {
        const auto end = std::min(url.find('/', *value), pathEndOf(url));
        if (end != *value) return url.substr(*value, end - *value);
    }
    return queryParameter(url, kLanguage).value_or(std::string_view{});
}

/// The audio record that goes with the videos of an itag.
struct Audio {
    const DashRepresentation* record = nullptr;  // null: none
    std::string_view sequence;
};

/// Looks for it once for each itag.
class ManifestAudio {
  public:
    explicit ManifestAudio(const CYoutubeDashXMLParser& manifest) : manifest_(manifest) {}

    const Audio& operator()(std::uint32_t itag) {
        const auto [known, isNew] = known_.try_emplace(itag);
        if (!isNew) return known->second;
        known->second.record = manifest_.pickAudioFor(itag);
        if (known->second.record != nullptr) known->second.sequence = firstSequenceOf(*known->second.record);
        return known->second;
    }

  private:
    const CYoutubeDashXMLParser& manifest_;
    std::map<std::uint32_t, Audio> known_;
};

std::string liveLink(std::string_view video, std::string_view sequence, const Audio& audio) {
    std::string link(textOf(LinkScheme::youtubeLive));
    link += withStartSequence(video, sequence);
    link += ",au=";
    const std::string sound = addressInXml(audio.record->baseUrl);
    link += withStartSequence(sound, audio.sequence.empty() ? sequence : audio.sequence);
    const std::string_view language = languageOf(sound);
    return language.empty() ? link : link.append(",asl=").append(language);
}

}  // namespace

void offerYouTubeDash(std::string_view body, CaptureRun& run) {
    CYoutubeDashXMLParser parser;
    if (!parser.parse(body)) return;
    ManifestAudio audioOf(parser);
    for (const DashRepresentation& video : parser.representations) {
        const auto number = static_cast<std::uint32_t>(video.itag);
        if (isAdaptiveVideo(number, -1) != 1) continue;
        const Audio& audio = audioOf(number);
        if (audio.record == nullptr) continue;
        ItagDescription itag;
        itagDescribe(number, {.adaptive = true, .webm = true}, itag);
        const std::string address = addressInXml(video.baseUrl);
        MediaEntry entry = youtubeEntry(run, address, itag);
        const std::string_view sequence = firstSequenceOf(video);
        if (sequence.empty()) {
            entry.secondUrl = addressInXml(audio.record->baseUrl);
        } else {
            entry.link = liveLink(address, sequence, audio);
        }
        if (!run.offer(std::move(entry))) return;
    }
}

}  // namespace zab
