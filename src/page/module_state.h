// What the entry points remember between calls. Everything is clear when the module is loaded; the browser's
// main thread alone reads and writes it.
#pragma once

#include "binding/interface_ptr.h"
#include "page/document_id.h"

namespace zab {

struct ModuleState {
    DocumentId selectedDocument = 0;  // of the tab that the browser reports as selected
    InterfacePtr<nsISupports> selectedTabHelper;
    bool mousePressed = false;  // since the last page was loaded
    /// A video site's own data gave an entry: a tab that comes to the front has its button shown again.
    bool siteMediaFiled = false;
};

ModuleState& moduleState();

/// The two hooks of the browser, each marked the first time that it is seen at work. With the second of them
/// the module announces the integration to later processes.
enum class BrowserHook { responses, contentPolicy };
void markSeen(BrowserHook hook) noexcept;
bool bothHooksSeen() noexcept;

}  // namespace zab
