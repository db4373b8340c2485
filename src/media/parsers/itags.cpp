// The itag table and what is read from it.

#include "media/parsers/itags.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace zab {
namespace {

enum class Kind { progressive, video, audio };
enum class Offered { always, unlessSkipFlv, ifWebm, ifAdaptive, never };

/// The progressive itags with the same picture.
struct Twins {
    std::array<std::uint32_t, 2> itags{};
    bool any = false;
};
constexpr Twins kAny{{}, true};
constexpr Twins kNone{};
constexpr Twins same(std::uint32_t first, std::uint32_t second = 0) { return {{first, second}}; }

struct Row {
    std::uint32_t itag;
    std::u16string_view extension;  // empty: the row describes nothing
    std::string_view describedContainer;
    std::string_view label;  // empty: no label
    Offered offered;
    std::string_view container;
    Kind kind;
    Twins twins;
};

using enum Offered;
using enum Kind;

// Deliberate, because menus and stored choices depend on the exact texts: WebM adaptive tracks are called
// "MKV", for they are joined into a Matroska file; 266, 298 and 299 are described in lower case; 264 is no
// "1440p" and 315 has no "4". Held by ItagTable.*.
constexpr Row kRows[] = {
    {5, u"flv", "FLV", "240p", unlessSkipFlv, "FLV", progressive, kAny},
    {17, u"3gp", "3GP", "144p", always, "3GP", progressive, kAny},
    {18, u"mp4", "MP4", "360p", always, "MP4", progressive, kAny},
    {22, u"mp4", "MP4", "720p HD", always, "MP4", progressive, kAny},
    {34, u"flv", "FLV", "360p", unlessSkipFlv, "FLV", progressive, kAny},
    {35, u"flv", "FLV", "480p", unlessSkipFlv, "FLV", progressive, kAny},
    {36, u"3gp", "3GP", "240p", always, "3GP", progressive, kAny},
    {37, u"mp4", "MP4", "1080p HD", always, "MP4", progressive, kAny},
    {38, u"mp4", "MP4", "Ultra HD", always, "MP4", progressive, kAny},
    {43, u"webm", "WEBM", "360p", ifWebm, "WEBM", progressive, kAny},
    {44, u"webm", "WEBM", "480p", ifWebm, "WEBM", progressive, kAny},
    {45, u"webm", "WEBM", "720p HD", ifWebm, "WEBM", progressive, kAny},
    {46, u"webm", "WEBM", "1080p HD", ifWebm, "WEBM", progressive, kAny},
    {82, u"mp4", "MP4", "360p 3D", always, "MP4", progressive, kAny},
    {83, u"mp4", "MP4", "240p 3D", always, "MP4", progressive, kAny},
    {84, u"mp4", "MP4", "720p HD 3D", always, "MP4", progressive, kAny},
    {85, u"mp4", "MP4", "1080p 3D", always, "MP4", progressive, kAny},
    {100, u"webm", "WEBM", "360p 3D", ifWebm, "WEBM", progressive, kAny},
    {101, u"webm", "WEBM", "360p 3D", ifWebm, "WEBM", progressive, kAny},
    {102, u"webm", "WEBM", "720p HD 3D", ifWebm, "WEBM", progressive, kAny},
    {133, u"mp4", "MP4", "240p", ifAdaptive, "MP4", video, same(5, 36)},
    {134, u"mp4", "MP4", "360p", ifAdaptive, "MP4", video, same(18)},
    {135, u"mp4", "MP4", "480p", ifAdaptive, "MP4", video, same(35)},
    {136, u"mp4", "MP4", "720p HD", ifAdaptive, "MP4", video, same(22)},
    {137, u"mp4", "MP4", "1080p HD", ifAdaptive, "MP4", video, same(37)},
    {138, u"mp4", "MP4", "Ultra HD", ifAdaptive, "MP4", video, same(38)},
    {139, u"", "", "", never, "MP4", audio, kAny},
    {140, u"", "", "", never, "MP4", audio, kAny},
    {141, u"", "", "", never, "MP4", audio, kAny},
    {160, u"mp4", "MP4", "144p", ifAdaptive, "MP4", video, same(17)},
    {171, u"MKV", "MKV", "", never, "MKV", audio, kAny},
    {172, u"MKV", "MKV", "", never, "MKV", audio, kAny},
    {242, u"MKV", "MKV", "240p", never, "MKV", video, kAny},
    {243, u"MKV", "MKV", "360p", never, "MKV", video, kAny},
    {244, u"MKV", "MKV", "480p", never, "MKV", video, kAny},
    {245, u"MKV", "MKV", "480p", never, "MKV", video, kAny},
    {246, u"MKV", "MKV", "480p", never, "MKV", video, kAny},
    {247, u"MKV", "MKV", "720p HD", never, "MKV", video, kAny},
    {248, u"MKV", "MKV", "1080p HD", never, "MKV", video, kAny},
    {249, u"", "", "", never, "MKV", audio, kAny},
    {250, u"", "", "", never, "MKV", audio, kAny},
    {251, u"", "", "", never, "MKV", audio, kAny},
    {264, u"mp4", "MP4", "1080p HD, high bitrate", ifAdaptive, "MP4", video, kNone},
    {266, u"mp4", "mp4", "2160p 4K", ifAdaptive, "MP4", video, same(38)},
    {271, u"MKV", "MKV", "1440p HD", never, "MKV", video, kAny},
    {272, u"MKV", "MKV", "2160p 4K", never, "MKV", video, kAny},
    {278, u"MKV", "MKV", "144p", never, "MKV", video, kAny},
    {298, u"mp4", "mp4", "720p HD, 60fps", ifAdaptive, "MP4", video, kNone},
    {299, u"mp4", "mp4", "1080p HD, 60fps", ifAdaptive, "MP4", video, kNone},
    {302, u"MKV", "MKV", "720p HD, 60fps", never, "MKV", video, kNone},
    {303, u"MKV", "MKV", "1080p HD, 60fps", never, "MKV", video, kNone},
    {308, u"MKV", "MKV", "1440p HD, 60fps", never, "MKV", video, kNone},
    {313, u"MKV", "MKV", "2160p 4K", never, "MKV", video, kNone},
    {315, u"MKV", "MKV", "2160p K, 60fps", never, "MKV", video, kNone},
};

// Strictly ascending, so unique too: rowOf searches by halving.
static_assert(std::ranges::is_sorted(kRows, std::ranges::less_equal{}, &Row::itag));
static_assert(std::ranges::all_of(kRows, [](const Row& row) {
    return row.extension.empty() ? row.offered == never && row.label.empty() : !row.describedContainer.empty();
}));
static_assert(std::ranges::all_of(kRows, [](const Row& row) { return row.kind == video || row.twins.any; }));

const Row* rowOf(std::uint32_t itag) noexcept {
    const Row* row = std::ranges::lower_bound(kRows, itag, {}, &Row::itag);
    return row != std::end(kRows) && row->itag == itag ? row : nullptr;
}

bool isOffered(Offered offered, const ItagWishes& wishes) noexcept {
    switch (offered) {
        case always: return true;
        case unlessSkipFlv: return !wishes.skipFlv;
        case ifWebm: return wishes.webm;
        case ifAdaptive: return wishes.adaptive;
        case never: break;
    }
    return false;
}

// Videos for which the best AAC track ends the search for an audio track, by that track's itag.
constexpr std::uint32_t kContentWith141[] = {135, 136, 137, 138, 264, 266, 298, 299};
constexpr std::uint32_t kContentWith140[] = {133, 134, 160};
constexpr std::uint32_t kOpusVideos[] = {303, 308, 313, 315};

template <std::size_t N>
bool isOneOf(std::uint32_t itag, const std::uint32_t (&list)[N]) noexcept {
    return std::ranges::find(list, itag) != std::end(list);
}

}  // namespace

std::optional<std::string_view> itagContainer(std::uint32_t itag) noexcept {
    const Row* row = rowOf(itag);
    return row == nullptr ? std::nullopt : std::optional(row->container);
}

bool itagDescribe(std::uint32_t itag, const ItagWishes& wishes, ItagDescription& description) noexcept {
    const Row* row = rowOf(itag);
    if (row == nullptr || row->extension.empty()) return false;
    if (row->offered == unlessSkipFlv && wishes.skipFlv) return false;
    description.extension = row->extension;
    description.container = row->describedContainer;
    if (!row->label.empty()) description.label = row->label;
    return isOffered(row->offered, wishes);
}

int isAdaptiveVideo(std::uint32_t itag, int otherwise) noexcept {
    const Row* row = rowOf(itag);
    if (row == nullptr || row->kind == progressive) return otherwise;
    return row->kind == video ? 1 : 0;
}

bool hasTwin(std::uint32_t progressiveItag, std::uint32_t adaptiveItag) noexcept {
    const Row* row = rowOf(adaptiveItag);
    if (row == nullptr || row->twins.any) return true;
    return progressiveItag != 0 &&
           std::ranges::find(row->twins.itags, progressiveItag) != row->twins.itags.end();
}

AudioPairing::AudioPairing(std::uint32_t videoItag) noexcept
    : video_(videoItag), opusAllowed_(isOneOf(videoItag, kOpusVideos)) {}

bool AudioPairing::offer(std::uint32_t audioItag) noexcept {
    const bool opusChosen = chosen_ == 250 || chosen_ == 249;
    bool take = false;
    switch (audioItag) {
        case 251: take = done_ = opusAllowed_; break;
        case 250: take = opusAllowed_; break;
        case 249: take = opusAllowed_ && chosen_ != 250; break;
        case 141:
            take = !opusChosen;
            done_ = take && isOneOf(video_, kContentWith141);
            break;
        case 140:
            take = !opusChosen;
            done_ = take && isOneOf(video_, kContentWith140);
            break;
        case 139: take = chosen_ == 0; break;
        default: break;
    }
    if (take) chosen_ = audioItag;
    return take;
}

}  // namespace zab
