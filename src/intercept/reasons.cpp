// The words for people: what became of a response, and why.

#include <iterator>
#include <string>

#include "binding/text.h"
#include "intercept/decision.h"

namespace zab {
namespace {

constexpr std::string_view kGap = "{}";  // in a sentence: the extension, or the status
constexpr std::size_t kLongestQuoted = 16;

struct ReasonRow {
    Reason reason;
    std::string_view sentence;
};

constexpr ReasonRow kReasons[] = {
    {Reason::sentinel,
     "This request marks a redirect that the download manager has taken over; it is cancelled."},
    {Reason::forced, "The force keys were held, so the link was taken whatever it is."},
    {Reason::notForced, "Nothing about the request asks to take it before there is a response."},
    {Reason::redirectFollowed, "The server redirects; what the browser gets from the new address decides."},
    {Reason::redirectWithoutLocation, "The server redirects without saying where to."},
    {Reason::ftpRedirectCaught,
     "The server redirects to an FTP file whose extension is in the list of extensions to catch."},
    {Reason::noResponse, "There was no response: the request failed, or something else answered it."},
    {Reason::statusNotExamined, "The response status is {}; only responses of status 200 and 206 are caught."},
    {Reason::caughtByFileName,
     "The server named the file, and its extension is in the list of extensions to catch."},
    {Reason::caughtByAttachmentUrl,
     "The server wants the response saved, and the address has an extension of the list of extensions to "
     "catch."},
    {Reason::caughtByType,
     "The content type agrees with the extension of the address, which is in the list of extensions to catch."},
    {Reason::caughtAsLongText,
     "It is too long for a text, and the address has an extension of the list of extensions to catch."},
    {Reason::caughtAsDocument,
     "The link was opened, and the address has an extension of the list of extensions to catch."},
    {Reason::integrationOff, "The integration with this browser is switched off (setting \"int\")."},
    {Reason::preventKeyHeld, "The keys that prevent catching were held (setting \"UseKeyToPrevent\")."},
    {Reason::serverExcepted, "The server is one of the excepted servers (setting \"ExceptionServers\")."},
    {Reason::noCatchList,
     "The list of extensions to catch is empty or cannot be read (setting \"Extensions\")."},
    {Reason::notInCatchList,
     "The extension '{}' is not in the list of extensions to catch (setting \"Extensions\")."},
    {Reason::withoutExtension,
     "The name of the file has no extension, so the list of extensions cannot name it."},
    {Reason::partOfPage,
     "It is a part of a page: nobody opened it, and the server did not name a file to save."},
    {Reason::page, "It is a page, whatever its address ends in: its content type says so."},
    {Reason::notClicked, "The page was not opened by a click, so its address alone does not decide."},
    {Reason::handedOverBefore, "The download manager has this download already."},
    {Reason::transferFailed, "The download manager could not be reached, so the browser keeps the download."},
    {Reason::keptByBrowserToo,
     "The download manager has this download, but the browser could not be made to drop its own."},
};

constexpr bool rowsStandInTheOrderOfTheirReasons() noexcept {
    for (std::size_t i = 0; i < std::size(kReasons); ++i)
        if (kReasons[i].reason != static_cast<Reason>(i)) return false;
    return std::size(kReasons) == static_cast<std::size_t>(Reason::keptByBrowserToo) + 1;
}
static_assert(rowsStandInTheOrderOfTheirReasons());

constexpr std::string_view kOutcomeNames[] = {"browser", "transfer", "listen", "cancel"};
static_assert(std::size(kOutcomeNames) == static_cast<std::size_t>(Outcome::cancel) + 1);

/// What of an extension may be shown: no more than a word, so that nothing that a name drags along is quoted.
std::string shown(std::string_view extension) {
    std::size_t length = 0;
    while (length < extension.size() && (isLetter(extension[length]) || isDigit(extension[length]) ||
                                         static_cast<unsigned char>(extension[length]) >= 0x80))
        ++length;
    if (length <= kLongestQuoted) return std::string(extension.substr(0, length));
    return std::string(extension.substr(0, kLongestQuoted)) + "...";
}

}  // namespace

std::string_view outcomeName(Outcome outcome) noexcept {
    return kOutcomeNames[static_cast<std::size_t>(outcome)];
}

std::string sentenceOf(const Decision& decision) {
    std::string sentence(kReasons[static_cast<std::size_t>(decision.reason)].sentence);
    const auto gap = sentence.find(kGap);
    if (gap == std::string::npos) return sentence;
    return sentence.replace(gap, kGap.size(),
                            decision.reason == Reason::statusNotExamined ? std::to_string(decision.status)
                                                                         : shown(decision.ownExtension));
}

}  // namespace zab
