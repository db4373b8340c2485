// The exported functions: each says what it is and its neutral value; what it does stands elsewhere.

#include "binding/guard.h"
#include "entry/lifecycle.h"
#include "entry/module_state.h"

using namespace zab;

namespace {

constexpr std::int32_t kAccept = 1;

/// The content policy accepts everything so far; that it was asked is half of the listener state.
std::int32_t acceptLoad() noexcept {
    markSeen(BrowserHook::contentPolicy);
    return kAccept;
}

}  // namespace

extern "C" {

nsresult ZABMzCC_InitCC(nsISupports* host) {
    return guarded(NS_ERROR_UNEXPECTED, [&] { return initialise(host); });
}

nsresult ZABMzCC_Observe(nsISupports*, const char* topic) {
    return guarded(NS_OK, [&] { return observeStartup(topic); });
}

nsresult ZABMzCC_OnTabSelect(const nsAString* documentId) {
    return guarded(NS_OK, [&] { return tabSelected(documentId); });
}

nsresult ZABMzCC_OnGetSelectedTabID(const nsAString* documentId) {
    return guarded(NS_OK, [&] { return selectedTabReported(documentId); });
}

nsresult ZABMzCC_OnUnload(const nsAString* documentId) {
    return guarded(NS_OK, [&] { return documentUnloaded(documentId); });
}

nsresult ZABMzCC_OnME(nsISupports* event) {
    return guarded(NS_OK, [&] { return mouseEvent(event); });
}

std::uint32_t ZABMzCC_GetListenerState() { return bothHooksSeen() ? 1 : 0; }

std::int32_t ZABMzCC_ShouldLoad(std::uint32_t, const nsACString*, const nsACString*, nsISupports*,
                                const nsACString*) {
    return acceptLoad();
}

std::int32_t ZABMzCC_ShouldLoad2(std::uint32_t, const nsACString*, const nsACString*, nsISupports*,
                                 const nsACString*, const nsAString*) {
    return acceptLoad();
}

std::int32_t ZABMzCC_ShouldLoad_old1(std::uint32_t, const nsACString*, nsISupports*) { return acceptLoad(); }

// Nothing is transferred by command yet, and the commands say so.

nsresult ZABMzCC_DownloadLinkWithZAB(const nsAString*, const nsAString*, const nsAString*, const nsAString*) {
    return NS_ERROR_FAILURE;
}

nsresult ZABMzCC_DownloadAllWithZAB(const nsAString*, const nsAString*, const nsAString*) {
    return NS_ERROR_FAILURE;
}

nsresult ZABMzCC_DownloadLastFLVwithZAB(const nsAString*) { return NS_ERROR_FAILURE; }

nsresult ZABMzCC_DownloadLast10FLVwithZAB(const nsAString*) { return NS_ERROR_FAILURE; }

}  // extern "C"
