#include "ui/media_button.h"

#include <string_view>
#include <utility>

#include "binding/browser_string.h"
#include "binding/guard.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "page/documents.h"
#include "page/event_listening.h"
#include "page/page.h"
#include "settings/message_texts.h"
#include "ui/button_windows.h"

namespace zab {
namespace {

constexpr std::u16string_view kUnload = u"unload", kScroll = u"scroll", kResize = u"resize";
/// The part of a browser window that shows pages.
constexpr std::u16string_view kContentElement = u"appcontent";

InterfacePtr<nsISupports> windowOf(iZABHelper5& helper, nsISupports* document) noexcept {
    nsISupports* window = nullptr;
    if (failed(helper.GetDocumentWindow(document, &window))) return {};
    return InterfacePtr<nsISupports>(window);
}

std::optional<ElementBox> contentBoxOf(iZABHelper5& helper, nsISupports* document) noexcept {
    WideContainer id(kContentElement);
    ElementBox box;
    if (!id.ready() ||
        failed(helper.GetElementBox(document, id.get(), &box.x, &box.y, &box.width, &box.height)))
        return std::nullopt;
    return box;
}

std::u16string typeOf(iZABHelper5& helper, nsISupports* event) {
    WideContainer type;
    if (!type.ready() || failed(helper.GetEventType(event, type.get()))) return {};
    return std::u16string(type.view());
}

}  // namespace

template <class Self>
nsresult ButtonListener<Self>::HandleEvent(nsISupports* event) {
    return guarded(NS_OK, [&] {
        // An "unload" takes the browser's reference and the button's.
        const auto alive = referenceTo(this->identity());
        if (button_ != nullptr) button_->handle(event);
        return NS_OK;
    });
}

template class ButtonListener<CBtnMouseListener>;
template class ButtonListener<CElementUnloadListener>;

CDownloadMediaBtn::CDownloadMediaBtn(nsISupports* document, const OpenPage& page)
    : document_(page.document),
      bonds_{referenceTo(document), {}, {}, {}},
      plan_{
          page.browserWindow, page.controller, {},
          page.document.id,   page.url,        utf16FromUtf8(messageTexts()[TextId::downloadWithZab].view())} {}

template <class Change>
void CDownloadMediaBtn::Bonds::forEachEvent(iZABHelper5& helper, Change change) const {
    if (!mouseListener || !unloadListener) return;
    const auto target = domWindow ? eventTargetOf(helper, domWindow.get()) : InterfacePtr<nsISupports>();
    if (target)
        for (const std::u16string_view type : {kUnload, kScroll, kResize})
            change(helper, type, target.get(), mouseListener->identity());
    change(helper, kUnload, document.get(), unloadListener->identity());
}

bool CDownloadMediaBtn::open(IZABButtonManager& manager) {
    const auto helper = service<iZABHelper5>();
    if (!helper) return false;
    bonds_.domWindow = windowOf(*helper.get(), bonds_.document.get());
    bonds_.mouseListener = makeObject<CBtnMouseListener>(*this);
    bonds_.unloadListener = makeObject<CElementUnloadListener>(*this);
    bonds_.forEachEvent(*helper.get(), addListener);
    return make(manager);
}

bool CDownloadMediaBtn::make(IZABButtonManager& manager) {
    const auto helper = service<iZABHelper5>();
    if (makes_ || closedByUser_ || !bonds_.document || !helper || !place(*helper.get())) return false;
    const WindowHandle parent = plan_.parent;
    makes_ = true;
    const WindowHandle made = createButton(manager, plan_);
    makes_ = false;
    if (!bonds_.document || plan_.parent != parent) {  // the page went meanwhile, or to another window
        postClose(made);
        return false;
    }
    window_ = made;
    told_ = plan_.rect;
    shown_.reset();
    if (window_ != 0 && !menu_.links.empty()) setEntries(manager, window_, plan_, menu_);
    return window_ != 0;
}

bool CDownloadMediaBtn::place(iZABHelper5& helper) {
    const auto content = contentBoxOf(helper, bonds_.document.get());
    const auto window = windowFactsOf(plan_.parent);
    if (!window || (placement_.inContentArea && !content)) return false;
    placement_ = placementOf(*window, content, placement_);
    plan_.rect = placement_.visible;
    return true;
}

void CDownloadMediaBtn::setMenu(IZABButtonManager& manager, Menu menu) {
    if (menu == menu_) return;
    menu_ = std::move(menu);
    if (isOpen(window_)) setEntries(manager, window_, plan_, menu_);
}

void CDownloadMediaBtn::follow() {
    const auto helper = service<iZABHelper5>();
    if (!helper || !isOpen(window_) || !place(*helper.get()) || plan_.rect == told_) return;
    told_ = plan_.rect;
    postMove(window_, told_);
}

void CDownloadMediaBtn::followSoon() {
    if (follows_) return;
    follows_ = runSoon([weak = weak_from_this()] {
        const auto button = weak.lock();
        if (!button) return;
        button->follows_ = false;
        button->follow();
    });
    if (!follows_) follow();
}

void CDownloadMediaBtn::noteClosed() noexcept {
    if (window_ != 0 && !isOpen(window_) && isOpen(plan_.parent)) closedByUser_ = true;
}

bool CDownloadMediaBtn::isOrphan() const noexcept {
    return !closedByUser_ && bonds_.document && !isOpen(plan_.parent);
}

WindowHandle CDownloadMediaBtn::pageWindow() const {
    const auto helper = service<iZABHelper5>();
    const auto document = bonds_.document.another();
    return helper && document ? browserWindowOf(*helper.get(), document.get()) : 0;
}

void CDownloadMediaBtn::moveTo(IZABButtonManager& manager, WindowHandle browserWindow,
                               WindowHandle controller) {
    noteClosed();
    if (!bonds_.document || browserWindow == plan_.parent || controller == 0) return;
    plan_.parent = browserWindow;
    plan_.controller = controller;
    postClose(std::exchange(window_, 0));
    make(manager);
}

void CDownloadMediaBtn::settle(IZABButtonManager& manager) {
    if (wanted_ && window_ == 0) make(manager);
    if (shown_ == wanted_ || !isOpen(window_)) return;
    shown_ = wanted_;
    manager.ShowButton(window_, wanted_ ? 1 : 0);
}

void CDownloadMediaBtn::close() noexcept {
    // Taken away first: giving something back may lead here once more.
    const Bonds bonds = std::exchange(bonds_, {});
    if (bonds.mouseListener) bonds.mouseListener->leaveButton();
    if (bonds.unloadListener) bonds.unloadListener->leaveButton();
    postClose(std::exchange(window_, 0));
    if (!bonds.document) return;
    if (const auto helper = service<iZABHelper5>()) bonds.forEachEvent(*helper.get(), removeListener);
}

void CDownloadMediaBtn::handle(nsISupports* event) {
    const auto alive = shared_from_this();  // the page may end in each call of the helper
    const auto helper = service<iZABHelper5>();
    if (!helper) return;
    const std::u16string type = typeOf(*helper.get(), event);
    const auto is = [&](std::u16string_view name) { return equalsIgnoringCase<char16_t>(type, name); };
    if (is(kScroll) || is(kResize)) followSoon();
    if (is(kUnload)) forgetDocument(DocumentKey(document_));
}

}  // namespace zab
