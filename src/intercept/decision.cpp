#include "intercept/decision.h"

#include <optional>

#include "binding/text.h"
#include "intercept/catch_list.h"
#include "intercept/load_types.h"
#include "intercept/mime_classes.h"
#include "page/media_entry.h"
#include "transfer/transfer_record.h"
#include "web/url.h"

namespace zab {
namespace {

// Two thresholds that differ by one; both are meant.
constexpr std::int64_t kLongTextBytes = 256'001;       // text this long may be an archive in disguise
constexpr std::int64_t kSmallMp4LimitBytes = 256'000;  // an MP4 below it is a sound effect or an advertisement

constexpr std::string_view kDynamicPages[] = {"asp", "jsp", "php", "cgi", "pl"};
constexpr std::string_view kPageTypes[] = {"text/html", "application/xhtml+xml"};
constexpr std::string_view kBinaryTypes[] = {"application/octet-stream", "application/x-sdlc",
                                             "binary/octet-stream"};

/// A response with everything that the rules ask of it more than once.
struct Examined {
    const ResponseFacts& facts;
    std::string_view fileName;
    std::int64_t contentLength;
    std::string_view classCode;
    std::string_view ownExtension;          // of the file name, else of the path
    std::string_view extension;             // of the record
    std::string_view beforeQueryExtension;  // of a URL with a query; empty: none that can be one

    [[nodiscard]] bool isDocumentLoad() const noexcept { return (facts.loadFlags & kDocumentLoad) != 0; }
    /// A page about a file has the file's name in its address, and is a page all the same.
    [[nodiscard]] bool isPage() const noexcept { return startsWithOneOf(facts.contentType, kPageTypes); }
};

std::string_view recordExtension(std::string_view own, bool fromUrl, std::string_view classCode) noexcept {
    if (fromUrl && isOneOfIgnoringCase(own, kDynamicPages)) return classCode;
    const bool codeSpeaks = !classCode.empty() && !equalsIgnoringCase(classCode, kFlvExtension);
    return codeSpeaks && !equalsIgnoringCase(classCode, own) ? classCode : own;
}

std::string_view extensionBeforeQuery(std::string_view url) noexcept {
    const std::string_view cut = upTo(url, '?');
    return cut.size() == url.size() ? std::string_view{} : plainExtensionOf(cut);
}

Examined examine(const ResponseFacts& facts) noexcept {
    const std::string_view fileName = facts.fileName.empty() ? facts.contentTypeName : facts.fileName;
    const std::string_view classCode = ClassifyMimeType(facts.contentType);
    const bool fromUrl = fileName.empty();
    const std::string_view own = extensionOf(fromUrl ? lastSegmentOf(facts.url) : fileName);
    return {facts,
            fileName,
            facts.isEncoded ? 0 : facts.contentLength,
            classCode,
            own,
            recordExtension(own, fromUrl, classCode),
            fromUrl ? extensionBeforeQuery(facts.url) : std::string_view{}};
}

// The tests that can take a response. Each looks at the list last, so that a response which no list could make
// a download reads no setting.

bool takenByFileName(const Examined& response, CatchList& list) {
    return !response.fileName.empty() && acceptsFileName(response.fileName, NumberedParts::allowed, list);
}

bool takenByAttachmentUrl(const Examined& response, CatchList& list) {
    return response.facts.isAttachment && list.holds(response.beforeQueryExtension);
}

bool takenByType(const Examined& response, CatchList& list) {
    if (response.classCode.empty()) return false;
    return (equalsIgnoringCase(response.classCode, response.beforeQueryExtension) ||
            startsWithOneOf(response.facts.contentType, kBinaryTypes)) &&
           list.holds(response.beforeQueryExtension);
}

bool takenAsLongText(const Examined& response, CatchList& list) {
    return startsWithIgnoringCase(response.facts.contentType, "text/plain") &&
           response.contentLength >= kLongTextBytes && list.holds(response.beforeQueryExtension);
}

bool takenAsDocument(const Examined& response, CatchList& list) {
    return response.fileName.empty() && response.isDocumentLoad() && !response.isPage() &&
           acceptsFileName(lastSegmentOf(response.facts.url), NumberedParts::allowed, list);
}

struct TakeTest {
    bool (*takes)(const Examined& response, CatchList& list);
    Reason reason;
};

constexpr TakeTest kTakeTests[] = {
    {takenByFileName, Reason::caughtByFileName}, {takenByAttachmentUrl, Reason::caughtByAttachmentUrl},
    {takenByType, Reason::caughtByType},         {takenAsLongText, Reason::caughtAsLongText},
    {takenAsDocument, Reason::caughtAsDocument},
};

std::optional<Reason> reasonToTake(const Examined& response, CatchList& list) {
    for (const TakeTest& test : kTakeTests)
        if (test.takes(response, list)) return test.reason;
    return std::nullopt;
}

Reason reasonNotToTake(const Examined& response, const CatchList& list) noexcept {
    if (list.foundNone()) return Reason::noCatchList;
    const bool nameCounted = !response.fileName.empty() || response.isDocumentLoad();
    if (!nameCounted && !list.wasAsked()) return Reason::partOfPage;
    if (response.ownExtension.empty()) return Reason::withoutExtension;
    const bool judgedAsPage = response.fileName.empty() && response.isPage() && !list.wasAsked();
    return judgedAsPage ? Reason::page : Reason::notInCatchList;
}

/// What keeps a download with the browser although it is in the list. These concern transfers only.
std::optional<Reason> reasonToSpare(std::string_view url, const SettingsView& settings) {
    if (!settings.integrationOn()) return Reason::integrationOff;
    if (settings.preventKeyHeld()) return Reason::preventKeyHeld;
    if (settings.exceptionServers().IsListed(url)) return Reason::serverExcepted;
    return std::nullopt;
}

// The media paths.

KindFacts kindFactsOf(const Examined& response) noexcept {
    const ResponseFacts& facts = response.facts;
    return {facts.url,         hostOf(facts.url),     behindHost(facts.url), pathOf(facts.url),
            facts.contentType, response.ownExtension, response.classCode,    response.contentLength,
            facts.status,      facts.loadFlags};
}

bool isSmallMp4(const Examined& response) noexcept {
    return equalsIgnoringCase(response.extension, "mp4") && !response.facts.isAttachment &&
           response.contentLength > 0 && response.contentLength < kSmallMp4LimitBytes;
}

/// Whether the response itself becomes a media entry of its page, unless a listener speaks for it.
bool isMediaFile(const Examined& response, const KindFacts& kind) noexcept {
    if ((kind.loadFlags & kTopLevelLoad) != 0 || isVideoPlayback(kind)) return false;
    return equalsIgnoringCase(response.classCode, kFlvExtension) || endsWithIgnoringCase(kind.path, ".flv") ||
           (isMediaExtension(response.extension) && !isSmallMp4(response));
}

Decision staysWithBrowser(const Examined& response, Reason reason, const SettingsView& settings) {
    Decision decision;
    decision.reason = reason;
    decision.status = response.facts.status;
    decision.extension = response.extension;
    decision.ownExtension = response.ownExtension;
    decision.fileName = response.fileName;
    decision.contentLength = response.contentLength;

    const KindFacts facts = kindFactsOf(response);
    MediaKind kind = mediaKindOf(facts, settings);
    if (kind != MediaKind::none && settings.listenSkipped(facts.host)) kind = MediaKind::none;
    decision.offer = (kind == MediaKind::none || kind == MediaKind::sniff) && isMediaFile(response, facts);
    if (decision.offer || kind == MediaKind::none) return decision;
    decision.outcome = Outcome::listen;
    decision.listener = kind;
    return decision;
}

Decision plain(Outcome outcome, Reason reason, std::uint32_t flags = 0) noexcept {
    Decision decision;
    decision.outcome = outcome;
    decision.reason = reason;
    decision.flags = flags;
    return decision;
}

bool isFetchable(std::string_view url) noexcept {
    return hasScheme(url, "http") || hasScheme(url, "https") || hasScheme(url, "ftp");
}

bool isForced(const SettingsView& settings) {
    return settings.integrationOn() && !settings.preventKeyHeld() && settings.forceKeyHeld();
}

/// Of a name that the list does not accept: why not.
Decision uncaught(std::string_view url, const CatchList& list) noexcept {
    Decision decision = plain(Outcome::browser, Reason::withoutExtension);
    decision.ownExtension = extensionOf(lastSegmentOf(url));
    if (list.foundNone())
        decision.reason = Reason::noCatchList;
    else if (!decision.ownExtension.empty())
        decision.reason = Reason::notInCatchList;
    return decision;
}

}  // namespace

Decision decideRequest(const RequestFacts& facts, const SettingsView& settings) {
    if (facts.url == kSentinelUrl) return plain(Outcome::cancel, Reason::sentinel);
    if ((facts.loadFlags & kTopLevelLoad) == 0 || !isFetchable(facts.url) || !isForced(settings))
        return plain(Outcome::browser, Reason::notForced);
    return plain(Outcome::transfer, Reason::forced, transfer_flags::kForced);
}

Decision decidePolicy(const PolicyFacts& facts, const SettingsView& settings) {
    if (facts.type != policy_types::kDocument || !isFetchable(facts.url))
        return plain(Outcome::browser, Reason::partOfPage);
    if (isForced(settings)) return plain(Outcome::transfer, Reason::forced, transfer_flags::kForced);
    if (!facts.takesClicks) return plain(Outcome::browser, Reason::notForced);
    if (!facts.clicked) return plain(Outcome::browser, Reason::notClicked);
    CatchList list(settings);
    if (!acceptsFileName(lastSegmentOf(facts.url), NumberedParts::allowed, list))
        return uncaught(facts.url, list);
    if (const auto spared = reasonToSpare(facts.url, settings)) return plain(Outcome::browser, *spared);
    return plain(Outcome::transfer, Reason::caughtAsDocument, transfer_flags::kForced);
}

Decision decideHandedOver() noexcept { return plain(Outcome::cancel, Reason::handedOverBefore); }

Examination examinationOf(std::uint32_t status) noexcept {
    switch (status) {
        case 200:
        case 206: return Examination::content;
        case 301:
        case 302:
        case 303:
        case 307: return Examination::redirect;
        default: return Examination::nothing;
    }
}

bool isFtpLocation(std::string_view location) noexcept { return startsWithIgnoringCase(location, "ftp:"); }

Decision decideRedirect(std::string_view location, const SettingsView& settings) {
    if (location.empty()) return plain(Outcome::browser, Reason::redirectWithoutLocation);
    if (!isFtpLocation(location)) return plain(Outcome::browser, Reason::redirectFollowed);
    if (const auto spared = reasonToSpare(location, settings)) return plain(Outcome::browser, *spared);
    CatchList list(settings);
    if (acceptsFileName(location, NumberedParts::refused, list))
        return plain(Outcome::transfer, Reason::ftpRedirectCaught, transfer_flags::kForced);
    return uncaught(location, list);
}

ResponseFacts factsOf(const CapturedHeaders& headers, std::uint32_t status, std::uint32_t loadFlags) noexcept {
    return {headers.url,
            status,
            loadFlags,
            headers.fileName,
            headers.contentTypeName,
            headers.contentType,
            headers.contentLength,
            headers.isAttachment,
            headers.isEncoded,
            headers.postBodyUnavailable};
}

Decision decide(const ResponseFacts& facts, const SettingsView& settings) {
    if (examinationOf(facts.status) != Examination::content) {
        Decision decision =
            plain(Outcome::browser, facts.status == 0 ? Reason::noResponse : Reason::statusNotExamined);
        decision.status = facts.status;
        return decision;
    }
    const Examined response = examine(facts);
    CatchList list(settings);
    const auto caught = reasonToTake(response, list);
    if (!caught) return staysWithBrowser(response, reasonNotToTake(response, list), settings);
    if (const auto spared = reasonToSpare(facts.url, settings))
        return staysWithBrowser(response, *spared, settings);
    Decision decision = plain(Outcome::transfer, *caught, transferFlagsOf(facts));
    decision.extension = response.extension;
    decision.ownExtension = response.ownExtension;
    decision.fileName = response.fileName;
    decision.contentLength = response.contentLength;
    decision.status = facts.status;
    return decision;
}

Decision afterFailedTransfer(const ResponseFacts& facts, const SettingsView& settings) {
    return staysWithBrowser(examine(facts), Reason::transferFailed, settings);
}

Decision afterFailedCancel(const ResponseFacts& facts, const SettingsView& settings) {
    return staysWithBrowser(examine(facts), Reason::keptByBrowserToo, settings);
}

std::uint32_t transferFlagsOf(const ResponseFacts& facts) noexcept {
    return transfer_flags::ofResponse(facts.postBodyUnavailable, !facts.fileName.empty());
}

}  // namespace zab
