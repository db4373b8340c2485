#include "entry/lifecycle.h"

#include <string>
#include <string_view>

#include "binding/browser_string.h"
#include "binding/browser_thread.h"
#include "binding/interfaces/helpers.h"
#include "binding/never_destroyed.h"
#include "binding/runtime.h"
#include "entry/content_observer.h"
#include "entry/documents.h"
#include "entry/window_observer.h"
#include "page/documents.h"
#include "page/module_state.h"
#include "page/platform.h"
#include "settings/data_file.h"
#include "settings/settings_store.h"
#include "ui/link_popup.h"
#include "ui/page_buttons.h"
#include "ui/panel_controller.h"

namespace zab {
namespace {

constexpr std::uint32_t kStrongReference = 0;

bool g_observersRegistered = false;

/// The observer that mouse events are forwarded to; made with the first of them.
InterfacePtr<CWindowObserver>& mouseObserver() noexcept {
    static NeverDestroyed<InterfacePtr<CWindowObserver>> observer;
    return observer.get();
}

struct ObservedTopic {
    const char* topic;
    bool required;  // a failure ends the registration, which the next call then repeats
};

constexpr ObservedTopic kHttpTopics[] = {
    {topics::kModifyRequest, true},
    {topics::kExamineResponse, true},
    {topics::kExamineMergedResponse, false},
    {topics::kExamineCachedResponse, false},
};
constexpr const char* kWindowTopics[] = {"domwindowopened", "domwindowclosed"};

/// Takes back what was registered before `end`, so that the next try starts clean.
void unregister(nsIObserverService& observers, ContentObserver& observer, const ObservedTopic* end) {
    for (const ObservedTopic* row = kHttpTopics; row != end; ++row)
        observers.RemoveObserver(&observer, row->topic);
}

nsresult registerTrafficObserver(nsIObserverService& observers) {
    const auto observer = makeObject<ContentObserver>();
    if (!observer) return NS_OK;
    for (const ObservedTopic& row : kHttpTopics) {
        nsresult status = observers.AddObserver(observer.get(), row.topic, kStrongReference);
        if (!failed(status) && !stayLoaded()) status = NS_ERROR_UNEXPECTED;
        if (!failed(status) || !row.required) continue;
        unregister(observers, *observer.get(), &row);
        return status;
    }
    return NS_OK;
}

void registerWindowObserver(nsIObserverService& observers) {
    const auto observer = makeObject<CWindowObserver>();
    if (!observer) return;
    for (const char* topic : kWindowTopics) observers.AddObserver(observer.get(), topic, kStrongReference);
}

void traceDocument(const char* event, const std::u16string& text, DocumentId id) {
    const std::string prefix = std::string("**********") + event + " docID=";
    if (id == 0) {
        writeDebuggerText(prefix + "0\r\n");
        return;
    }
    writeDebuggerText(prefix);
    writeDebuggerText(text);
    writeDebuggerText("\r\n");
}

nsresult select(const char* event, const nsAString* documentId, bool closesPopup) {
    const std::u16string text(viewOf(documentId));
    const DocumentId id = documentIdOf(text);
    traceDocument(event, text, id);
    if (closesPopup) closeLinkPopup();
    moduleState().selectedDocument = id;
    showDocument(id);
    return NS_OK;
}

}  // namespace

nsresult initialise(nsISupports* host) {
    noteBrowserThread();
    if (runtime().NS_GetServiceManager == nullptr) return NS_ERROR_UNEXPECTED;
    const auto helper = service<iZABHelper8>();
    if (!helper) return NS_ERROR_UNEXPECTED;
    const auto identity = query<nsISupports>(host);
    if (!identity) return NS_ERROR_UNEXPECTED;
    return helper->SetHost(identity.get());
}

nsresult observeStartup(const char* topic) {
    if (topic == nullptr || g_observersRegistered) return NS_OK;
    // Deliberate: the topic is the needle. Only pieces of "-startup" (such as "startup", or no text at all) end
    // here; every other topic, "profile-after-change" and "xpcom-startup" among them, goes on to registration.
    // Held by StartUp.APieceOfTheStartUpTopicEndsAllRegistration.
    if (std::string_view("-startup").find(topic) != std::string_view::npos) {
        g_observersRegistered = true;
        return NS_OK;
    }
    nsresult status = NS_OK;
    const auto observers = service<nsIObserverService>(&status);
    if (!observers) return status;
    status = registerTrafficObserver(*observers.get());
    if (failed(status)) return status;
    registerWindowObserver(*observers.get());
    g_observersRegistered = true;
    return NS_OK;
}

void trafficObserverGone() {
    if (!g_observersRegistered) return;
    closeLinkPopup();
    mouseObserver().reset();
    endButtons();
    clearSelection();
    const bool threadsEnded = endControllers() && endConfigTimeWatcher();
    if (threadsEnded) closeSharedState();
}

nsresult tabSelected(const nsAString* documentId) { return select("Tabselect2", documentId, true); }

nsresult selectedTabReported(const nsAString* documentId) {
    return select("OnGetSelectedTabID", documentId, false);
}

nsresult documentUnloaded(const nsAString* documentId) {
    const DocumentId id = documentIdOf(viewOf(documentId));
    if (id == 0) return NS_OK;
    if (id == moduleState().selectedDocument) {
        clearSelection();
        refreshSelectedTab();
    }
    forgetDocument({nullptr, id});
    return NS_OK;
}

nsresult mouseEvent(nsISupports* event) {
    if (!mouseObserver()) mouseObserver() = makeObject<CWindowObserver>();
    if (mouseObserver()) mouseObserver()->HandleMouseEvent(event);
    return NS_OK;
}

}  // namespace zab
