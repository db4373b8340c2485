#include "zabprobe/page_replay.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "binding/interface_ptr.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "intercept/load_types.h"
#include "media/capture/f4f_drm_checker.h"
#include "media/parsers/hds.h"
#include "media/parsers/hls.h"
#include "settings/message_texts.h"
#include "ui/menu_labels.h"
#include "ui/menu_order.h"
#include "web/url.h"
#include "zabprobe/shown.h"
#include "zabprobe/text_json.h"

namespace zabprobe {
namespace {

bool isHtml(std::string_view contentType) {
    return zab::startsWithIgnoringCase(contentType, "text/html") ||
           zab::startsWithIgnoringCase(contentType, "application/xhtml+xml");
}

/// A page, or a frame of one, that the browser shows.
bool isDocument(const KeptExchange& exchange) {
    return (exchange.loadFlags & zab::kDocumentLoad) != 0 &&
           zab::examinationOf(exchange.decision.status) == zab::Examination::content &&
           exchange.decision.outcome != zab::Outcome::transfer && isHtml(exchange.headers.contentType);
}

zab::Bytes bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

bool isProtectedManifest(std::string_view body) {
    const zab::InterfacePtr<zab::CF4MParser> parser(new zab::CF4MParser);
    return parser->parse(body) && (parser->hasDrm != 0 || parser->hasPv != 0);
}

bool isProtected(zab::MediaKind kind, std::string_view body) {
    if (kind == zab::MediaKind::hds) return isProtectedManifest(body);
    if (kind != zab::MediaKind::hdsFragment) return false;
    zab::CF4FDrmChecker checker;
    checker.feed(bytesOf(body));
    return !checker.isPlayable();
}

bool isMediaPlaylist(zab::MediaKind kind, std::string_view body) {
    zab::CM3UParser parser;
    return kind == zab::MediaKind::hls && parser.parse(body) && parser.kind == zab::CM3UParser::kMedia &&
           !parser.media.segments.empty();
}

bool isCut(const zab::Decision& decision, std::string_view body) {
    zab::BodyCollector collector(decision.listener, decision.contentLength);
    collector.add(body);
    return !collector.whole();
}

bool needsLibrary(zab::MediaKind kind) { return kind == zab::MediaKind::dash || kind == zab::MediaKind::sniff; }

/// Why a response that the module looked at gave nothing. The certain first; `page` is as it was then.
std::string_view reasonOfNothing(const KeptExchange& exchange, const Exchange& told,
                                 const zab::OfferedMedia& page) {
    const zab::MediaKind kind = exchange.decision.listener;
    if (page.streams().isPart(exchange.headers.url)) return "It is a segment of a stream.";
    if (kind == zab::MediaKind::none) return "Nothing was found in it.";
    if (!told.responseBody) return "The capture does not hold this body.";
    if (isCut(exchange.decision, *told.responseBody))
        return "The body was cut: it is shorter than its length, or longer than bodies of its kind are read.";
    if (isProtected(kind, *told.responseBody)) return "The stream is protected.";
    if (isMediaPlaylist(kind, *told.responseBody))
        return "The playlist belongs to a stream that is held already.";
    if (needsLibrary(kind)) return "Its kind is read by a library of the download manager, which is not here.";
    return "Nothing was found in it.";
}

bool holds(const zab::OfferedMedia& page, const std::vector<std::string>& links) {
    return std::ranges::any_of(page.entries(), [&](const zab::MediaEntry& entry) {
        return std::ranges::find(links, entry.link) != links.end();
    });
}

/// Whether the module looks at the response at all.
bool isLookedAt(const KeptExchange& exchange) {
    return exchange.decision.outcome == zab::Outcome::listen ||
           zab::mayBeEntry(exchange.decision, exchange.loadFlags, exchange.headers.url);
}

std::vector<ShownPage::Choice> menuOf(const std::vector<zab::MediaEntry>& entries) {
    const zab::Menu menu = zab::mediaMenu(entries, zab::MessageTexts(), zab::utf16FromUtf8);
    std::vector<ShownPage::Choice> choices;
    for (const std::size_t index : zab::menuOrder(entries))
        choices.push_back({zab::utf8FromUtf16(menu.labels[choices.size()]), entries[index]});
    return choices;
}

}  // namespace

std::size_t PageReplay::addPage(std::string_view name, std::string_view url) {
    pages_.push_back({std::string(name), std::string(url)});
    return pages_.size() - 1;
}

/// The newest page of this name: a tab that goes from page to page keeps its name in some captures.
std::size_t PageReplay::pageNamed(std::string_view name, std::string_view referrer) {
    const auto newest =
        std::find_if(pages_.rbegin(), pages_.rend(), [name](const Page& page) { return page.name == name; });
    if (newest == pages_.rend()) return addPage(name, referrer);
    return static_cast<std::size_t>(pages_.rend() - newest) - 1;
}

/// The page with this document; of a referrer that tells its origin alone, the newest page there.
std::size_t PageReplay::pageAt(std::string_view referrer) {
    if (const auto known = documents_.find(referrer); known != documents_.end()) return known->second;
    const auto newest = std::find_if(pages_.rbegin(), pages_.rend(), [referrer](const Page& page) {
        return !referrer.empty() && page.url.starts_with(referrer);
    });
    if (newest != pages_.rend()) return static_cast<std::size_t>(pages_.rend() - newest) - 1;
    return documents_[std::string(referrer)] = addPage({}, referrer);
}

std::size_t PageReplay::pageOf(const Exchange& exchange) {
    const std::string_view referrer = zab::withoutFragment(exchange.requestHeader("Referer"));
    return exchange.page.empty() ? pageAt(referrer) : pageNamed(exchange.page, referrer);
}

void PageReplay::add(const Exchange& exchange) {
    const zab::Decision decision = decideExchange(exchange, settings_, scratch_);
    const KeptExchange kept{decision, scratch_, exchange.loadFlags};
    const bool isDocumentLoad = isDocument(kept);
    const bool isPage = isDocumentLoad && (exchange.loadFlags & zab::kTopLevelLoad) != 0;
    const bool looksAt = isLookedAt(kept);
    if (!isDocumentLoad && !looksAt) return;
    const std::size_t page = isPage ? addPage(exchange.page, exchange.url) : pageOf(exchange);
    if (isDocumentLoad) documents_.insert_or_assign(std::string(zab::withoutFragment(exchange.url)), page);
    if (!looksAt) return;
    const bool readsBody = decision.outcome == zab::Outcome::listen;
    responses_.push_back({exchange, page, readsBody ? exchange.endedMs : exchange.arrivedMs});
}

void PageReplay::replay(const Response& response) {
    const Exchange& exchange = response.exchange;
    Page& page = pages_[response.page];
    const zab::Decision decision = decideExchange(exchange, settings_, scratch_);
    const KeptExchange kept{decision, scratch_, exchange.loadFlags};
    auto offers = offersOf(kept, exchange.responseBody.value_or(""), page.memory);
    const auto silent = [&](std::string_view why) { page.silent.push_back({exchange.url, why}); };
    if (offers.empty()) return silent(reasonOfNothing(kept, exchange, page.memory.media()));
    std::vector<std::string> links;
    links.reserve(offers.size());
    for (const zab::MediaEntry& offer : offers) links.push_back(offer.link);
    const std::size_t before = page.memory.media().entries().size();
    const bool wasHeld = holds(page.memory.media(), links);
    page.memory.take(std::move(offers));
    if (!holds(page.memory.media(), links)) return silent("The page is full.");
    if (wasHeld && page.memory.media().entries().size() == before) silent("What it offers is held already.");
}

std::vector<ShownPage> PageReplay::run() {
    std::ranges::stable_sort(responses_, {}, &Response::moment);
    for (const Response& response : responses_) replay(response);
    responses_.clear();
    std::vector<ShownPage> shown;
    for (Page& page : pages_)
        shown.push_back({std::move(page.url), titles_[page.name], menuOf(page.memory.media().entries()),
                         std::move(page.silent)});
    return shown;
}

Json shownJson(const std::vector<ShownPage>& pages) {
    Json all = Json::array();
    for (const ShownPage& page : pages) {
        Json menu = Json::array(), silent = Json::array();
        for (const ShownPage::Choice& choice : page.menu) {
            Json& item = menu.emplace_back(Json{{"label", asJson(choice.label)}});
            item.update(entryJson(choice.entry));
        }
        for (const ShownPage::Silence& response : page.silent)
            silent.push_back({{"url", asJson(response.url)}, {"why", response.why}});
        all.push_back({{"url", asJson(page.url)},
                       {"title", asJson(page.title)},
                       {"menu", std::move(menu)},
                       {"silent", std::move(silent)}});
    }
    return all;
}

std::string shownTable(const std::vector<ShownPage>& pages) {
    constexpr std::size_t kKind = 6, kExtension = 5, kLabel = 40;
    std::string table;
    for (const ShownPage& page : pages) {
        if (!table.empty()) table += '\n';
        table += shownUrl(page.url);
        if (!page.title.empty()) table.append("  ").append(zab::wellFormedUtf8(page.title));
        table += page.menu.empty() ? "\n  offers nothing\n" : "\n";
        for (const auto& [label, entry] : page.menu) {
            table += "  ";
            appendCell(table, entry.kind == zab::EntryKind::audio ? "audio" : "video", kKind);
            appendCell(table, zab::wellFormedUtf8(entry.extension), kExtension);
            appendCell(table, zab::wellFormedUtf8(label), kLabel);
            table.append(shownUrl(entry.link)) += '\n';
        }
        if (!page.silent.empty()) table += "  and from these nothing:\n";
        for (const auto& [url, why] : page.silent) {
            table += "    ";
            appendCell(table, shownUrl(url), kShownUrlBytes + 1);
            table.append(why) += '\n';
        }
    }
    return table;
}

}  // namespace zabprobe
