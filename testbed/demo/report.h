// Puts beside each other what the browser did, what the download manager got, and what the site expects.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zab::demo {

using nlohmann::json;

/// One HTTP exchange of the demo, or what the user did in place of one.
struct Row {
    std::string method{}, url{};
    std::string outcome = "browser";  // or "transfer" or "cancel"
    std::string reason = "-";         // the module's own sentence
    std::string taken{};              // of a transfer: the URL that the download manager must get
    json expected = json::object();   // null: nobody knows
    std::uint32_t flags = 0;
    std::string file = "-";             // verdict on the download manager's file
    std::vector<std::string> faults{};  // how it differs from what is expected; empty: it does not
    json received{};                    // the download manager's line; null when there is none

    void compare(const char* what, const std::string& is, const std::string& wanted);
    /// The text of a member of what is expected; empty when it is absent.
    [[nodiscard]] std::string expects(const char* member) const;
};

/// Gives each transfer to the row that it belongs to. One that belongs to none is a row with a fault.
void settle(std::vector<Row>& rows, std::vector<json> transfers);

/// One line per row, faults below theirs, then the totals. `verbose` adds what the download manager received,
/// with cookies and credentials masked. True when no row has a fault.
bool printTable(std::ostream& out, const std::vector<Row>& rows, bool verbose);

/// What the button of one page offers: an array of {"link", "label"}, in menu order.
struct PageOffer {
    std::string title;
    json entries, expected;
};

/// Each page with its menu, a line per entry, then the totals. True when every menu is as expected.
bool printOffers(std::ostream& out, const std::vector<PageOffer>& pages);

}  // namespace zab::demo
