// What the module asks of the desk is a step of the browser's faults; the rows of Windows functions say nothing
// here.
#include "scenarios/import_hook.h"

#include "browser/browser.h"
#include "desk/desk.h"
#include "scenarios/recorded.h"
#include "transfer/failure_report.h"

namespace zab::testbed {

ImportHook::ImportHook(Browser& browser, std::span<const HookedImport> imports) {
    for (const auto& row : imports) {
        desk().noCallsNow |= row.failure == transfer_failure::kNoCallsNow;
        desk().memoryMayFail |= std::string_view(row.function) == "malloc";
    }
    desk().fails = [&](const std::string& step) { return browser.faults().fails(step); };
}

ImportHook::~ImportHook() {
    desk().fails = [](const std::string&) { return false; };
    desk().noCallsNow = desk().memoryMayFail = false;
}

HookedSystem::HookedSystem(Browser& browser) : browser_(browser), hook_(browser, {}) {
    desk().managerRegistered = true;
    takesTold();
}

HookedSystem::~HookedSystem() = default;

std::vector<Told> HookedSystem::takesTold() {
    desk().boxes.clear();
    return std::exchange(desk().told, {});
}

std::string HookedSystem::unbalanced() const {
    return desk().lockHeld == 0 ? "" : std::to_string(desk().lockHeld) + " locks; ";
}

}  // namespace zab::testbed
