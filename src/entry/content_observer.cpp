#include "entry/content_observer.h"

#include <array>
#include <chrono>
#include <string_view>
#include <utility>

#include "binding/browser_string.h"
#include "binding/guard.h"
#include "entry/lifecycle.h"
#include "entry/registry_settings.h"
#include "intercept/channel.h"
#include "intercept/decision.h"
#include "intercept/load_types.h"
#include "intercept/post_body.h"
#include "media/capture/media_capture.h"
#include "page/handed_over.h"
#include "page/module_state.h"
#include "page/page.h"
#include "page/passwords.h"
#include "page/platform.h"
#include "page/request_lists.h"
#include "page/user_agent.h"
#include "settings/settings_store.h"
#include "settings/shared_list_lock.h"
#include "transfer/transfer.h"
#include "web/encoding.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

constexpr std::array<std::string_view, 3> kResponseTopics = {
    topics::kExamineResponse, topics::kExamineMergedResponse, topics::kExamineCachedResponse};

bool isResponseTopic(std::string_view topic) noexcept {
    for (const std::string_view known : kResponseTopics)
        if (topic == known) return true;
    return false;
}

HandedOver::Time now() { return std::chrono::steady_clock::now(); }

/// On the first start in this browser without a download manager, the user is told once.
void registerBrowserOnce() {
    if (RegisterBrowser() == Registration::created && !exePathNarrow()) reportMissingManagerAtStart();
}

/// Every decision that took something or left a caught file with the browser is told; the rest only to a
/// debugger that is there, because most responses are images and their line would cost more than their
/// examination.
bool worthTelling(const Decision& decision) noexcept {
    switch (decision.reason) {
        case Reason::integrationOff:
        case Reason::preventKeyHeld:
        case Reason::serverExcepted:
        case Reason::transferFailed:
        case Reason::keptByBrowserToo: return true;
        default: return decision.outcome == Outcome::transfer || decision.outcome == Outcome::cancel;
    }
}

std::string lineOf(const Decision& decision) {
    return "**********Examine " + std::string(outcomeName(decision.outcome)) + ": " + sentenceOf(decision) +
           "\r\n";
}

void tell(const Decision& decision) {
    if (worthTelling(decision) || debuggerWatches()) writeDebuggerText(lineOf(decision));
}

/// Makes the transfer that was decided and tells how it went; true when the download manager has it.
/// `navigation` is the URL of the channel. The decision's views may lead into the scratch record, so its line
/// is composed before the call.
bool transfer(const Channel& channel, const std::string& navigation, const TransferRecord& record,
              const Decision& decision) {
    const std::string line = lineOf(decision);
    handedOver().begins(channel.get(), navigation);
    const bool made = sendToDownloadManager(record) == TransferResult::made;
    handedOver().ends(channel.get(), navigation, made, now());
    if (made) writeDebuggerText(line);
    return made;
}

void tellOfFailedTransfer() {
    Decision kept;
    kept.reason = Reason::transferFailed;
    tell(kept);
}

void fillFromRequest(TransferRecord& record, const CapturedHeaders& headers) {
    record.url = headers.url;
    record.referrer = headers.referer;
    record.cookies = headers.cookie;
    record.userAgent = headers.userAgent;
    if (auto login = ParseBasicCredentials(headers.authorization)) {
        record.user = std::move(login->user);
        record.password = std::move(login->password);
    }
}

void fillFromPost(TransferRecord& record, CapturedPost post) {
    record.postBody = std::move(post.body);
    record.postContentType = std::move(post.contentType);
}

void fillFromPage(TransferRecord& record, Page page) {
    record.pageUrl = std::move(page.url);
    record.pageTitle = std::move(page.title);
}

void fillFromDecision(TransferRecord& record, const Decision& decision) {
    record.fileName = decision.fileName;
    record.typeHint = decision.extension;
    record.flags = decision.flags;
    if (decision.contentLength > 0) {
        record.sizeBytes = static_cast<std::uint64_t>(decision.contentLength);
        record.bodyOffered = true;
    }
}

/// Reads the request's headers into the record and remembers the login and the user agent that they show.
void visitRequest(const Channel& channel, nsISupports* visitor, CapturedHeaders& headers) {
    headers.visitRequestHeaders = true;
    channel.helper().VisitRequestHeaders(channel.get(), visitor);
    passwords().rememberAuthorization(headers.url, headers.authorization);
    noteUserAgent(headers.userAgent);
}

OBJECTREQUESTSARRAY_ITEM requestRecord(const CapturedHeaders& headers, const CapturedPost& post,
                                       const Page& page) {
    OBJECTREQUESTSARRAY_ITEM record;
    record.url = headers.url;
    record.pageUrl = page.url;
    record.referrer = headers.referer;
    record.cookies = headers.cookie;
    record.userAgent = headers.userAgent;
    record.authorization = headers.authorization;
    record.postBody = post.body;
    record.postContentType = post.contentType;
    record.document = page.document.get();
    record.documentId = documentIdOf(page.document.get());
    return record;
}

void followRedirect(const std::string& from, const std::string& location) {
    std::string to = resolveUrl(from, location);
    NormalizeDefaultPort(to);
    const SharedListLock lock(OnTimeout::skip);
    if (lock) requestLists().rename(from, to);
}

/// Takes an FTP download away from a redirect, which then leads to the sentinel.
void takeFtpRedirect(const Channel& channel, const std::string& from, const std::string& location,
                     const Decision& decision) {
    TransferRecord record;
    record.url = location;
    record.typeHint = decision.extension;
    record.flags = decision.flags;
    if (transfer(channel, from, record, decision)) {
        channel.setResponseHeader("Location", kSentinelUrl);
    } else {
        tellOfFailedTransfer();
    }
}

/// `failedBefore`: the download manager could not be told of this navigation, and is not asked again.
void examineRedirect(const Channel& channel, const std::string& url, bool failedBefore,
                     const SettingsView& settings) {
    const std::string location = channel.responseHeader("Location").value_or("");
    const Decision decision = decideRedirect(location, settings);
    if (decision.outcome == Outcome::transfer) {
        // A copy: the call dispatches messages, and the next notification may reuse the record that `url` lies
        // in.
        if (!failedBefore) takeFtpRedirect(channel, std::string(url), location, decision);
        return;
    }
    tell(decision);
    if (decision.reason != Reason::redirectFollowed) return;
    followRedirect(url, location);
    if (failedBefore) handedOver().redirected(channel.get(), url, resolveUrl(url, location), now());
}

/// The download manager has this download, and the browser goes on with it all the same.
void leaveToManager(const Channel& channel) {
    tell(decideHandedOver());
    channel.cancel();
}

void dropRequestRecord(const std::string& url) {
    const SharedListLock lock(OnTimeout::skip);
    if (lock) requestLists().requested.removeFirst(url);
}

}  // namespace

ContentObserver::~ContentObserver() {
    guarded([] { trafficObserverGone(); });
}

nsresult ContentObserver::Observe(nsISupports* subject, const char* topic, const char16_t*) {
    guarded([&] {
        registerBrowserOnce();
        if (subject == nullptr || topic == nullptr) return;
        if (std::string_view(topic) == topics::kModifyRequest) {
            OnModifyRequest(subject);
        } else if (isResponseTopic(topic)) {
            OnExamineResponse(subject);
        }
    });
    return NS_OK;
}

nsresult ContentObserver::OnModifyRequest(nsISupports* channel) {
    if (channel != nullptr) handedOver().channelStarts(channel);
    return guarded(NS_OK, [&] { return withChannel(channel, &ContentObserver::modify); });
}

nsresult ContentObserver::OnExamineResponse(nsISupports* channel) {
    markSeen(BrowserHook::responses);
    return guarded(NS_OK, [&] { return withChannel(channel, &ContentObserver::examine); });
}

nsresult ContentObserver::VisitHeader(const nsACString* name, const nsACString* value) {
    guarded([&] { visitHeader(scratch_, viewOf(name), viewOf(value)); });
    return NS_OK;
}

nsresult ContentObserver::withChannel(nsISupports* subject, nsresult (ContentObserver::*work)(const Channel&)) {
    nsresult status = NS_OK;
    const auto helper = service<iZABHelper5>(&status);
    if (!helper) return status;
    const Channel channel(*helper.get(), subject);
    scratch_.clear();
    status = channel.readUrl(scratch_.url);
    return failed(status) ? status : (this->*work)(channel);
}

nsresult ContentObserver::modify(const Channel& channel) {
    using State = HandedOver::State;
    const std::uint32_t flags = channel.loadFlags();
    const State state = (flags & kTopLevelLoad) == 0
                            ? State::notYet
                            : handedOver().loadStarts(channel.get(), scratch_.url, now());
    if (state == State::made) {
        leaveToManager(channel);
        return NS_OK;
    }
    const Decision decision = decideRequest({scratch_.url, flags}, RegistrySettings{});
    if (decision.outcome == Outcome::cancel) {
        tell(decision);
        channel.cancel();
        return NS_OK;
    }
    visitRequest(channel, identity(), scratch_);
    CapturedPost post = CapturePostBodyForRequest(channel.helper(), channel.get(), scratch_.url);
    Page page = pageOf(channel.helper(), channel.get());
    auto request = requestRecord(scratch_, post, page);
    if (const SharedListLock lock(OnTimeout::skip); lock)
        requestLists().requested.addRequest(std::move(request));

    if (decision.outcome != Outcome::transfer || state == State::failed) return NS_OK;
    TransferRecord record;
    fillFromRequest(record, scratch_);
    fillFromPost(record, std::move(post));
    fillFromPage(record, std::move(page));
    fillFromDecision(record, decision);
    if (transfer(channel, record.url, record, decision)) {
        channel.cancel();
    } else {
        tellOfFailedTransfer();
    }
    return NS_OK;
}

nsresult ContentObserver::examine(const Channel& channel) {
    using State = HandedOver::State;
    const State state = handedOver().stateOf(channel.get(), scratch_.url);
    if (state == State::made) leaveToManager(channel);
    if (state == State::made || state == State::underWay) return NS_OK;
    std::uint32_t httpStatus = 0;
    if (const nsresult status = channel.readStatus(httpStatus); failed(status)) return status;
    switch (examinationOf(httpStatus)) {
        case Examination::nothing:
            tell(decide(factsOf(scratch_, httpStatus, 0), RegistrySettings{}));
            dropRequestRecord(scratch_.url);
            break;
        case Examination::redirect:
            examineRedirect(channel, scratch_.url, state == State::failed, RegistrySettings{});
            break;
        case Examination::content: examineContent(channel, httpStatus, state == State::failed); break;
    }
    return NS_OK;
}

void ContentObserver::examineContent(const Channel& channel, std::uint32_t httpStatus, bool failedBefore) {
    channel.helper().VisitResponseHeaders(channel.get(), identity());
    const RegistrySettings settings;
    const ResponseFacts facts = factsOf(scratch_, httpStatus, channel.loadFlags());
    Decision decision = decide(facts, settings);
    if (decision.outcome == Outcome::transfer) {
        if (!failedBefore) return take(channel, facts, decision);
        decision = afterFailedTransfer(facts, settings);
    }
    tell(decision);
    if (!isMediaOfPage(decision, facts.loadFlags, facts.url)) return;
    visitRequest(channel, identity(), scratch_);
    captureMedia({channel.get(), scratch_, decision, facts.loadFlags});
}

/// The transfer calls into another process, and this record may serve another examination meanwhile: from here
/// on a copy of it is used.
void ContentObserver::take(const Channel& channel, const ResponseFacts& scratchFacts,
                           const Decision& decision) {
    visitRequest(channel, identity(), scratch_);
    CapturedPost post = CapturePostBodyForResponse(channel.helper(), channel.get());
    scratch_.postBodyUnavailable = post.unavailable;
    const CapturedHeaders headers = scratch_;
    const ResponseFacts facts = factsOf(headers, scratchFacts.status, scratchFacts.loadFlags);

    TransferRecord record;
    fillFromRequest(record, headers);
    fillFromDecision(record, decision);
    fillFromPost(record, std::move(post));
    fillFromPage(record, pageOf(channel.helper(), channel.get()));
    record.contentType = headers.contentType;
    record.flags = transferFlagsOf(facts);
    const bool made = transfer(channel, headers.url, record, decision);
    if (made && channel.cancel()) return;
    const RegistrySettings settings;
    const Decision kept = made ? afterFailedCancel(facts, settings) : afterFailedTransfer(facts, settings);
    tell(kept);
    captureMedia({channel.get(), headers, kept, facts.loadFlags});
}

}  // namespace zab
