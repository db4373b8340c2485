#include "binding/guard.h"
#include "transfer/link_transmitter_win32.h"
#include "transfer/transfer.h"

namespace zab {
namespace {

const char* orNull(const std::string& text) noexcept { return text.empty() ? nullptr : text.c_str(); }

TransferResult send(const TransferRecord& record, LinkTransmitterSession& session) noexcept {
    if (record.postBody.size() > INT32_MAX) return TransferResult::notMade;
    std::int32_t retryLater = 0;
    const bool made = SendToLinkTransmitter(
        orNull(record.url), orNull(record.cookies), orNull(record.user), orNull(record.password),
        orNull(record.referrer), orNull(record.userAgent), orNull(record.fileName), orNull(record.postBody),
        static_cast<std::int32_t>(record.postBody.size()), orNull(record.postContentType),
        orNull(record.typeHint), orNull(record.pageTitle), record.bodyOffered ? 1 : 0, record.sizeBytes, 0,
        record.flags, orNull(record.contentType), orNull(record.pageUrl), orNull(record.secondUrl),
        orNull(record.extraData), record.extraData.empty() ? 0 : 1, orNull(record.description), &retryLater,
        &session);
    if (made) return TransferResult::made;
    return retryLater != 0 ? TransferResult::retryLater : TransferResult::notMade;
}

}  // namespace

TransferResult sendToDownloadManager(const TransferRecord& record) noexcept {
    LinkTransmitterSession session;
    return send(record, session);
}

TransferSession::TransferSession() : session_(std::make_unique<LinkTransmitterSession>()) {}
TransferSession::~TransferSession() = default;

TransferResult TransferSession::send(const TransferRecord& record) noexcept {
    return zab::send(record, *session_);
}

TransferResult TransferSession::sendAsBrowser(TransferRecord record) noexcept {
    return guarded(TransferResult::notMade, [&] {
        session_->access().complete(record);
        makeNarrow(record);
        return send(record);
    });
}

}  // namespace zab
