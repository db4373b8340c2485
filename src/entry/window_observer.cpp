#include "entry/window_observer.h"

#include <string_view>

#include "binding/browser_string.h"
#include "binding/guard.h"
#include "binding/text.h"
#include "entry/documents.h"
#include "entry/modifier_keys.h"
#include "page/documents.h"
#include "page/event_listening.h"
#include "page/module_state.h"
#include "ui/link_popup.h"
#include "ui/page_buttons.h"

namespace zab {
namespace {

constexpr std::u16string_view kWindowEvents[] = {u"mouseup", u"mousedown", u"TabSelect"};

void unloaded(iZABHelper5& helper, nsISupports* event) {
    nsISupports* raw = nullptr;
    if (failed(helper.GetTargetDocument(event, &raw))) return;
    const InterfacePtr<nsISupports> document(raw);
    const DocumentKey key{document.get(), documentIdOf(document.get())};
    if (key.id == 0) return;
    if (key.id == moduleState().selectedDocument) clearSelection();
    forgetDocument(key);
}

}  // namespace

nsresult CWindowObserver::Observe(nsISupports* subject, const char* topic, const char16_t*) {
    return guarded(NS_OK, [&] {
        const std::string_view name = topic == nullptr ? "" : topic;
        if (name == "domwindowopened") windowOpened(subject);
        if (name == "domwindowclosed") windowClosed(subject);
        return NS_OK;
    });
}

void CWindowObserver::windowOpened(nsISupports* window) {
    const auto helper = service<iZABHelper5>();
    if (!helper) return;
    const auto target = eventTargetOf(*helper.get(), window);
    if (!target) return;
    listener_ = identity();
    for (const std::u16string_view event : kWindowEvents)
        if (!addListener(*helper.get(), event, target.get(), listener_)) return;
}

void CWindowObserver::windowClosed(nsISupports* window) {
    pageButtons().noteClosed();
    const auto helper = service<iZABHelper5>();
    if (!helper) return;
    const auto target = eventTargetOf(*helper.get(), window);
    if (!target || listener_ == nullptr) return;
    for (const std::u16string_view event : kWindowEvents)
        if (!removeListener(*helper.get(), event, target.get(), listener_)) return;
}

nsresult CWindowObserver::HandleMouseEvent(nsISupports* event) {
    return guarded(NS_OK, [&] {
        const auto subject = query<nsISupports>(event);
        const auto helper = service<iZABHelper5>();
        WideContainer type;
        if (!subject || !helper || !type.ready()) return NS_OK;
        if (failed(helper->GetEventType(subject.get(), type.get()))) return NS_OK;
        const auto is = [told = type.view()](std::u16string_view name) {
            return equalsIgnoringCase(told, name);
        };
        if (is(u"mousedown")) {
            pressed();
        } else if (is(u"mouseup")) {
            released(*helper.get(), subject.get());
        } else if (is(u"TabSelect")) {
            closeLinkPopup();
            if (moduleState().siteMediaFiled && moduleState().selectedDocument != 0)
                showDocument(moduleState().selectedDocument);
        } else if (is(u"unload")) {
            unloaded(*helper.get(), subject.get());
        }
        return NS_OK;
    });
}

void CWindowObserver::pressed() {
    pressedAt_ = cursorPosition().value_or(ScreenPoint{});
    recordMousePressKeys();
    moduleState().mousePressed = true;
    closeLinkPopup();
}

/// A press and a release at different places is a drag, which is how links are selected.
void CWindowObserver::released(iZABHelper5& helper, nsISupports* event) {
    closeLinkPopup();
    const auto at = cursorPosition();
    if (!at || *at == pressedAt_) return;
    WideContainer links;
    if (!links.ready() || failed(helper.GetSelectedLinks(event, links.get()))) return;
    nsISupports* document = nullptr;
    if (links.view().empty() || failed(helper.GetTargetDocument(event, &document))) return;
    const InterfacePtr<nsISupports> page(document);
    openLinkPopup(helper, page, links.view());
}

}  // namespace zab
