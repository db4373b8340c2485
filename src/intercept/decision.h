// The decisions of the interception, as values: what happens to a request, a redirect, a response, and why.
//
// One function per moment. They touch nothing but their arguments, ask a setting only when a rule needs it, and
// allocate only for the settings that they ask; views in a Decision point into the facts or to constants. The
// module acts on the value, zabprobe prints it, tests compare it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "intercept/header_capture.h"
#include "intercept/kinds.h"
#include "intercept/load_types.h"
#include "settings/settings_view.h"

namespace zab {

/// A redirect that was taken over is pointed here; the request for it is cancelled before it is sent.
inline constexpr std::string_view kSentinelUrl = "http://www.mozilla.org/thisrequestistransferredtozab.stop";

enum class Outcome : std::uint8_t {
    browser,   // stays with the browser
    transfer,  // goes to the download manager
    listen,    // stays with the browser, and its body is read for media
    cancel,    // ended: the sentinel's request, and what the download manager has already
};

/// Why; each has one sentence for people.
enum class Reason : std::uint8_t {
    sentinel,
    forced,
    notForced,
    redirectFollowed,  // the records of the request take the new URL
    redirectWithoutLocation,
    ftpRedirectCaught,
    noResponse,
    statusNotExamined,
    caughtByFileName,
    caughtByAttachmentUrl,
    caughtByType,
    caughtAsLongText,
    caughtAsDocument,
    integrationOff,
    preventKeyHeld,
    serverExcepted,
    noCatchList,
    notInCatchList,
    withoutExtension,
    partOfPage,
    page,
    notClicked,
    handedOverBefore,
    transferFailed,
    keptByBrowserToo,
};

struct Decision {
    Outcome outcome = Outcome::browser;
    Reason reason = Reason::partOfPage;
    bool offer = false;  // the response itself becomes a media entry of its page
    MediaKind listener = MediaKind::none;
    std::string_view extension;      // of the record, without dot
    std::string_view ownExtension;   // of the name, before the content type had its say
    std::string_view fileName;       // with its "utf-8''" prefix; empty: the server named none
    std::int64_t contentLength = 0;  // bytes; 0: unknown
    std::uint32_t flags = 0;         // of the transfer
    std::uint32_t status = 0;
};

std::string_view outcomeName(Outcome outcome) noexcept;

/// One sentence that a user understands and can act on; it never quotes a cookie, a credential or a query.
std::string sentenceOf(const Decision& decision);

struct RequestFacts {
    std::string_view url;
    std::uint32_t loadFlags = 0;
};

/// Before a request is sent: the sentinel (cancel), the force keys (transfer), else browser.
Decision decideRequest(const RequestFacts& facts, const SettingsView& settings);

struct PolicyFacts {
    std::uint32_t type = 0;  // see load_types.h
    std::string_view url;
    bool clicked = false;  // the first page that is loaded since the user pressed a mouse button
    /// Browsers that give pages no document IDs do not tell this module of all their requests in time: there a
    /// click on a file of the catch list is taken here already.
    bool takesClicks = false;
};

/// When the content policy is asked: transfer, else browser.
Decision decidePolicy(const PolicyFacts& facts, const SettingsView& settings);

/// A navigation that was handed over before: cancel.
Decision decideHandedOver() noexcept;

/// What is examined about a response with this status.
enum class Examination : std::uint8_t { content, redirect, nothing };
Examination examinationOf(std::uint32_t status) noexcept;

/// Whether a redirect leads to an FTP server; such a Location is used as it stands, any other one is stripped
/// of its default port and replaces the URL of the records.
bool isFtpLocation(std::string_view location) noexcept;

/// A redirect to `location`, the value of its Location header.
Decision decideRedirect(std::string_view location, const SettingsView& settings);

struct ResponseFacts {
    std::string_view url;  // final request URL, fragment included
    std::uint32_t status = 0;
    std::uint32_t loadFlags = 0;
    std::string_view fileName;         // of Content-Disposition
    std::string_view contentTypeName;  // stands in for an absent file name
    std::string_view contentType;
    std::int64_t contentLength = 0;  // bytes
    bool isAttachment = false;
    bool isEncoded = false;  // the length is that of the packed body and tells nothing
    bool postBodyUnavailable = false;
};

/// Views into `headers`, its URL included.
ResponseFacts factsOf(const CapturedHeaders& headers, std::uint32_t status, std::uint32_t loadFlags) noexcept;

/// A response that is no redirect.
Decision decide(const ResponseFacts& facts, const SettingsView& settings);

/// What is left of a response whose transfer failed: the browser keeps it, and it may still be media.
Decision afterFailedTransfer(const ResponseFacts& facts, const SettingsView& settings);

/// The same of one whose transfer was made, but which the browser could not be made to drop.
Decision afterFailedCancel(const ResponseFacts& facts, const SettingsView& settings);

/// The flags of its transfer; to be asked again once the POST body was, or could not be, captured.
std::uint32_t transferFlagsOf(const ResponseFacts& facts) noexcept;

}  // namespace zab
