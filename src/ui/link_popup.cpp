#include "ui/link_popup.h"

#include <optional>
#include <utility>

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
    return plan;
}

bool keepLinks(const ButtonPlan& plan, std::vector<std::string> links) {
    SelectedLinks selection{plan.document, plan.pageUrl, pageController(plan.parent), std::move(links)};
    const SharedListLock lock(OnTimeout::skip);
    if (lock) std::swap(selectedLinks(), selection);
    return static_cast<bool>(lock);
}

}  // namespace

WindowHandle openLinkPopup(iZABHelper5& helper, const InterfacePtr<nsISupports>& document,
                           std::u16string_view lines) {
    std::vector<std::string> links = linksOfLines(lines);
    if (!document || !CDwnlSelectedPanelSettings::load().opensPopup(links)) return 0;
    IZABButtonManager* const manager = buttonManager();
    const auto plan = manager == nullptr ? std::nullopt : planFor(helper, document);
    if (!plan) return 0;
    const Menu menu = linksMenu(links, messageTexts());
    if (!keepLinks(*plan, std::move(links))) return 0;
    const WindowHandle popup = createButton(*manager, *plan);
    if (popup == 0) return 0;
    setEntries(*manager, popup, *plan, menu);
    manager->ShowButton(popup, 1);
    return popup;
}

}  // namespace zab
