#include "table.h"

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>

namespace zab::demo {
namespace {

using nlohmann::json;

constexpr std::size_t kUrlWidth = 38;
constexpr int kLabelWidth = 32;

// Of the extra-data array, by index.
constexpr std::string_view kExtraNames[] = {
    "user agent", "local copy",  "page title",      "type hint",   "POST content type", "content type", "size",
    "page",       "reserved",    "page cookies",    "page user",   "page password",     "second page",  "extra",
    "cookies 2",  "second user", "second password", "description", "accept language"};
constexpr std::size_t kSecretElements[] = {9, 10, 11, 14, 15, 16};
constexpr std::string_view kNoArguments[] = {"extraData", "download", "error"};  // shown elsewhere
constexpr std::string_view kSecretKeys[] = {"cookies", "user", "password"};

template <class List, class Item>
bool contains(const List& list, const Item& item) {
    return std::find(std::begin(list), std::end(list), item) != std::end(list);
}

std::string pathOf(const std::string& url) {
    constexpr std::string_view kSite = "http://127.0.0.1:";
    if (url.compare(0, kSite.size(), kSite) != 0) return url;
    const auto slash = url.find('/', kSite.size());
    return slash == url.npos ? url : url.substr(slash);
}

std::string shortened(const std::string& text, std::size_t width) {
    if (text.size() <= width) return text;
    const std::size_t head = (width - 3) / 2;
    return text.substr(0, head) + "..." + text.substr(text.size() - (width - 3 - head));
}

std::string flagsText(const Row& row) {
    if (row.outcome != "transfer") return "-";
    char text[16];
    std::snprintf(text, sizeof(text), "0x%X", row.flags);
    return text;
}

void printArgument(std::ostream& out, std::string_view name, const json& value, bool isSecret) {
    if (value.is_null()) return;
    std::string text = value.is_string() ? value.get<std::string>() : value.dump();
    if (text.empty()) return;
    out << "      " << std::left << std::setw(18) << name << (isSecret ? "(masked)" : shortened(text, 90))
        << '\n';
}

void printReceived(std::ostream& out, const json& received) {
    if (!received.is_object()) return;
    for (const auto& [key, value] : received.items())
        if (!contains(kNoArguments, key)) printArgument(out, key, value, contains(kSecretKeys, key));
    const json extra = received.value("extraData", json::array());
    if (!extra.is_array()) return;
    for (std::size_t i = 0; i < std::min(extra.size(), std::size(kExtraNames)); ++i)
        printArgument(out, kExtraNames[i], extra[i], contains(kSecretElements, i));
}

void printMenu(std::ostream& out, std::string_view mark, const json& entries) {
    for (const json& entry : entries)
        out << "    " << mark << std::left << std::setw(kLabelWidth) << entry.value("label", "")
            << entry.value("link", "") << '\n';
}

}  // namespace

bool printOffers(std::ostream& out, const std::vector<PageOffer>& pages) {
    std::size_t expected = 0, entries = 0;
    out << "\nMEDIA, AS THE BUTTONS OF THE PAGES OFFER THEM\n";
    for (const PageOffer& page : pages) {
        expected += page.isExpected;
        entries += page.entries.size();
        out << (page.isExpected ? "ok  " : "NO  ") << page.title << '\n';
        printMenu(out, "", page.entries);
        if (!page.isExpected) printMenu(out, "* expected: ", page.expected);
    }
    out << '\n' << pages.size() << " pages, " << expected << " as expected; " << entries << " menu entries\n";
    return expected == pages.size();
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
        const bool isExpected = row.faults.empty();
        expected += isExpected;
        transfers += row.outcome == "transfer";
        right += row.file == "right";
        line(isExpected ? "ok" : "NO", row.method + ' ' + shortened(pathOf(row.url), kUrlWidth), row.outcome,
             flagsText(row), row.file, row.reason.empty() ? "-" : row.reason);
        for (const std::string& fault : row.faults) out << "    * " << fault << '\n';
        if (!verbose) continue;
        out << "    (" << row.why << ")\n";
        printReceived(out, row.received);
    }
    out << '\n'
        << rows.size() << " exchanges, " << expected << " as expected; " << transfers << " transfers, " << right
        << " right files\n";
    return expected == rows.size();
}

}  // namespace zab::demo
