#include "entry/content_policy.h"

#include <chrono>
#include <string>
#include <utility>

#include "entry/registry_settings.h"
#include "intercept/catch_list.h"
#include "intercept/decision.h"
#include "intercept/load_types.h"
#include "page/handed_over.h"
#include "page/module_state.h"
#include "page/platform.h"
#include "page/request_lists.h"
#include "settings/shared_list_lock.h"
#include "transfer/transfer.h"
#include "web/url.h"
#include "web/web_address.h"

namespace zab {
namespace {

/// A page of the web has an address that a server may see as referrer; windows of the browser have none.
std::string pageAddress(std::string_view origin) {
    return webAddressOf(origin) ? std::string(origin) : std::string{};
}

DocumentId documentOf(const PolicyQuestion& question) {
    return question.document ? *question.document : documentIdOf(question.context);
}

void recordObjectRequest(const PolicyQuestion& question) {
    OBJECTREQUESTSARRAY_ITEM record;
    record.url = question.url;
    record.pageUrl = pageAddress(question.origin);
    record.referrer = record.pageUrl;
    record.document = question.context;
    record.documentId = documentOf(question);
    record.extension = plainExtensionOf(lastSegmentOf(question.url));
    record.kind = objectKindOf(question.mimeGuess, record.extension);
    record.fromPolicy = true;
    const SharedListLock lock(OnTimeout::skip);
    if (lock) requestLists().requested.add(std::move(record));
}

TransferRecord transferOf(const PolicyQuestion& question, const Decision& decision) {
    TransferRecord record;
    record.url = question.url;
    record.referrer = pageAddress(question.origin);
    record.pageUrl = record.referrer;
    record.flags = decision.flags;
    return record;
}

std::int32_t answerNavigation(const PolicyQuestion& question) {
    handedOver().policyAsked(question.url);
    const bool clicked = std::exchange(moduleState().mousePressed, false);
    const Decision decision =
        decidePolicy({question.type, question.url, clicked, question.takesClicks}, RegistrySettings{});
    if (decision.outcome != Outcome::transfer) return kPolicyAccept;
    const TransferRecord record = transferOf(question, decision);
    const std::string line = "**********Policy transfer: " + sentenceOf(decision) + "\r\n";
    TransferSession session;
    handedOver().begins(nullptr, record.url);
    const bool made = session.sendAsBrowser(record) == TransferResult::made;
    // From here on nothing may fail: what the download manager has must not be loaded as well.
    handedOver().ends(nullptr, record.url, made, std::chrono::steady_clock::now());
    if (!made) return kPolicyAccept;
    writeDebuggerText(line);
    return kPolicyReject;
}

}  // namespace

std::int32_t answerPolicy(const PolicyQuestion& question) {
    markSeen(BrowserHook::contentPolicy);
    // Asked for every load of every page: the line is composed only for who reads it.
    if (debuggerWatches())
        writeDebuggerText("********** docID=" + std::to_string(documentOf(question)) + "\r\n");
    if (isObjectRequest(question.type)) recordObjectRequest(question);
    return question.type == policy_types::kDocument ? answerNavigation(question) : kPolicyAccept;
}

}  // namespace zab
