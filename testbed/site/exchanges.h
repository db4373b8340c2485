// What a browser asks of the site, and what must come of it: one row per exchange, in the order that they are
// made.
//
// The expectations hold under the settings that stand here too. As JSON, the list is what the stand-in browser
// reads (testbed/demo/exchange_list.md); each exchange carries an "expected" array with one object per hop.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace zab::site {

/// {"settings": {name: value}, "cookies": [...], "exchanges": [...],
/// "offers": [...]}. Each "expected" object holds `url`, `outcome`
/// ("browser", "transfer" or "cancel"), `flags` (of the transfer), `fileName` (as the download manager is told
/// it), `sha256` (of what the download manager must get; "" where nothing can be fetched), `lacks` (what that
/// file is made without, because no transfer can carry it; "" for nothing), `browserSha256` (of what the
/// browser reads; "" when it reads no body), `shown` (whether its page is shown, and may be held by the module
/// for its button) and `why`.
nlohmann::json exchangeList(int port);

/// The page at "/": a link to everything that a click can reach.
std::string startPage();

}  // namespace zab::site
