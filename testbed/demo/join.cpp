#include "join.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace zab::demo {
namespace {

using nlohmann::json;

constexpr std::string_view kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";
constexpr std::string_view kReasonPrefix = "**********Examine ";

std::string textOf(const json& object, const char* key) {
    const auto value = object.find(key);
    return value != object.end() && value->is_string() ? value->get<std::string>() : std::string();
}

// "**********Examine transfer: The server names ..." gives the sentence; of several lines the last counts.
std::string reasonOf(const json& browserLine) {
    std::string reason;
    for (const json& entry : browserLine.value("debug", json::array())) {
        const auto text = entry.get<std::string>();
        if (text.compare(0, kReasonPrefix.size(), kReasonPrefix) != 0) continue;
        const auto colon = text.find(": ");
        const auto end = text.find_last_not_of(" \r\n");
        if (colon != text.npos) reason = text.substr(colon + 2, end - colon - 1);
    }
    return reason;
}

// Takes the transfer of a URL out of those not yet claimed; with the expected flags when there is one, because
// one URL can be transferred more than once.
json claim(std::vector<json>& transfers, const std::string& url, std::uint32_t flags) {
    const auto isOfUrl = [&](const json& line) { return textOf(line, "url") == url; };
    auto found = std::find_if(transfers.begin(), transfers.end(), [&](const json& line) {
        return isOfUrl(line) && line.value("flags", 0u) == flags;
    });
    if (found == transfers.end()) found = std::find_if(transfers.begin(), transfers.end(), isOfUrl);
    if (found == transfers.end()) return nullptr;
    json line = std::move(*found);
    transfers.erase(found);
    return line;
}

std::string hexadecimal(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%X", number);
    return text;
}

class Comparison {
  public:
    explicit Comparison(Row& row) : row_(row) {}
    void equal(const char* what, const std::string& is, const std::string& wanted) {
        if (is == wanted) return;
        row_.faults.push_back(std::string(what) + ": expected " + quoted(wanted) + ", was " + quoted(is));
    }

  private:
    static std::string quoted(const std::string& text) { return text.empty() ? "nothing" : "\"" + text + "\""; }
    Row& row_;
};

// What a file is called in a fault: its hash says little, so only its beginning stands there.
std::string fileOf(const std::string& sha256) { return sha256.substr(0, 12); }

std::string fileVerdict(const std::string& sha256, const json& expected) {
    if (sha256 != textOf(expected, "sha256")) return sha256.empty() ? "NONE" : "WRONG";
    if (sha256.empty()) return "not fetched";
    const std::string lacking = textOf(expected, "lacks");
    return lacking.empty() ? "right" : "no " + lacking;
}

void compareTransfer(Row& row, const json& expected) {
    const std::string sha256 = textOf(row.received.value("download", json::object()), "sha256");
    row.flags = row.received.value("flags", 0u);
    row.file = fileVerdict(sha256, expected);
    Comparison comparison(row);
    comparison.equal("flags", hexadecimal(row.flags), hexadecimal(expected.value("flags", 0u)));
    comparison.equal("file name", textOf(row.received, "fileName"), textOf(expected, "fileName"));
    comparison.equal("file of the download manager", fileOf(sha256), fileOf(textOf(expected, "sha256")));
}

Row rowOf(const json& line, const json& expected, std::vector<json>& transfers) {
    Row row;
    row.method = textOf(line, "method");
    row.url = textOf(line, "url");
    row.outcome = outcomeOf(line);
    row.reason = reasonOf(line);
    row.why = textOf(expected, "why");

    Comparison comparison(row);
    comparison.equal("URL", row.url, textOf(expected, "url"));
    comparison.equal("outcome", row.outcome, textOf(expected, "outcome"));
    comparison.equal("file of the browser", fileOf(textOf(line, "sha256")),
                     fileOf(textOf(expected, "browserSha256")));
    if (!expected.value("shown", false))
        comparison.equal("held by the module afterwards", textOf(line, "held"), "");
    comparison.equal("listeners on the closed window", std::to_string(line.value("windowListeners", 0)), "0");
    if (row.outcome != "transfer") return row;

    // A redirect that was taken over names what the download manager got; otherwise it got the URL itself.
    const bool isRedirect = !textOf(line, "newLocation").empty();
    const std::string taken = isRedirect ? textOf(line, "location") : row.url.substr(0, row.url.find('#'));
    row.received = claim(transfers, taken, expected.value("flags", 0u));
    if (row.received.is_null()) {
        row.file = "NONE";
        row.faults.push_back("the download manager got nothing");
        return row;
    }
    compareTransfer(row, expected);
    return row;
}

Row missingRow(const json& exchange, const json& expected) {
    Row row;
    row.method = exchange.value("method", "GET");
    row.url = textOf(expected, "url");
    row.why = textOf(expected, "why");
    row.faults.push_back("the browser did not come to it");
    return row;
}

}  // namespace

std::string outcomeOf(const json& line) {
    if (textOf(line, "url") == kSentinel && textOf(line, "cancelled") == "request") return "cancel";
    const bool isTaken = !textOf(line, "cancelled").empty() || !textOf(line, "newLocation").empty();
    return isTaken ? "transfer" : "browser";
}

std::vector<PageOffer> joinOffers(const json& offers, const std::vector<json>& browser) {
    std::vector<PageOffer> pages;
    for (const json& offer : offers) {
        PageOffer& page = pages.emplace_back();
        page.title = textOf(offer, "title");
        for (const json& line : browser)
            if (line.value("page", json()) == offer.at("page")) page.entries = line.at("entries");
        page.isExpected = page.entries == offer.at("entries");
        page.expected = offer.at("entries");
    }
    return pages;
}

std::vector<Row> join(const json& exchanges, const std::vector<json>& browser, std::vector<json> transfers) {
    std::vector<Row> rows;
    auto line = browser.begin();
    for (const json& exchange : exchanges) {
        const auto isOfExchange = [&] {
            return line != browser.end() && textOf(*line, "name") == textOf(exchange, "name");
        };
        for (const json& expected : exchange.at("expected")) {
            if (isOfExchange())
                rows.push_back(rowOf(*line++, expected, transfers));
            else
                rows.push_back(missingRow(exchange, expected));
        }
        while (isOfExchange()) {
            rows.push_back(rowOf(*line++, json::object(), transfers));
            rows.back().faults.assign(1, "one hop more than expected");
        }
    }
    for (const json& transfer : transfers) {
        Row row;
        row.url = textOf(transfer, "url");
        row.outcome = "transfer";
        row.flags = transfer.value("flags", 0u);
        row.received = transfer;
        row.faults.push_back("a transfer that belongs to no cancelled exchange");
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace zab::demo
