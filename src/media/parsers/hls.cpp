#include "media/parsers/hls.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "binding/pieces.h"
#include "binding/text.h"
#include "media/parsers/attribute_list.h"
#include "media/parsers/whole_number.h"

namespace zab {

struct CM3UParser::decodingState {
    virtual ~decodingState() = default;

    std::uint32_t kind = kNotAPlaylist;
    std::uint32_t sawHeader = 0;
    bool pendingInf = false;
    bool pendingByteRange = false;
    bool pendingDiscontinuity = false;
    bool pendingDateTime = false;
    bool pendingKey = false;
    double duration = 0;
    std::string_view title;
    std::optional<MPLVariant> pendingVariant;
};

namespace {

enum TagId {
    kNoTag,
    kInf,
    kHeader,
    kVersion,
    kRendition,
    kStreamInf,
    kEndList,
    kTargetDuration,
    kMediaSequence,
    kPlaylistType,
    kKey,
    kDateTime,
    kByteRange,
    kMap,
    kDiscontinuity,
};

struct TagRow {
    std::string_view text;
    TagId id;
    bool wholeLine = false;  // else the tag is a prefix of its line
};

// The most frequent first. A standard "#EXT-X-ENDLIST" line is deliberately absent: only the form without the
// number sign ends the list, and the other is a comment. Held by Hls.ReadsMediaPlaylists.
constexpr TagRow kTags[] = {
    {"#EXTINF:", kInf},
    {"#EXT-X-BYTERANGE:", kByteRange},
    {"#EXT-X-PROGRAM-DATE-TIME:", kDateTime},
    {"#EXT-X-STREAM-INF:", kStreamInf},
    {"#EXT-X-MEDIA:", kRendition},
    {"#EXT-X-DISCONTINUITY", kDiscontinuity},
    {"#EXT-X-KEY:", kKey},
    {"#EXT-X-MAP:", kMap},
    {"#EXTM3U", kHeader, true},
    {"#EXT-X-VERSION:", kVersion},
    {"#EXT-X-TARGETDURATION:", kTargetDuration},
    {"#EXT-X-MEDIA-SEQUENCE:", kMediaSequence},
    {"#EXT-X-PLAYLIST-TYPE:", kPlaylistType},
    {"EXT-X-ENDLIST", kEndList, true},
};

constexpr bool noTagHidesAnother() {
    for (const auto& row : kTags)
        for (const auto& other : kTags)
            if (&row != &other && other.text.starts_with(row.text)) return false;
    return true;
}
static_assert(noTagHidesAnother());

struct Tag {
    TagId id = kNoTag;
    std::string_view rest;  // what stands behind it
};

Tag tagOf(std::string_view line) noexcept {
    if (!line.starts_with('#') && !line.starts_with('E')) return {};
    for (const auto& row : kTags)
        if (line.starts_with(row.text) && (!row.wholeLine || line.size() == row.text.size()))
            return {row.id, line.substr(row.text.size())};
    return {};
}

using Variant = CM3UParser::MPLVariant;

template <class Record>
struct TextAttribute {
    std::string_view name;
    std::string_view Record::*field;
};

constexpr TextAttribute<Variant> kVariantTexts[] = {
    {"BANDWIDTH", &Variant::bandwidth}, {"CODECS", &Variant::codecs}, {"RESOLUTION", &Variant::resolution},
    {"AUDIO", &Variant::audio},         {"VIDEO", &Variant::video},   {"SUBTITLES", &Variant::subtitles},
};

constexpr TextAttribute<MediaRendition> kRenditionTexts[] = {
    {"TYPE", &MediaRendition::type},
    {"GROUP-ID", &MediaRendition::groupId},
    {"LANGUAGE", &MediaRendition::language},
    {"NAME", &MediaRendition::name},
    {"AUTOSELECT", &MediaRendition::autoselect},
    {"FORCED", &MediaRendition::forced},
    {"CHARACTERISTICS", &MediaRendition::characteristics},
    {"SUBTITLES", &MediaRendition::subtitles},
    {"URI", &MediaRendition::uri},
};

template <class Record, std::size_t kRows>
void setText(Record& record, const TextAttribute<Record> (&rows)[kRows],
             const ListAttribute& attribute) noexcept {
    for (const auto& row : rows)
        if (row.name == attribute.name) record.*row.field = attribute.value;
}

void fill(Variant& variant, std::string_view list) noexcept {
    AttributeList attributes(list);
    ListAttribute attribute;
    while (attributes.next(attribute)) {
        if (attribute.name == "PROGRAM-ID") scanInt32(attribute.value, variant.programId);
        setText(variant, kVariantTexts, attribute);
    }
}

void fill(MediaRendition& rendition, std::string_view list) noexcept {
    AttributeList attributes(list);
    ListAttribute attribute;
    while (attributes.next(attribute)) {
        if (attribute.name == "DEFAULT" && attribute.value == "YES") rendition.isDefault = 1;
        setText(rendition, kRenditionTexts, attribute);
    }
}

/// True the first time; a flag that is already set blocks its tag.
bool raise(bool& flag) noexcept { return !std::exchange(flag, true); }

bool isSingleCodec(const Variant& variant) noexcept {
    return !variant.codecs.empty() && !contains(variant.codecs, ",");
}

/// The value of a map's URI attribute: up to its closing quote when it opens with one.
std::string_view mapUri(std::string_view value) noexcept {
    if (value.starts_with('"') || value.starts_with('\'')) value = upTo(value.substr(1), value.front());
    return withoutOuterBlanks(value);
}

using State = CM3UParser::decodingState;

void readMasterLine(std::string_view line, const Tag& tag, State& state, CM3UParser::MasterPlaylist& master) {
    if (tag.id == kHeader) {
        state.sawHeader = 1;
    } else if (tag.id == kVersion) {
        scanInt32(tag.rest, master.version);
    } else if (tag.id == kRendition) {
        state.kind = CM3UParser::kMaster;
        if (MediaRendition* rendition = master.renditions.append()) fill(*rendition, tag.rest);
    } else if (tag.id == kStreamInf && !state.pendingVariant) {
        state.kind = CM3UParser::kMaster;
        fill(state.pendingVariant.emplace(), tag.rest);
    } else if (state.pendingVariant && !line.starts_with('#')) {  // an empty line too
        state.pendingVariant->uri = line;
        if (Variant* variant = master.variants.append()) *variant = *state.pendingVariant;
        state.pendingVariant.reset();
    }
}

void appendSegment(CM3UParser::MediaPlaylist& media, std::string_view uri, double duration,
                   std::string_view title) {
    CM3UParser::MediaSegment* segment = media.segments.append();
    if (segment == nullptr) return;
    segment->title = title;
    segment->uri = uri;
    segment->duration = duration;
    media.totalDuration += duration;
}

/// False: not an initialisation map that names its file first.
bool readMap(std::string_view list, CM3UParser& parser) {
    constexpr std::string_view kUri = "URI=";
    list = withoutOuterBlanks(list);
    if (!list.starts_with(kUri)) return false;
    const std::string_view uri = mapUri(list.substr(kUri.size()));
    appendSegment(parser.media, uri, 0, {});
    const auto dot = uri.find('.');
    if (dot == std::string_view::npos || uri.substr(dot) != ".ts") parser.hasNonTsSegments = 1;
    return true;
}

void readInf(std::string_view rest, State& state) {
    const std::string_view seconds = upTo(rest, ',');
    scanDouble(seconds, state.duration);
    if (seconds.size() < rest.size()) state.title = rest.substr(seconds.size() + 1);
}

/// False: the tag is unknown here, or its pending flag blocks it.
bool readMediaTag(const Tag& tag, State& state, CM3UParser& parser) {
    CM3UParser::MediaPlaylist& media = parser.media;
    switch (tag.id) {
        case kEndList: media.endList = true; return true;
        case kTargetDuration: scanDouble(tag.rest, media.targetDuration); return true;
        case kMediaSequence: scanInt64(tag.rest, media.mediaSequence); return true;
        case kPlaylistType: return true;
        case kKey: state.pendingKey = true; return true;
        case kDateTime: return raise(state.pendingDateTime);
        case kByteRange: return raise(state.pendingByteRange);
        case kMap: return !state.pendingInf && readMap(tag.rest, parser);
        case kDiscontinuity: return raise(state.pendingDiscontinuity);
        case kInf:
            if (!raise(state.pendingInf)) return false;
            readInf(tag.rest, state);
            return true;
        default: return false;
    }
}

void readMediaUri(std::string_view line, State& state, CM3UParser::MediaPlaylist& media) {
    if (state.pendingInf) {
        appendSegment(media, line, std::exchange(state.duration, 0), std::exchange(state.title, {}));
        state.pendingInf = false;
        return;
    }
    // Only a URI line without "#EXTINF:" clears one of these, so a tag counts again only after such a line.
    for (bool* flag :
         {&state.pendingByteRange, &state.pendingDiscontinuity, &state.pendingDateTime, &state.pendingKey})
        if (std::exchange(*flag, false)) return;
}

void readMediaLine(std::string_view line, const Tag& tag, State& state, CM3UParser& parser) {
    if (tag.id == kHeader) {
        state.sawHeader = 1;
    } else if (tag.id == kVersion) {
        scanInt32(tag.rest, parser.media.version);
    } else if (readMediaTag(tag, state, parser)) {
        state.kind = CM3UParser::kMedia;
    } else if (!line.empty() && !line.starts_with('#')) {
        readMediaUri(line, state, parser.media);
    }
}

bool byGroup(const MediaRendition* a, const MediaRendition* b) noexcept { return a->groupId < b->groupId; }

}  // namespace

void CM3UParser::forget() noexcept {
    master.variants.clear();
    master.renditions.clear();
    master.version = 0;
    media.segments.clear();
    media.targetDuration = 0;
    media.mediaSequence = 0;
    media.endList = false;
    media.version = 0;
    media.totalDuration = 0;
    kind = kNotAPlaylist;
    takeAllVariants = 0;
    hasNonTsSegments = 0;
    cursor = 0;
    renditionsByGroup_.clear();
}

bool CM3UParser::parse(std::string_view body) {
    forget();
    if (!body_.assign(body)) return false;
    decodingState state;
    for (const std::string_view wholeLine : piecesOf(body_.view(), '\n')) {
        const std::string_view line = withoutOuterBlanks(wholeLine);
        const Tag tag = tagOf(line);
        readMasterLine(line, tag, state, master);
        readMediaLine(line, tag, state, *this);
    }
    kind = state.kind;
    if (kind == kMaster) takeAllVariants = offersAllVariants() ? 1 : 0;
    return kind != kNotAPlaylist;
}

bool CM3UParser::offersAllVariants() const noexcept {
    return !master.renditions.empty() ||
           std::all_of(master.variants.begin(), master.variants.end(), isSingleCodec);
}

std::string_view CM3UParser::audioOf(std::string_view group) {
    if (renditionsByGroup_.empty()) {
        renditionsByGroup_.reserve(master.renditions.size());
        for (const MediaRendition& rendition : master.renditions) renditionsByGroup_.push_back(&rendition);
        std::stable_sort(renditionsByGroup_.begin(), renditionsByGroup_.end(), byGroup);
    }
    MediaRendition wanted;
    wanted.groupId = group;
    const auto first = std::lower_bound(renditionsByGroup_.begin(), renditionsByGroup_.end(), &wanted, byGroup);
    return first != renditionsByGroup_.end() && (*first)->groupId == group ? (*first)->uri : std::string_view{};
}

bool CM3UParser::getNextStream(Stream& stream) {
    stream = {};
    if (kind == kMedia) {
        if (cursor != 0) return false;
        ++cursor;
        durationText_ = std::to_string(wholePart(media.totalDuration).value_or(0));
        stream.durationText = durationText_;
        return true;
    }
    if (kind != kMaster) return false;
    while (cursor < master.variants.size()) {
        const MPLVariant& variant = master.variants[cursor++];
        if (takeAllVariants == 0 && isSingleCodec(variant)) continue;
        const auto x = variant.resolution.find('x');
        stream.uri = variant.uri;
        if (x != std::string_view::npos) stream.height = variant.resolution.substr(x + 1);
        stream.bandwidth = variant.bandwidth;
        if (!variant.audio.empty()) stream.audioUri = audioOf(variant.audio);
        return true;
    }
    return false;
}

}  // namespace zab
