#include "media/parsers/dash.h"

#include "binding/text.h"
#include "media/parsers/itags.h"
#include "media/parsers/tag_scanner.h"

namespace zab {
namespace {

enum Element : std::size_t { kRepresentation, kBaseUrl, kSegmentList };
constexpr ElementName kElements[] = {{"Representation"}, {"BaseURL"}, {"SegmentList"}};
constexpr std::string_view kAttributes[] = {"id"};

class Manifest {
  public:
    explicit Manifest(std::string_view text)
        : tags_(text, kElements),
          attributes_(text, kAttributes),
          tagEnds_(text, '>'),
          baseUrls_(tags_, kBaseUrl, tagEnds_),
          segmentLists_(tags_, kSegmentList, tagEnds_) {}

    [[nodiscard]] const std::vector<StartTag>& starts() const { return tags_.starts(kRepresentation); }

    /// The representation whose start tag this is; without an end tag it runs to the end of the text.
    [[nodiscard]] DashRepresentation read(const StartTag& start) {
        DashRepresentation representation;
        const TagAttributes::Values attributes = attributes_.readAt(start.behindName);
        representation.itag = static_cast<std::int32_t>(leadingDigits(attributes.of[0], INT32_MAX).value_or(0));
        const std::size_t end = tags_.endFrom(kRepresentation, attributes.end);
        representation.baseUrl = lastOf(baseUrls_, attributes.end, end);
        representation.segmentList = lastOf(segmentLists_, attributes.end, end);
        return representation;
    }

  private:
    static std::string_view lastOf(const ElementContents& contents, std::size_t from, std::size_t to) {
        const std::size_t last = contents.lastBetween(from, to);
        return last == ElementContents::kNone ? std::string_view{} : contents[last];
    }

    TagIndex tags_;
    TagAttributes attributes_;
    NextPlace tagEnds_;
    ElementContents baseUrls_, segmentLists_;
};

bool isComplete(const DashRepresentation& representation) noexcept {
    return representation.itag != 0 && !representation.baseUrl.empty() && !representation.segmentList.empty();
}

}  // namespace

bool CYoutubeDashXMLParser::parse(std::string_view body) {
    representations.clear();
    if (!body_.assign(body)) return false;
    Manifest manifest(body_.view());
    // The search for representations leaves out as many characters behind a name as the name has.
    std::size_t resumeAt = 0;
    for (const StartTag& start : manifest.starts()) {
        if (start.at < resumeAt) continue;
        resumeAt = start.behindName + kElements[kRepresentation].name.size();
        const DashRepresentation representation = manifest.read(start);
        if (!isComplete(representation)) continue;
        DashRepresentation* record = representations.append();
        if (record == nullptr) continue;
        *record = representation;
    }
    return !representations.empty();
}

DashRepresentation* CYoutubeDashXMLParser::pickAudioFor(std::uint32_t videoItag) const {
    return pickAudio(representations, videoItag,
                     [](const DashRepresentation& record) { return static_cast<std::uint32_t>(record.itag); });
}

}  // namespace zab
