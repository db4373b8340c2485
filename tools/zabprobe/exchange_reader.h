// HTTP exchanges as JSON tells them, and what the module decides about one.
//
// Two forms: an array of exchanges of zabprobe's own, and a HAR 1.2 capture of any browser. A missing member
// (null counts as missing) has its default; one of another type makes the whole input one that has not the
// wanted form. Text that is no JSON at all throws std::runtime_error with one line that quotes nothing of it.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "intercept/decision.h"

namespace zabprobe {

using Headers = std::vector<std::pair<std::string, std::string>>;

struct Exchange {
    std::string url;
    std::int64_t status = 0;  // captures write -1 for a request that failed
    std::string method = "GET";
    std::uint32_t loadFlags = 0;
    std::int64_t bodySize = 0;  // of the request, bytes
    Headers requestHeaders = {};
    Headers responseHeaders = {};
    std::optional<std::string> responseBody = {};  // where a capture holds it, decoded
    std::string page = {};                         // the capture's name of it; empty: not told
    std::int64_t arrivedMs = 0, endedMs = 0;       // of the response's headers and body, since 1970

    /// The value of the request's first header of this name, in any letter case; empty: none.
    [[nodiscard]] std::string_view requestHeader(std::string_view name) const;
};

using ExchangeVisitor = std::function<void(const Exchange& exchange)>;

/// Gives each exchange of an array to `visit`, in order. False: another form.
bool visitExchanges(std::string_view json, const ExchangeVisitor& visit);

/// Gives each entry of a capture to `visit`, in order. One entry at a time is in memory beside the text, so
/// that a capture of any size costs little more than itself.
bool visitHarEntries(std::string_view json, const ExchangeVisitor& visit);

/// The pages that a capture names, and their titles.
using PageVisitor = std::function<void(const std::string& name, const std::string& title)>;

/// The same, and gives each page to `visitPage`; pages and entries come in the order of the text.
bool visitHar(std::string_view json, const ExchangeVisitor& visit, const PageVisitor& visitPage);

/// What the module does with an exchange that the browser makes: as a request first, then as its response.
/// Views in the result point into `exchange`, `scratch` and constants.
zab::Decision decideExchange(const Exchange& exchange, const zab::SettingsView& settings,
                             zab::CapturedHeaders& scratch);

}  // namespace zabprobe
