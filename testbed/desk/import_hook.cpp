// What the module asks of the desk is a step of the browser's faults; the rows of Windows functions say nothing
// here.
#include "scenarios/import_hook.h"

#include "browser/browser.h"
#include "desk/desk.h"
#include "transfer/failure_report.h"

namespace zab::testbed {

ImportHook::ImportHook(Browser& browser, std::span<const HookedImport> imports) {
    for (const auto& row : imports) desk().noCallsNow |= row.failure == transfer_failure::kNoCallsNow;
    desk().fails = [&](const std::string& step) { return browser.faults().fails(step); };
}

ImportHook::~ImportHook() {
    desk().fails = [](const std::string&) { return false; };
    desk().noCallsNow = false;
}

}  // namespace zab::testbed
