#include "entry/commands.h"

#include <string>
#include <vector>

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/utf.h"
#include "page/media_pages.h"
#include "settings/shared_list_lock.h"
#include "transfer/transfer.h"
#include "ui/media_choice.h"
#include "web/html_parser.h"

namespace zab {
namespace {

std::string narrow(const nsAString* text) { return narrowPreferringAnsi(viewOf(text)).value_or(""); }
std::string utf8(const nsAString* text) { return utf8FromUtf16(viewOf(text)); }

/// What a page names, which passed these cookies as its own.
TransferRecord recordOf(const std::string& page, const std::string& cookies) {
    TransferRecord record;
    record.referrer = page;
    record.cookies = cookies;
    record.cookiesFrom = page;
    return record;
}

/// Whether the user's command went through; when no call can be made just now, nobody has told the user yet.
bool sent(TransferResult result) noexcept {
    if (result == TransferResult::retryLater) reportNoCallsNow();
    return result == TransferResult::made;
}

/// Hands the links over one by one; how many arrived.
std::size_t sendAll(const CLinksArray& links, const std::string& pageUrl, const std::string& cookies) {
    TransferSession session;
    TransferRecord record = recordOf(pageUrl, cookies);
    record.pageUrl = pageUrl;
    std::size_t count = 0;
    for (const PageLink& link : links) {
        record.url = link.url;
        if (!sent(session.sendAsBrowser(record))) break;
        ++count;
    }
    return count;
}

/// Copies: no lock is held while they are sent.
std::vector<TransferRecord> newestOf(DocumentId document, std::size_t most) {
    const SharedListLock lock(OnTimeout::skip);
    const auto* page = lock ? mediaPages().find(document) : nullptr;
    return page != nullptr ? newestTransfers(page->media.entries(), most) : std::vector<TransferRecord>{};
}

}  // namespace

nsresult downloadLink(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                      const nsAString* description) {
    TransferRecord record = recordOf(utf8(referrer), narrow(cookies));
    record.url = utf8(url);
    record.description = utf8(description);
    record.flags = transfer_flags::kLinkCommand;
    return sent(TransferSession().sendAsBrowser(record)) ? NS_OK : NS_ERROR_FAILURE;
}

nsresult downloadAll(const nsAString* markup, const nsAString* pageUrl, const nsAString* cookies) {
    CLinksArray links;
    harvestPage(utf8(markup), utf8(pageUrl), links);
    if (links.count() == 0) {
        reportNoLinksFound();
        return NS_ERROR_FAILURE;
    }
    return sendAll(links, utf8(pageUrl), narrow(cookies)) > 0 ? NS_OK : NS_ERROR_FAILURE;
}

nsresult downloadNewestMedia(const nsAString* documentId, std::size_t most) {
    std::vector<TransferRecord> transfers = newestOf(documentIdOf(viewOf(documentId)), most);
    if (transfers.empty()) {
        reportNoMediaFound();
        return NS_ERROR_FAILURE;
    }
    TransferSession session;
    std::size_t count = 0;
    for (const TransferRecord& record : transfers) {
        if (!sent(session.sendAsBrowser(record))) break;
        ++count;
    }
    return count > 0 ? NS_OK : NS_ERROR_FAILURE;
}

}  // namespace zab
