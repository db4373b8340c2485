// The exported functions: each says what it is and its neutral value; what it does stands elsewhere.

#include <optional>
#include <utility>

#include "binding/browser_string.h"
#include "binding/browser_thread.h"
#include "binding/guard.h"
#include "entry/commands.h"
#include "entry/content_policy.h"
#include "entry/lifecycle.h"
#include "intercept/load_types.h"
#include "page/module_state.h"

using namespace zab;

namespace {

/// A call of the extension. Observers come through one, so the first call of the browser is always one of
/// these.
template <class Result, class Body>
Result entered(Result neutral, Body&& body) noexcept {
    noteBrowserThread();
    return guarded(neutral, std::forward<Body>(body));
}

std::int32_t answer(std::uint32_t type, const nsACString* url, const nsACString* origin, nsISupports* context,
                    const nsACString* mimeGuess, std::optional<DocumentId> document, bool takesClicks) {
    return answerPolicy({type, viewOf(url), viewOf(origin), viewOf(mimeGuess), context, document, takesClicks});
}

}  // namespace

extern "C" {

nsresult ZABMzCC_InitCC(nsISupports* host) {
    return entered(NS_ERROR_UNEXPECTED, [&] { return initialise(host); });
}

nsresult ZABMzCC_Observe(nsISupports*, const char* topic) {
    return entered(NS_OK, [&] { return observeStartup(topic); });
}

nsresult ZABMzCC_OnTabSelect(const nsAString* documentId) {
    return entered(NS_OK, [&] { return tabSelected(documentId); });
}

nsresult ZABMzCC_OnGetSelectedTabID(const nsAString* documentId) {
    return entered(NS_OK, [&] { return selectedTabReported(documentId); });
}

nsresult ZABMzCC_OnUnload(const nsAString* documentId) {
    return entered(NS_OK, [&] { return documentUnloaded(documentId); });
}

nsresult ZABMzCC_OnME(nsISupports* event) {
    return entered(NS_OK, [&] { return mouseEvent(event); });
}

std::uint32_t ZABMzCC_GetListenerState() {
    return entered(0u, [] { return bothHooksSeen() ? 1u : 0u; });
}

std::int32_t ZABMzCC_ShouldLoad(std::uint32_t type, const nsACString* url, const nsACString* origin,
                                nsISupports* context, const nsACString* mimeGuess) {
    return entered(kPolicyAccept,
                   [&] { return answer(type, url, origin, context, mimeGuess, std::nullopt, false); });
}

std::int32_t ZABMzCC_ShouldLoad2(std::uint32_t type, const nsACString* url, const nsACString* origin,
                                 nsISupports* context, const nsACString* mimeGuess,
                                 const nsAString* documentId) {
    return entered(kPolicyAccept, [&] {
        return answer(type, url, origin, context, mimeGuess, documentIdOf(viewOf(documentId)), false);
    });
}

std::int32_t ZABMzCC_ShouldLoad_old1(std::uint32_t type, const nsACString* url, nsISupports* context) {
    return entered(kPolicyAccept,
                   [&] { return answer(type, url, nullptr, context, nullptr, std::nullopt, true); });
}

nsresult ZABMzCC_DownloadLinkWithZAB(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                                     const nsAString* description) {
    return entered(NS_ERROR_FAILURE, [&] { return downloadLink(url, referrer, cookies, description); });
}

nsresult ZABMzCC_DownloadAllWithZAB(const nsAString* markup, const nsAString* pageUrl,
                                    const nsAString* cookies) {
    return entered(NS_ERROR_FAILURE, [&] { return downloadAll(markup, pageUrl, cookies); });
}

nsresult ZABMzCC_DownloadLastFLVwithZAB(const nsAString* documentId) {
    return entered(NS_ERROR_FAILURE, [&] { return downloadNewestMedia(documentId, 1); });
}

nsresult ZABMzCC_DownloadLast10FLVwithZAB(const nsAString* documentId) {
    return entered(NS_ERROR_FAILURE, [&] { return downloadNewestMedia(documentId, 10); });
}

}  // extern "C"
