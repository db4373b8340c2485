#include "demo/report.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string_view>

namespace zab::demo {
namespace {

constexpr std::size_t kUrlWidth = 38;
constexpr int kLabelWidth = 32;

// The elements of the extra data, by index.
constexpr std::string_view kExtra[] = {
    "user agent", "local copy",  "page title",      "type hint",   "POST content type", "content type", "size",
    "page",       "reserved",    "page cookies",    "page user",   "page password",     "second page",  "extra",
    "cookies 2",  "second user", "second password", "description", "accept language"};

bool isSecret(std::string_view name) {
    return name.find("cookies") != name.npos || name.ends_with("user") || name.ends_with("password");
}

std::string hexadecimal(std::uint32_t number) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << number;
    return text.str();
}

std::string textOf(const json& object, const char* member) {
    const auto value = object.find(member);
    return value != object.end() && value->is_string() ? value->get<std::string>() : std::string();
}

/// Takes the transfer of a row's URL out of those not yet claimed; with the expected flags when there is one,
/// because one URL can be transferred more than once.
json claim(std::vector<json>& transfers, const Row& row) {
    const auto isOfUrl = [&](const json& line) { return textOf(line, "url") == row.taken; };
    auto found = std::ranges::find_if(transfers, [&](const json& line) {
        return isOfUrl(line) && line.value("flags", 0u) == row.expected.value("flags", 0u);
    });
    if (found == transfers.end()) found = std::ranges::find_if(transfers, isOfUrl);
    if (found == transfers.end()) return nullptr;
    json line = std::move(*found);
    transfers.erase(found);
    return line;
}

std::string verdictOn(const std::string& file, const Row& row) {
    if (file != row.expects("file")) return file.empty() ? "NONE" : "WRONG";
    if (file.empty()) return "not fetched";
    const std::string lacking = row.expects("lacks");
    return lacking.empty() ? "right" : "no " + lacking;
}

std::string pathOf(const std::string& url) {
    constexpr std::string_view kSite = "http://127.0.0.1:";
    return url.starts_with(kSite) ? url.substr(url.find('/', kSite.size())) : url;
}

std::string shortened(const std::string& text, std::size_t width) {
    if (text.size() <= width) return text;
    const std::size_t head = (width - 3) / 2;
    return text.substr(0, head) + "..." + text.substr(text.size() - (width - 3 - head));
}

void printArgument(std::ostream& out, std::string_view name, const json& value) {
    const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    if (value.is_null() || text.empty()) return;
    out << "      " << std::left << std::setw(18) << name << (isSecret(name) ? "(masked)" : shortened(text, 90))
        << '\n';
}

void printReceived(std::ostream& out, const json& received) {
    for (const auto& [name, value] : received.items())
        if (value.is_primitive()) printArgument(out, name, value);
    const json extra = received.value("extraData", json::array());
    for (std::size_t i = 0; extra.is_array() && i < std::min(extra.size(), std::size(kExtra)); ++i)
        printArgument(out, kExtra[i], extra[i]);
}

void printMenu(std::ostream& out, std::string_view mark, const json& entries) {
    for (const json& entry : entries)
        out << "    " << mark << std::left << std::setw(kLabelWidth) << textOf(entry, "label")
            << textOf(entry, "link") << '\n';
}

}  // namespace

void Row::compare(const char* what, const std::string& is, const std::string& wanted) {
    const auto quoted = [](const std::string& text) { return text.empty() ? "nothing" : '"' + text + '"'; };
    if (is != wanted && !expected.is_null())
        faults.push_back(std::string(what) + ": expected " + quoted(wanted) + ", was " + quoted(is));
}

std::string Row::expects(const char* member) const { return textOf(expected, member); }

void settle(std::vector<Row>& rows, std::vector<json> transfers) {
    for (Row& row : rows) {
        if (row.outcome != "transfer" || row.expected.is_null()) continue;
        row.received = claim(transfers, row);
        if (row.received.is_null()) {
            row.file = "NONE";
            row.faults.push_back("the download manager got nothing");
            continue;
        }
        const std::string file = textOf(row.received.value("download", json::object()), "file");
        row.flags = row.received.value("flags", 0u);
        row.file = verdictOn(file, row);
        row.compare("flags", hexadecimal(row.flags), hexadecimal(row.expected.value("flags", 0u)));
        row.compare("file name", textOf(row.received, "fileName"), row.expects("fileName"));
        row.compare("file of the download manager", file, row.expects("file"));
    }
    for (const json& transfer : transfers)
        rows.push_back({.url = textOf(transfer, "url"),
                        .outcome = "transfer",
                        .flags = transfer.value("flags", 0u),
                        .faults = {"a transfer that belongs to no cancelled exchange"},
                        .received = transfer});
}

bool printTable(std::ostream& out, const std::vector<Row>& rows, bool verbose) {
    const auto line = [&](std::string_view mark, std::string_view request, std::string_view outcome,
                          std::string_view flags, std::string_view file, std::string_view reason) {
        out << std::left << std::setw(4) << mark << std::setw(kUrlWidth + 6) << request << std::setw(10)
            << outcome << std::setw(11) << flags << std::setw(13) << file << reason << '\n';
    };
    line("", "EXCHANGE", "OUTCOME", "FLAGS", "FILE", "REASON");
    std::size_t expected = 0, transfers = 0, right = 0;
    for (const Row& row : rows) {
        const bool isExpected = row.faults.empty(), isTransfer = row.outcome == "transfer";
        expected += isExpected;
        transfers += isTransfer;
        right += row.file == "right";
        line(isExpected ? "ok" : "NO", row.method + ' ' + shortened(pathOf(row.url), kUrlWidth), row.outcome,
             isTransfer ? hexadecimal(row.flags) : "-", row.file, row.reason);
        for (const std::string& fault : row.faults) out << "    * " << fault << '\n';
        if (!verbose) continue;
        out << "    (" << row.expects("why") << ")\n";
        if (!row.received.is_null()) printReceived(out, row.received);
    }
    out << '\n'
        << rows.size() << " exchanges, " << expected << " as expected; " << transfers << " transfers, " << right
        << " right files\n";
    return expected == rows.size();
}

bool printOffers(std::ostream& out, const std::vector<PageOffer>& pages) {
    std::size_t expected = 0, entries = 0;
    out << "\nMEDIA, AS THE BUTTONS OF THE PAGES OFFER THEM\n";
    for (const PageOffer& page : pages) {
        const bool isExpected = page.entries == page.expected;
        expected += isExpected;
        entries += page.entries.size();
        out << (isExpected ? "ok  " : "NO  ") << page.title << '\n';
        printMenu(out, "", page.entries);
        if (!isExpected) printMenu(out, "* expected: ", page.expected);
    }
    out << '\n' << pages.size() << " pages, " << expected << " as expected; " << entries << " menu entries\n";
    return expected == pages.size();
}

}  // namespace zab::demo
