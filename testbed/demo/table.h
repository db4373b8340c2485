// The demo's table for people.
#pragma once

#include <iosfwd>
#include <vector>

#include "join.h"

namespace zab::demo {

/// One line per row, faults below theirs, then the totals. `verbose` adds what the download manager received,
/// with cookies and credentials masked. True when no row has a fault.
bool printTable(std::ostream& out, const std::vector<Row>& rows, bool verbose);

/// Each page with its menu, a line per entry, then the totals. True when every menu is as expected.
bool printOffers(std::ostream& out, const std::vector<PageOffer>& pages);

}  // namespace zab::demo
