#include "zabprobe/exchange_reader.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <stdexcept>

#include "binding/text.h"
#include "web/encoding.h"
#include "web/url.h"

namespace zabprobe {
namespace {

using Json = nlohmann::ordered_json;

/// The input is JSON, but not of the form that was asked for.
struct AnotherForm {};

constexpr std::uint32_t kPageOfTheWindow = zab::kDocumentLoad | zab::kTopLevelLoad;

/// A member of an object, or null where it, or the object, is absent.
const Json& memberOf(const Json& object, const char* name) {
    static const Json kNone;
    if (object.is_null()) return kNone;
    if (!object.is_object()) throw AnotherForm{};
    const auto found = object.find(name);
    return found == object.end() ? kNone : *found;
}

void readText(const Json& value, std::string& text) {
    if (value.is_null()) return;
    if (!value.is_string()) throw AnotherForm{};
    text = value.get_ref<const std::string&>();
}

void readNumber(const Json& value, std::int64_t& number) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (value.is_null()) return;
    if (!value.is_number()) throw AnotherForm{};
    if (value.is_number_unsigned()) {
        number = static_cast<std::int64_t>(
            std::min(value.get<std::uint64_t>(), static_cast<std::uint64_t>(Limits::max())));
    } else if (value.is_number_integer()) {
        number = value.get<std::int64_t>();
    } else {
        constexpr double kBeyond = 9223372036854775808.0;  // 2^63
        const double real = value.get<double>();
        number = real >= kBeyond    ? Limits::max()
                 : real >= -kBeyond ? static_cast<std::int64_t>(real)
                                    : Limits::min();
    }
}

/// Headers are arrays of [name, value] here, and of objects with these two members in captures.
template <class Name, class Value>
void readHeaders(const Json& list, Headers& headers, Name name, Value value) {
    if (list.is_null()) return;
    if (!list.is_array()) throw AnotherForm{};
    for (const Json& header : list) {
        auto& [headerName, headerValue] = headers.emplace_back();
        readText(name(header), headerName);
        readText(value(header), headerValue);
    }
}

void readHarHeaders(const Json& list, Headers& headers) {
    readHeaders(
        list, headers, [](const Json& header) -> const Json& { return memberOf(header, "name"); },
        [](const Json& header) -> const Json& { return memberOf(header, "value"); });
}

void readOwnHeaders(const Json& list, Headers& headers) {
    const auto element = [](std::size_t i) {
        return [i](const Json& header) -> const Json& {
            if (!header.is_array() || header.size() != 2) throw AnotherForm{};
            return header[i];
        };
    };
    readHeaders(list, headers, element(0), element(1));
}

const std::string* headerOf(const Headers& headers, std::string_view name) {
    const auto found = std::find_if(headers.begin(), headers.end(), [name](const auto& header) {
        return zab::equalsIgnoringCase(header.first, name);
    });
    return found == headers.end() ? nullptr : &found->second;
}

Exchange exchangeOf(const Json& json) {
    if (!json.is_object()) throw AnotherForm{};
    Exchange exchange;
    std::int64_t loadFlags = 0;
    readText(memberOf(json, "url"), exchange.url);
    readNumber(memberOf(json, "status"), exchange.status);
    readText(memberOf(json, "method"), exchange.method);
    readNumber(memberOf(json, "loadFlags"), loadFlags);
    readNumber(memberOf(json, "bodySize"), exchange.bodySize);
    readOwnHeaders(memberOf(json, "requestHeaders"), exchange.requestHeaders);
    readOwnHeaders(memberOf(json, "responseHeaders"), exchange.responseHeaders);
    exchange.loadFlags = static_cast<std::uint32_t>(loadFlags);
    return exchange;
}

/// What a capture tells of how the browser loaded an entry: its fetch metadata, else the recorder's own word,
/// else what the request accepts.
std::uint32_t loadFlagsOf(const Headers& requestHeaders, const Json& resourceType) {
    if (const std::string* destination = headerOf(requestHeaders, "Sec-Fetch-Dest")) {
        if (*destination == "document") return kPageOfTheWindow;
        return *destination == "iframe" || *destination == "frame" ? zab::kDocumentLoad : 0;
    }
    if (!resourceType.is_null()) return resourceType == "document" ? kPageOfTheWindow : 0;
    const std::string* accept = headerOf(requestHeaders, "Accept");
    return accept != nullptr && zab::startsWithIgnoringCase(*accept, "text/html") ? kPageOfTheWindow : 0;
}

/// Milliseconds since 1970 of "YYYY-MM-DDThh:mm:ss.fff" and a zone, "Z" or "+hh:mm" (ISO 8601); 0 of any other
/// text.
std::int64_t momentOf(std::string_view text) {
    constexpr std::string_view kSeconds = "YYYY-MM-DDThh:mm:ss", kZone = "+hh:mm";
    if (text.size() < kSeconds.size() + 1) return 0;
    const auto field = [text](std::size_t at, std::size_t digits) {
        return static_cast<int>(zab::leadingDigits(text.substr(at, digits), 9999).value_or(0));
    };
    using namespace std::chrono;
    const year_month_day date{year{field(0, 4)}, month{static_cast<unsigned>(field(5, 2))},
                              day{static_cast<unsigned>(field(8, 2))}};
    if (!date.ok()) return 0;
    milliseconds moment =
        sys_days{date}.time_since_epoch() + hours{field(11, 2)} + minutes{field(14, 2)} + seconds{field(17, 2)};
    if (text[kSeconds.size()] == '.') moment += milliseconds{field(kSeconds.size() + 1, 3)};
    const std::size_t zone = text.size() - kZone.size();
    const minutes offset = hours{field(zone + 1, 2)} + minutes{field(zone + 4, 2)};
    if (text[zone] == '+') moment -= offset;
    if (text[zone] == '-') moment += offset;
    return moment.count();
}

void readMoments(const Json& entry, Exchange& exchange) {
    std::string started;
    std::int64_t tookMs = 0, receiveMs = 0;  // -1: unknown
    readText(memberOf(entry, "startedDateTime"), started);
    readNumber(memberOf(entry, "time"), tookMs);
    readNumber(memberOf(memberOf(entry, "timings"), "receive"), receiveMs);
    constexpr std::int64_t kLongestMs = std::int64_t{1} << 40;
    tookMs = std::clamp<std::int64_t>(tookMs, 0, kLongestMs);
    exchange.endedMs = momentOf(started) + tookMs;
    exchange.arrivedMs = exchange.endedMs - std::clamp<std::int64_t>(receiveMs, 0, tookMs);
}

std::optional<std::string> bodyOf(const Json& content) {
    const Json& text = memberOf(content, "text");
    if (text.is_null()) return std::nullopt;
    std::string body, encoding;
    readText(text, body);
    readText(memberOf(content, "encoding"), encoding);
    return zab::equalsIgnoringCase(encoding, "base64") ? zab::Base64Decode(body) : body;
}

Exchange exchangeOfHarEntry(const Json& entry) {
    Exchange exchange;
    const Json& request = memberOf(entry, "request");
    const Json& response = memberOf(entry, "response");
    readText(memberOf(request, "url"), exchange.url);
    readText(memberOf(request, "method"), exchange.method);
    readHarHeaders(memberOf(request, "headers"), exchange.requestHeaders);
    readNumber(memberOf(request, "bodySize"), exchange.bodySize);
    std::string body;
    readText(memberOf(memberOf(request, "postData"), "text"), body);
    exchange.bodySize = std::max(exchange.bodySize, static_cast<std::int64_t>(body.size()));
    readNumber(memberOf(response, "status"), exchange.status);
    readHarHeaders(memberOf(response, "headers"), exchange.responseHeaders);
    exchange.responseBody = bodyOf(memberOf(response, "content"));
    exchange.loadFlags = loadFlagsOf(exchange.requestHeaders, memberOf(entry, "_resourceType"));
    readText(memberOf(entry, "pageref"), exchange.page);
    readMoments(entry, exchange);
    return exchange;
}

/// Whether a browser notifies its extensions of such a request; not of those that it answers itself ("data:",
/// "blob:").
bool isNotified(std::string_view url) {
    const std::string_view scheme = zab::schemeOf(url);
    return scheme.empty() || zab::defaultPortOf(zab::lowered(scheme)) != 0;
}

/// Follows the parser to log.entries[] and log.pages[], and hands out each element as soon as it is whole. All
/// else is dropped.
class HarWalk {
  public:
    HarWalk(const ExchangeVisitor& visit, const PageVisitor& visitPage)
        : visit_(visit), visitPage_(visitPage) {}

    bool operator()(int depth, Json::parse_event_t event, Json& parsed) {
        using Event = Json::parse_event_t;
        if (event == Event::key && depth == kInRoot) return inLog_ = parsed == "log";
        if (event == Event::key && depth == kInLog) return (list_ = listOf(parsed)) != List::other;
        if (event == Event::array_start && depth == kInLog && list_ != List::other) inList_ = true;
        if (event == Event::array_end && depth == kInLog) inList_ = false;
        if (inList_ && list_ == List::entries) sawEntries_ = true;
        if (!inList_ || depth != kElement) return true;
        if (event == Event::value || event == Event::array_end) throw AnotherForm{};
        if (event != Event::object_end) return true;
        if (list_ == List::entries) {
            const Exchange exchange = exchangeOfHarEntry(parsed);
            if (isNotified(exchange.url)) visit_(exchange);
        } else {
            visitPageOf(parsed);
        }
        return false;
    }

    [[nodiscard]] bool sawEntries() const { return sawEntries_; }

  private:
    enum class List { other, pages, entries };
    static constexpr int kInRoot = 1, kInLog = 2, kElement = 3;  // levels of nesting

    [[nodiscard]] List listOf(const Json& key) const {
        if (inLog_ && key == "entries") return List::entries;
        return inLog_ && visitPage_ && key == "pages" ? List::pages : List::other;
    }

    void visitPageOf(const Json& page) const {
        std::string name, title;
        readText(memberOf(page, "id"), name);
        readText(memberOf(page, "title"), title);
        visitPage_(name, title);
    }

    const ExchangeVisitor& visit_;
    const PageVisitor& visitPage_;  // empty: pages are dropped too
    bool inLog_ = false, inList_ = false, sawEntries_ = false;
    List list_ = List::other;
};

/// Deeper than any capture, and shallow enough for whatever the library does with each level.
constexpr int kDeepest = 200;

Json parse(std::string_view text, const Json::parser_callback_t& callback = nullptr) {
    const auto notTooDeep = [&](int depth, Json::parse_event_t event, Json& parsed) {
        if (depth > kDeepest) throw std::runtime_error("this JSON is nested too deeply");
        return !callback || callback(depth, event, parsed);
    };
    try {
        return Json::parse(text.begin(), text.end(), notTooDeep);
    } catch (const Json::parse_error& error) {
        throw std::runtime_error("this is no JSON: wrong at byte " + std::to_string(error.byte));
    } catch (const Json::out_of_range&) {
        throw std::runtime_error("this JSON has a number that is out of range");
    }
}

zab::Decision decideContent(const Exchange& exchange, std::uint32_t status, const zab::SettingsView& settings,
                            zab::CapturedHeaders& scratch) {
    scratch.clear();
    scratch.url = zab::upToNul(exchange.url);
    for (const auto& [name, value] : exchange.responseHeaders) zab::visitHeader(scratch, name, value);
    scratch.postBodyUnavailable = zab::equalsIgnoringCase(exchange.method, "POST") &&
                                  exchange.bodySize > static_cast<std::int64_t>(zab::kLargestPostBody);
    return zab::decide(zab::factsOf(scratch, status, exchange.loadFlags), settings);
}

}  // namespace

bool visitExchanges(std::string_view json, const ExchangeVisitor& visit) {
    const Json all = parse(json);
    try {
        if (!all.is_array()) return false;
        for (const Json& one : all) visit(exchangeOf(one));
    } catch (const AnotherForm&) {
        return false;
    }
    return true;
}

std::string_view Exchange::requestHeader(std::string_view name) const {
    const std::string* value = headerOf(requestHeaders, name);
    return value == nullptr ? std::string_view{} : *value;
}

bool visitHarEntries(std::string_view json, const ExchangeVisitor& visit) { return visitHar(json, visit, {}); }

bool visitHar(std::string_view json, const ExchangeVisitor& visit, const PageVisitor& visitPage) {
    HarWalk walk(visit, visitPage);
    try {
        parse(json, std::ref(walk));
    } catch (const AnotherForm&) {
        return false;
    }
    return walk.sawEntries();
}

zab::Decision decideExchange(const Exchange& exchange, const zab::SettingsView& settings,
                             zab::CapturedHeaders& scratch) {
    const zab::Decision early = zab::decideRequest({zab::upToNul(exchange.url), exchange.loadFlags}, settings);
    if (early.outcome != zab::Outcome::browser) return early;
    const auto status = static_cast<std::uint32_t>(std::clamp<std::int64_t>(exchange.status, 0, UINT32_MAX));
    if (zab::examinationOf(status) != zab::Examination::redirect)
        return decideContent(exchange, status, settings, scratch);
    const std::string* location = headerOf(exchange.responseHeaders, "Location");
    return zab::decideRedirect(location == nullptr ? std::string_view{} : zab::upToNul(*location), settings);
}

}  // namespace zabprobe
