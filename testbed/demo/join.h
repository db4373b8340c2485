// Puts beside each other what the browser did, what the download manager got, and what the site expects.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zab::demo {

/// One HTTP exchange of the demo.
struct Row {
    std::string method;
    std::string url;
    std::string outcome;  // "browser", "transfer" or "cancel"
    std::string reason;   // the module's own sentence; empty when it said nothing
    std::string why;      // the site's own words on what this exchange is
    std::uint32_t flags = 0;
    std::string file = "-";           // verdict on the download manager's file
    std::vector<std::string> faults;  // how it differs from the expectation; empty: it does not
    nlohmann::json received;          // the download manager's line; null when there is none
};

/// `exchanges`: the site's list with its "expected" arrays. `browser`: the browser's line of each HTTP
/// exchange. `transfers`: the download manager's lines, in any order. Exchanges that were not made, and
/// transfers that belong to none, are rows with a fault.
std::vector<Row> join(const nlohmann::json& exchanges, const std::vector<nlohmann::json>& browser,
                      std::vector<nlohmann::json> transfers);

/// What the button of one page offers.
struct PageOffer {
    std::string title;
    nlohmann::json entries = nlohmann::json::array();  // {"link", "label"} each, in menu order
    nlohmann::json expected;
    bool isExpected = false;
};

/// `offers`: the site's list. `browser`: all lines of the browser, of which those of pages count.
std::vector<PageOffer> joinOffers(const nlohmann::json& offers, const std::vector<nlohmann::json>& browser);

/// "browser", "transfer" or "cancel".
std::string outcomeOf(const nlohmann::json& browserLine);

}  // namespace zab::demo
