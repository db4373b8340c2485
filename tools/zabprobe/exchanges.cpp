// decide and har: what becomes of HTTP exchanges, and why.

#include <array>
#include <cstdio>
#include <iterator>

#include "binding/text.h"
#include "binding/utf.h"
#include "zabprobe/capture.h"
#include "zabprobe/command.h"
#include "zabprobe/exchange_reader.h"
#include "zabprobe/page_replay.h"
#include "zabprobe/shown.h"

namespace zabprobe {
namespace {

constexpr Option kOptions[] = {
    kFile,
    kExtensions,
    {"--exceptions", "The excepted servers, separated by blanks", &Arguments::exceptions},
    {"--no-integration", "The integration is switched off", &Arguments::noIntegration},
    {"--prevent-key", "The keys that prevent catching are held", &Arguments::preventKey},
    {"--force-key", "The force keys are held", &Arguments::forceKey},
    // Of captures alone.
    {"--explain", "A table for people in place of the JSON", &Arguments::explain},
    {"--page", "The menus that the users of its pages would see", &Arguments::page},
};
constexpr std::size_t kOfCaptures = 2;
constexpr std::span<const Option> kHarOptions = kOptions;
constexpr std::span<const Option> kDecideOptions = kHarOptions.first(std::size(kOptions) - kOfCaptures);

zab::GivenSettings settingsOf(const Arguments& arguments) {
    zab::GivenSettings settings;
    settings.extensionList = arguments.extensions;
    settings.exceptionList = arguments.exceptions;
    settings.integration = !arguments.noIntegration;
    settings.preventKey = arguments.preventKey;
    settings.forceKey = arguments.forceKey;
    return settings;
}

/// Whether the response itself becomes an entry of its page. A request for a part of a stream is no file of its
/// own, yet it becomes one where nothing else lists the stream.
bool isOffered(const KeptExchange& exchange) {
    return exchange.decision.offer ||
           (exchange.decision.outcome == zab::Outcome::browser && !capturedEntries(exchange, {}).empty());
}

void addDecision(Json& json, const zab::Decision& decision, bool offered) {
    json["outcome"] = zab::outcomeName(decision.outcome);
    json["reason"] = zab::wellFormedUtf8(zab::sentenceOf(decision));
    json["offer"] = offered ? 1 : 0;
    json["extension"] = zab::wellFormedUtf8(decision.extension);
    json["listener"] = zab::mediaKindName(decision.listener);
    json["fileName"] = zab::wellFormedUtf8(decision.fileName);
    json["contentLength"] = decision.contentLength;
    json["flags"] = decision.flags;
}

Answer runDecide(const Arguments& arguments) {
    const zab::GivenSettings settings = settingsOf(arguments);
    zab::CapturedHeaders scratch;
    Json decisions = Json::array();
    const bool read = visitExchanges(arguments.bytes(), [&](const Exchange& exchange) {
        const zab::Decision decision = decideExchange(exchange, settings, scratch);
        addDecision(decisions.emplace_back(), decision, isOffered({decision, scratch, exchange.loadFlags}));
    });
    if (!read) return {false, Json::array()};
    return {true, std::move(decisions)};
}

/// The table for people: one line per entry, and what it came to.
class Table {
  public:
    void add(const Exchange& exchange, const zab::Decision& decision, bool offered) {
        ++counts_[static_cast<std::size_t>(decision.outcome)];
        if (offered) ++offered_;
        const std::string status = std::to_string(exchange.status);
        line(zab::outcomeName(decision.outcome), status, shownUrl(exchange.url), zab::sentenceOf(decision));
        if (decision.listener != zab::MediaKind::none)
            text_.append(" Its body is read for media (").append(zab::mediaKindName(decision.listener)) += ").";
        if (offered) text_ += " It is offered as media of its page.";
    }

    [[nodiscard]] std::string text() const {
        std::size_t all = 0;
        for (const std::size_t count : counts_) all += count;
        std::string totals = std::to_string(all) + (all == 1 ? " entry" : " entries");
        const char* mark = ": ";
        for (std::size_t i = 0; i < counts_.size(); ++i) {
            totals.append(mark).append(std::to_string(counts_[i])) += ' ';
            totals += zab::outcomeName(static_cast<zab::Outcome>(i));
            mark = ", ";
        }
        totals += "; " + std::to_string(offered_) + " offered as media\n";
        return text_.empty() ? totals : text_ + "\n\n" + totals;
    }

  private:
    void line(std::string_view outcome, std::string_view status, std::string_view url,
              std::string_view reason) {
        if (!text_.empty()) text_ += '\n';
        appendCell(text_, outcome, 9);
        appendCell(text_, status, 4);
        appendCell(text_, url, kShownUrlBytes + 1);
        text_ += zab::wellFormedUtf8(reason);
    }

    std::string text_;
    std::array<std::size_t, 4> counts_{};
    std::size_t offered_ = 0;
};

Answer runHarPages(const Arguments& arguments) {
    const zab::GivenSettings settings = settingsOf(arguments);
    PageReplay replay(settings);
    const bool read = visitHar(
        arguments.bytes(), [&](const Exchange& exchange) { replay.add(exchange); },
        [&](const std::string& page, const std::string& title) { replay.addTitle(page, title); });
    if (!read) return {false, Json::array()};
    const std::vector<ShownPage> pages = replay.run();
    if (arguments.explain) return {true, {}, shownTable(pages)};
    return {true, shownJson(pages)};
}

Answer runHar(const Arguments& arguments) {
    if (arguments.page) return runHarPages(arguments);
    const zab::GivenSettings settings = settingsOf(arguments);
    zab::CapturedHeaders scratch;
    Json decisions = Json::array();
    Table table;
    const bool read = visitHarEntries(arguments.bytes(), [&](const Exchange& exchange) {
        const zab::Decision decision = decideExchange(exchange, settings, scratch);
        const KeptExchange kept{decision, scratch, exchange.loadFlags};
        const bool offered = isOffered(kept);
        if (arguments.explain) return table.add(exchange, decision, offered);
        Json& entry = decisions.emplace_back();
        entry["url"] = exchange.url;
        entry["status"] = exchange.status;
        addDecision(entry, decision, offered);
        if (exchange.responseBody) entry["entries"] = capturedEntries(kept, *exchange.responseBody);
    });
    if (!read) return {false, Json::array()};
    return {true, std::move(decisions), arguments.explain ? std::optional(table.text()) : std::nullopt};
}

constexpr Command kCommands[] = {
    {"decide", "What becomes of exchanges (a JSON array), and why", kDecideOptions, runDecide},
    {"har", "The same for each entry of a HAR capture of any browser", kHarOptions, runHar},
};

}  // namespace

std::span<const Command> exchangeCommands() { return kCommands; }

}  // namespace zabprobe
