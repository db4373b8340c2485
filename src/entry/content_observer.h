// The observer of the browser's HTTP traffic: gathers the facts of a request or a response, asks the decision,
// acts.
//
// One object serves the whole process on the browser's main thread. What it gathers stands in one scratch
// record, so two examinations never overlap; everything that must outlive a call into another process (which
// dispatches window messages and may bring the next notification) is copied out of the record before that call.
#pragma once

#include "binding/browser_object.h"
#include "binding/interfaces/helpers.h"
#include "binding/interfaces/http.h"
#include "intercept/channel.h"
#include "intercept/decision.h"

namespace zab {

namespace topics {
inline constexpr const char* kModifyRequest = "http-on-modify-request";
inline constexpr const char* kExamineResponse = "http-on-examine-response";
inline constexpr const char* kExamineMergedResponse = "http-on-examine-merged-response";
inline constexpr const char* kExamineCachedResponse = "http-on-examine-cached-response";
}  // namespace topics

class ContentObserver final : public BrowserObject<ContentObserver, nsIObserver, nsIHttpNotify,
                                                   nsIHttpHeaderVisitor, nsIHttpHeaderVisitor_7> {
  public:
    ContentObserver() = default;
    /// When the browser lets it go, the module's work ends with it.
    ~ContentObserver();

    /// Dispatches the four HTTP topics, with the channel as subject. Always succeeds.
    nsresult Observe(nsISupports* subject, const char* topic, const char16_t* data) override;

    nsresult OnModifyRequest(nsISupports* channel) override;
    /// 0, or the helper's failure when the response could not be examined.
    nsresult OnExamineResponse(nsISupports* channel) override;

    /// One header of the channel that is being examined, under both generations of the interface.
    nsresult VisitHeader(const nsACString* name, const nsACString* value) override;

  private:
    /// Begins an examination: reaches the helper, clears the scratch record, reads the URL. Without them, why.
    nsresult withChannel(nsISupports* subject, nsresult (ContentObserver::*work)(const Channel&));
    nsresult modify(const Channel& channel);
    nsresult examine(const Channel& channel);
    /// `failedBefore`: the download manager could not be told of this navigation, and is not asked again.
    void examineContent(const Channel& channel, std::uint32_t httpStatus, bool failedBefore);
    void take(const Channel& channel, const ResponseFacts& scratchFacts, const Decision& decision);

    CapturedHeaders scratch_;
};

}  // namespace zab
