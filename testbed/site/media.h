// The pages of the site that play media: what a browser fetches for them, and what the module has to offer on
// each.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "resources.h"

namespace zab::site {

std::span<const Resource> mediaResources() noexcept;

/// What the pages load, in the form of exchangeList(). Behind the last, the user chooses entries in menus,
/// whose files the download manager must join from many, and downloads all links of a page that names another
/// host.
nlohmann::json mediaExchanges(int port);

/// One object per page: `page` (its document ID), `title`, and `entries` ({"link", "label"}) in menu order.
nlohmann::json mediaOffers(int port);

}  // namespace zab::site
