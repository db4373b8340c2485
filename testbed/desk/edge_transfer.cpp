// The way to the desk's download manager: what would travel through COM is kept as text.
#include "binding/browser_text_win32.h"
#include "binding/browser_thread.h"
#include "binding/guard.h"
#include "binding/utf.h"
#include "desk/desk.h"
#include "settings/settings_store.h"
#include "transfer/ascii_host.h"
#include "transfer/browser_access.h"
#include "transfer/failure_report.h"
#include "transfer/transfer.h"
#include "web/file_name.h"
#include "web/url.h"

namespace zab {

class LinkTransmitterSession {
  public:
    bool connected = false;
    BrowserAccess access;
};

namespace {

using testbed::desk;

testbed::Told toldOf(const TransferRecord& record, BrowserAccess& access) {
    const ExtraDataSource source{.userAgent = record.userAgent,
                                 .bodyFile = {},
                                 .pageTitle = record.pageTitle,
                                 .typeHint = record.typeHint,
                                 .postContentType = record.postContentType,
                                 .postGiven = !record.postBody.empty(),
                                 .contentType = record.contentType,
                                 .sizeBytes = record.sizeBytes,
                                 .pageUrl = record.pageUrl,
                                 .page = access.of(record.pageUrl),
                                 .secondUrl = record.secondUrl,
                                 .second = access.of(record.secondUrl),
                                 .extraData = record.extraData,
                                 .extraDataGiven = !record.extraData.empty(),
                                 .description = record.description};
    testbed::Told told;
    told.flags = record.flags;
    told.texts["url"] = withoutFragment(record.url);
    const std::pair<const char*, const std::string&> texts[] = {
        {"referrer", record.referrer}, {"cookies", record.cookies},   {"postData", record.postBody},
        {"user", record.user},         {"password", record.password}, {"fileName", record.fileName}};
    for (const auto& [name, text] : texts)
        if (!text.empty()) told.texts[name] = text;
    const auto elements = extraDataOf(source);
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i]) told.texts[testbed::nameOf(static_cast<ExtraElement>(i))] = *elements[i];
    return told;
}

void tell(std::string_view text, std::string_view title) {
    desk().boxes.push_back({utf16FromUtf8(title), utf16FromUtf8(text)});
}

/// Failures that come while the box of one is open are told by it.
void report(std::uint32_t status) {
    if (!desk().boxes.empty()) return;
    tell(failureBoxFor(status, {exePathNarrow(), ""}, messageTexts()).text, kFailureBoxTitle);
}

/// Ends at the call's own end: a server that dies during it takes the connection along.
TransferResult send(const TransferRecord& record, LinkTransmitterSession& session) {
    if (record.url.empty()) return TransferResult::notMade;
    session.connected = session.connected || (desk().managerRegistered && !desk().fails("CoCreateInstance"));
    if (!session.connected && desk().noCallsNow) return TransferResult::retryLater;
    if (!session.connected) {
        report(transfer_failure::kClassNotRegistered);
        return TransferResult::notMade;
    }
    constexpr std::uint32_t kServerDied = 0x800706BA;
    auto told = toldOf(record, session.access);
    auto& dies = std::get<std::uint32_t>(desk().settings["TestbedDie"]);
    if (!desk().fails("SendLinkToZab")) {
        desk().told.push_back(std::move(told));
        if (dies != 1) {
            dies -= dies != 0;
            return TransferResult::made;
        }
    }
    session.connected = false;
    report(kServerDied);
    return TransferResult::notMade;
}

}  // namespace

TransferResult sendToDownloadManager(const TransferRecord& record) noexcept {
    return guarded(TransferResult::notMade, [&] { return TransferSession().send(record); });
}
TransferSession::TransferSession() : session_(std::make_unique<LinkTransmitterSession>()) {}
TransferSession::~TransferSession() = default;
TransferResult TransferSession::send(const TransferRecord& record) noexcept {
    return guarded(TransferResult::notMade, [&] { return zab::send(record, *session_); });
}
TransferResult TransferSession::sendAsBrowser(TransferRecord record) noexcept {
    return guarded(TransferResult::notMade, [&] {
        session_->access.complete(record);
        makeNarrow(record);
        return send(record);
    });
}

std::optional<std::string> asciiHostOf(std::string_view) { return std::nullopt; }

void makeNarrow(TransferRecord& record) {
    for (std::string* text : {&record.description, &record.pageTitle})
        if (isCompleteUtf8(*text)) *text = narrowPreferringAnsi(utf16FromUtf8(*text)).value_or("");
}

void reportMissingManagerAtStart() noexcept {
    guarded([] { report(transfer_failure::kMissingAtStart); });
}
void reportNoCallsNow() noexcept {
    guarded([] { report(transfer_failure::kNoCallsNow); });
}
void reportNoLinksFound() noexcept {
    guarded([] { tell(messageTexts()[TextId::noLinksFound].view(), kFailureBoxTitle); });
}
void reportNoMediaFound() noexcept {
    guarded(
        [] { tell(messageTexts()[TextId::noFlvFound].view(), messageTexts()[TextId::savingFlvTitle].view()); });
}

}  // namespace zab
