#include "media/parsers/hds.h"

#include <algorithm>
#include <bit>

#include "binding/byte_reader.h"
#include "binding/text.h"
#include "media/parsers/tag_scanner.h"
#include "media/parsers/whole_number.h"
#include "web/encoding.h"

namespace zab {
namespace {

enum Element : std::size_t { kBootstrapInfo, kMedia, kMetadata, kDuration, kBaseUrl, kDrm, kPv };
constexpr ElementName kElements[] = {
    {"bootstrapInfo"}, {"media"}, {"metadata"}, {"duration"}, {"baseURL"}, {"drm", true}, {"pv-", true},
};

constexpr std::string_view kBootstrapAttributes[] = {"id"};
enum MediaAttribute : std::size_t { kUrl, kBootstrapInfoId, kBitrate, kHeight };
constexpr std::string_view kMediaAttributes[] = {"url", "bootstrapInfoId", "bitrate", "height"};

/// The "height" of an AMF0 object, cut to a whole number; empty when there is none.
std::string heightIn(std::string_view base64) {
    constexpr std::string_view kKey = "\x06height";  // the low byte of the key's length, and the key
    constexpr std::size_t kKeyEarliest = 2;
    constexpr std::size_t kTypeByte = 1;
    // "<" is foreign to Base64. Contents that overlap are thus decoded over stretches that do not.
    const std::string data = Base64Decode(base64.substr(0, base64.find('<')));
    const auto key = data.find(kKey, kKeyEarliest);
    if (key == std::string::npos) return {};
    ByteReader reader({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()});
    if (!reader.skip(key + kKey.size() + kTypeByte)) return {};
    const auto bits = reader.u64be();
    const auto height = bits ? wholePart(std::bit_cast<double>(*bits)) : std::nullopt;
    return height ? std::to_string(*height) : std::string{};
}

/// The records in the order of one of their texts; equal ones in order of appearance.
template <class Record>
std::vector<Record*> sortedBy(std::string_view Record::*text, const Records<Record>& records) {
    std::vector<Record*> sorted;
    sorted.reserve(records.size());
    for (Record& record : records) sorted.push_back(&record);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [text](const Record* a, const Record* b) { return a->*text < b->*text; });
    return sorted;
}

}  // namespace

class CF4MParser::Reader {
  public:
    Reader(std::string_view text, CF4MParser& parser)
        : text_(text),
          parser_(parser),
          tags_(text, kElements),
          tagEnds_(text, '>'),
          bootstrapAttributes_(text, kBootstrapAttributes),
          mediaAttributes_(text, kMediaAttributes),
          metadata_(tags_, kMetadata, tagEnds_) {
        parser_.decodedHeights_.resize(metadata_.size());
    }

    void read() {
        parser_.hasDrm = tags_.starts(kDrm).empty() ? 0 : 1;
        parser_.hasPv = tags_.starts(kPv).empty() ? 0 : 1;
        parser_.duration = lastContentOf(kDuration);
        parser_.baseUrl = trim(lastContentOf(kBaseUrl));
        if (!parser_.baseUrl.empty() && parser_.baseUrl.back() != '/') parser_.baseUrl += '/';
        for (const StartTag& start : tags_.starts(kBootstrapInfo)) readBootstrap(start);
        for (const StartTag& start : tags_.starts(kMedia))
            if (text_[start.behindName] != '>') readMedia(start);
    }

  private:
    [[nodiscard]] std::string_view lastContentOf(Element element) const {
        const ElementContents contents(tags_, element, tagEnds_);
        return contents.size() == 0 ? std::string_view{} : contents[contents.size() - 1];
    }

    void readBootstrap(const StartTag& start) {
        const TagAttributes::Values attributes = bootstrapAttributes_.readAt(start.behindName);
        F4MBootstrap* record = parser_.bootstraps.append();
        if (record == nullptr) return;
        record->id = attributes.of[0];
        const std::size_t tagEnd = tagEnds_(attributes.end);
        if (tagEnd == std::string_view::npos) return;
        record->data = tags_.contentFrom(kBootstrapInfo, tagEnd + 1).value_or(std::string_view{});
    }

    void readMedia(const StartTag& start) {
        const TagAttributes::Values attributes = mediaAttributes_.readAt(start.behindName);
        F4MMedia* record = parser_.media.append();
        if (record == nullptr) return;
        record->url = attributes.of[kUrl];
        record->bootstrapInfoId = attributes.of[kBootstrapInfoId];
        record->bitrate = attributes.of[kBitrate];
        record->height = attributes.of[kHeight];
        const std::size_t child =
            isClosedInItsStartTag(attributes.end) ? ElementContents::kNone : metadataFrom(attributes.end);
        if (child == ElementContents::kNone) return;
        record->metadata = metadata_[child];
        if (record->height.empty()) record->height = heightOf(child);
    }

    [[nodiscard]] bool isClosedInItsStartTag(std::size_t attributesEnd) const {
        const std::size_t tagEnd = tagEnds_(attributesEnd);
        return tagEnd != std::string_view::npos && tagEnd > attributesEnd && text_[tagEnd - 1] == '/';
    }

    [[nodiscard]] std::size_t metadataFrom(std::size_t from) const {
        return metadata_.firstBetween(from, tags_.endFrom(kMedia, from));
    }

    /// Many unclosed media elements may share one "metadata": it is decoded once.
    std::string_view heightOf(std::size_t metadata) {
        auto& height = parser_.decodedHeights_[metadata];
        if (!height) height = heightIn(metadata_[metadata]);
        return *height;
    }

    std::string_view text_;
    CF4MParser& parser_;
    TagIndex tags_;
    NextPlace tagEnds_;
    TagAttributes bootstrapAttributes_, mediaAttributes_;
    ElementContents metadata_;
};

std::uint32_t CF4MParser::Release() noexcept {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
}

void CF4MParser::forget() noexcept {
    baseUrl.clear();
    duration = {};
    hasDrm = 0;
    hasPv = 0;
    bootstraps.clear();
    media.clear();
    decodedHeights_.clear();
}

bool CF4MParser::parse(std::string_view body) {
    forget();
    if (!body_.assign(body)) return false;
    Reader(body_.view(), *this).read();
    if (bootstraps.empty() || media.empty()) {
        forget();
        return false;
    }
    linkBootstraps();
    hideAllButTheLastOfEachHeight();
    return true;
}

/// Each media gets the first bootstrap with its id; without one, the first bootstrap.
void CF4MParser::linkBootstraps() {
    const auto byId = sortedBy(&F4MBootstrap::id, bootstraps);
    const auto before = [](const F4MBootstrap* bootstrap, std::string_view id) { return bootstrap->id < id; };
    for (F4MMedia& record : media) {
        const auto found = std::lower_bound(byId.begin(), byId.end(), record.bootstrapInfoId, before);
        const bool matches = found != byId.end() && (*found)->id == record.bootstrapInfoId;
        record.bootstrap = matches ? (*found)->data : bootstraps[0].data;
    }
}

void CF4MParser::hideAllButTheLastOfEachHeight() {
    const auto byHeight = sortedBy(&F4MMedia::height, media);
    for (std::size_t i = 0; i < byHeight.size(); ++i) {
        const bool isLast = i + 1 == byHeight.size() || byHeight[i + 1]->height != byHeight[i]->height;
        byHeight[i]->hidden = byHeight[i]->height.empty() || !isLast ? 1 : 0;
    }
}

}  // namespace zab
