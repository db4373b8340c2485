// Exchanges that real browsers recorded, played to the module, and a link transmitter of this process that
// keeps what it is told.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "browser/browser.h"
#include "browser/told.h"
#include "scenarios/import_hook.h"
#include "zabprobe/exchange_reader.h"

namespace zab::testbed {

/// Every entry of every capture whose file name starts so ("chromium", "firefox"; empty: all).
std::vector<zabprobe::Exchange> recordedExchanges(std::string_view capturePrefix);

/// Request and answer of an exchange, as far as the module lets it come. The body of a POST has the recorded
/// length.
Channel& play(Browser& browser, const zabprobe::Exchange& exchange, Page* page = nullptr);

/// The download manager as the module's imports show it: CoCreateInstance gives it, message boxes answer No
/// without being shown. Everything that the module asks of the system is a step of the browser's faults.
class HookedSystem {
  public:
    explicit HookedSystem(Browser& browser);
    ~HookedSystem();
    HookedSystem(const HookedSystem&) = delete;
    HookedSystem& operator=(const HookedSystem&) = delete;

    /// Downloads since the last time they were taken.
    std::vector<Told> takesTold();
    /// What the module took of the system since the faults began and did not give back; empty is right.
    [[nodiscard]] std::string unbalanced() const;

  private:
    Browser& browser_;
    ImportHook hook_;
};

}  // namespace zab::testbed
