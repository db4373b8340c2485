#include "ui/link_popup.h"

#include <optional>
#include <utility>

#include "binding/guard.h"
#include "page/document_id.h"
#include "page/page.h"
#include "page/selected_links.h"
#include "settings/message_texts.h"
#include "settings/shared_list_lock.h"
#include "ui/button_library.h"
#include "ui/button_windows.h"
#include "ui/link_lines.h"
#include "ui/panel_controller.h"
#include "ui/panel_settings.h"

namespace zab {
namespace {

constexpr std::u16string_view kCaption = u"Download selected files";

/// The popup's controller is that of the process: by it a choice in the popup is told from one in the page's
/// own menu.
std::optional<ButtonPlan> planFor(iZABHelper5& helper, const InterfacePtr<nsISupports>& document) {
    ButtonPlan plan;
    plan.parent = browserWindowOf(helper, document.get());
    plan.controller = processController();
    const auto window = windowFactsOf(plan.parent);
    if (plan.controller == 0 || !window || !window->cursor) return std::nullopt;
    plan.rect = aroundPoint(*window->cursor);
    plan.document = documentIdOf(document.get());
    plan.pageUrl = pageOfDocument(helper, document.another()).url;
    plan.caption = kCaption;
    return plan;
}

/// Under the shared-list lock: what is given away is freed without it.
void keepSelection(SelectedLinks selection) {
    const SharedListLock lock(OnTimeout::goOn);
    std::swap(selectedLinks(), selection);
}

WindowHandle g_leaving = 0;  // the popup of a page that went

}  // namespace

void openLinkPopup(iZABHelper5& helper, const InterfacePtr<nsISupports>& document, std::u16string_view lines) {
    std::vector<std::string> links = linksOfLines(lines);
    if (!document || !CDwnlSelectedPanelSettings::load().opensPopup(links)) return;
    IZABButtonManager* const manager = buttonManager();
    const auto plan = manager == nullptr ? std::nullopt : planFor(helper, document);
    if (!plan) return;
    const Menu menu = linksMenu(links, messageTexts());
    const WindowHandle popup = createButton(*manager, *plan);
    if (popup == 0) return;
    setEntries(*manager, popup, *plan, menu);
    // Before anybody can choose.
    keepSelection({plan->document, plan->pageUrl, pageController(plan->parent), std::move(links), popup});
    manager->ShowButton(popup, 1);
}

void closeLinkPopup() noexcept {
    if (selectedLinks().popup == 0) return;  // changed on this thread alone
    guarded([] {
        WindowHandle popup = 0;
        {
            const SharedListLock lock(OnTimeout::goOn);
            popup = std::exchange(selectedLinks(), {}).popup;
        }
        closeWindow(popup);
    });
}

void forgetLinkPopup(const DocumentKey& document) {
    if (document.id == 0 || selectedLinks().document != document.id) return;
    g_leaving = std::exchange(selectedLinks(), {}).popup;
}

void settleLinkPopup() noexcept { closeWindow(std::exchange(g_leaving, 0)); }

}  // namespace zab
