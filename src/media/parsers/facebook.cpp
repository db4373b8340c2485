// The walk over the blocks of video data, and the ISO 8601 duration.

#include "media/parsers/facebook.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <utility>

#include "binding/text.h"
#include "media/parsers/replace.h"

namespace zab {
namespace {

using View = std::u16string_view;

constexpr std::size_t kNone = View::npos;
constexpr std::size_t kMarkerLength = 10;  // "videoData:"; what stands behind a quoted one starts two earlier
constexpr View kDurationEnds = u"\"' \\";

struct Unit {
    char16_t letter;
    bool ofTime;  // behind the "T"
    std::uint32_t seconds;
};
constexpr std::uint32_t kDay = 24 * 60 * 60;
constexpr Unit kUnits[] = {
    {u'Y', false, 365 * kDay}, {u'M', false, 30 * kDay}, {u'D', false, kDay},
    {u'H', true, 60 * 60},     {u'M', true, 60},         {u'S', true, 1},
};

/// The unit of this letter; in the time part a fraction's mark stands for the seconds.
const Unit* unitOf(char16_t letter, bool ofTime) noexcept {
    if (ofTime && (letter == u'.' || letter == u',')) letter = u'S';
    const auto found = std::ranges::find_if(
        kUnits, [=](const Unit& unit) { return unit.letter == letter && unit.ofTime == ofTime; });
    return found == std::end(kUnits) ? nullptr : found;
}

/// The seconds of a whole duration, its end taken off. The last of a repeated unit counts; what follows a
/// fraction's mark does not.
std::uint32_t secondsOf(View duration) noexcept {
    if (!duration.starts_with(u'P')) return 0;
    duration.remove_prefix(1);
    std::array<std::uint32_t, std::size(kUnits)> numbers{};
    for (bool ofTime = false; !duration.empty();) {
        if (!ofTime && duration.front() == u'T') {
            ofTime = true;
            duration.remove_prefix(1);
            continue;
        }
        const auto number = leadingDigits<char16_t>(duration, UINT32_MAX);
        const auto letter = duration.find_first_not_of(u"0123456789");
        const Unit* unit = number && letter != kNone ? unitOf(duration[letter], ofTime) : nullptr;
        if (unit == nullptr) return 0;
        numbers[static_cast<std::size_t>(unit - kUnits)] = static_cast<std::uint32_t>(*number);
        if (duration[letter] != unit->letter) break;
        duration.remove_prefix(letter + 1);
    }
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) sum += numbers[i] * kUnits[i].seconds;
    return sum;
}

std::size_t findWord(View text, View word, std::size_t from) noexcept { return text.find(word, from); }
std::size_t findAnyOf(View text, View set, std::size_t from) noexcept { return text.find_first_of(set, from); }

/// The next place of a word. Asked for from positions that never go back, it searches the text once in all.
class NextWord {
  public:
    using Find = std::size_t (*)(View text, View word, std::size_t from) noexcept;

    NextWord(View text, View word, Find find = findWord) noexcept
        : text_(text), word_(word), find_(find), place_(find(text, word, 0)) {}

    std::size_t from(std::size_t position) noexcept {
        if (place_ != kNone && place_ < position) place_ = find_(text_, word_, position);
        return place_;
    }
    [[nodiscard]] std::size_t length() const noexcept { return word_.size(); }

  private:
    View text_, word_;
    Find find_;
    std::size_t place_;
};

/// The quoted value of the next key of one spelling, read once for each place of the key.
class NextValue {
  public:
    NextValue(View text, View key, std::deque<std::u16string>& store) noexcept
        : text_(text), key_(text, key), store_(store) {}

    /// Nothing when the key is absent ahead or has no quoted value.
    std::optional<View> from(std::size_t position) {
        const std::size_t place = key_.from(position);
        if (place != readAt_) {
            readAt_ = place;
            value_ = read(place + key_.length());
        }
        return value_;
    }

  private:
    std::optional<View> read(std::size_t at) {
        const auto open = readAt_ == kNone ? kNone : text_.find_first_not_of(u" \t\r\n", at);
        if (open == kNone || (text_[open] != u'"' && text_[open] != u'\'')) return std::nullopt;
        const auto close = text_.find(text_[open], open + 1);
        if (close == kNone) return std::nullopt;
        const View written = text_.substr(open + 1, close - open - 1);
        return store_.emplace_back(replaceAll(replaceAll(written, u"\\/", u'/'), u"\\u0025", u'%'));
    }

    View text_;
    NextWord key_;
    std::deque<std::u16string>& store_;
    std::size_t readAt_ = kNone;
    std::optional<View> value_;
};

/// One word in its two spellings: the quoted one counts only when the bare one does not.
template <class Next>
struct BareOrQuoted {
    Next bare, quoted;

    std::optional<View> valueFrom(std::size_t position) {
        const auto value = bare.from(position);
        return value ? value : quoted.from(position);
    }
    std::size_t placeFrom(std::size_t position) noexcept {
        const auto place = bare.from(position);
        return place != kNone ? place : quoted.from(position);
    }
};

/// The play time that the DASH manifest of a block tells.
class NextDuration {
  public:
    explicit NextDuration(View text) noexcept
        : text_(text),
          manifest_(text, u"dash_manifest"),
          word_(text, u"mediaPresentationDuration"),
          end_(text, kDurationEnds, findAnyOf) {}

    /// 0 when manifest and duration do not stand, in this order, between `block` and `nextBlock`.
    std::uint32_t between(std::size_t block, std::size_t nextBlock) noexcept {
        const std::size_t manifest = manifest_.from(block);
        if (manifest == kNone || manifest >= nextBlock) return 0;
        const std::size_t word = word_.from(manifest + manifest_.length());
        if (word == kNone || word >= nextBlock) return 0;
        const std::size_t start = text_.find_first_not_of(u"\\'\"=", word + word_.length());
        const std::size_t end = start == kNone ? kNone : end_.from(start);
        return end == kNone ? 0 : secondsOf(text_.substr(start, end - start));
    }

  private:
    View text_;
    NextWord manifest_, word_, end_;
};

}  // namespace

bool CFacebookParser::parse(std::u16string_view text) {
    text = upToNul(text);
    BareOrQuoted<NextWord> blocks{{text, u"videoData:"}, {text, u"\"videoData\":"}};
    BareOrQuoted<NextValue> hd{{text, u"hd_src:", urls_}, {text, u"\"hd_src\":", urls_}};
    BareOrQuoted<NextValue> sd{{text, u"sd_src:", urls_}, {text, u"\"sd_src\":", urls_}};
    NextDuration duration(text);
    for (std::size_t marker = blocks.placeFrom(0); marker != kNone;) {
        const std::size_t block = marker + kMarkerLength;
        const auto hdUrl = hd.valueFrom(block);
        const auto sdUrl = sd.valueFrom(block);
        marker = blocks.placeFrom(block);
        if (!hdUrl && !sdUrl) continue;
        const std::uint32_t seconds = duration.between(block, marker);
        if (hdUrl) addShared(*hdUrl, seconds, true);
        if (sdUrl) addShared(*sdUrl, seconds, false);
    }
    return !entries_.empty();
}

std::size_t CFacebookParser::addEntry(std::u16string url, std::uint64_t durationSeconds, bool isHd) {
    return addShared(urls_.emplace_back(std::move(url)), durationSeconds, isHd);
}

std::size_t CFacebookParser::addShared(std::u16string_view url, std::uint64_t durationSeconds, bool isHd) {
    entries_.push_back({.url = url, .durationSeconds = durationSeconds, .isHd = isHd ? 1u : 0u});
    return entries_.size() - 1;
}

std::uint32_t isoDurationSeconds(std::u16string_view text) noexcept {
    const auto end = findAnyOf(text, kDurationEnds, 0);
    return end == kNone ? 0 : secondsOf(text.substr(0, end));
}

}  // namespace zab
