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
#include "web/web_address.h"

namespace zab {
namespace {

std::string narrow(std::u16string_view text) { return narrowPreferringAnsi(text).value_or(""); }

/// Whether the user's command went through; when no call can be made just now, nobody has told the user yet.
bool sent(TransferResult result) noexcept {
    if (result == TransferResult::retryLater) reportNoCallsNow();
    return result == TransferResult::made;
}

/// Hands the links over one by one; how many arrived.
std::size_t sendAll(const CLinksArray& links, const std::string& pageUrl, const std::string& cookies) {
    const auto page = webAddressOf(pageUrl);
    TransferSession session;
    TransferRecord record;
    record.referrer = pageUrl;
    record.pageUrl = pageUrl;
    std::size_t count = 0;
    for (const PageLink& link : links) {
        record.url = narrow(utf16FromUtf8(link.url));
        // The page's cookies are its own host's secrets.
        const auto target = webAddressOf(record.url);
        const bool sameHost = page && target && page->origin.host == target->origin.host;
        record.cookies = sameHost ? cookies : std::string{};
        if (!sent(session.send(record))) break;
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
    TransferRecord record;
    record.url = narrow(viewOf(url));
    record.referrer = narrow(viewOf(referrer));
    record.cookies = narrow(viewOf(cookies));
    record.description = narrow(viewOf(description));
    record.flags = transfer_flags::kLinkCommand;
    return sent(sendToDownloadManager(record)) ? NS_OK : NS_ERROR_FAILURE;
}

nsresult downloadAll(const nsAString* markup, const nsAString* pageUrl, const nsAString* cookies) {
    CLinksArray links;
    harvestPage(utf8FromUtf16(viewOf(markup)), utf8FromUtf16(viewOf(pageUrl)), links);
    if (links.count() == 0) {
        reportNoLinksFound();
        return NS_ERROR_FAILURE;
    }
    return sendAll(links, narrow(viewOf(pageUrl)), narrow(viewOf(cookies))) > 0 ? NS_OK : NS_ERROR_FAILURE;
}

nsresult downloadNewestMedia(const nsAString* documentId, std::size_t most) {
    std::vector<TransferRecord> transfers = newestOf(documentIdOf(viewOf(documentId)), most);
    if (transfers.empty()) {
        reportNoMediaFound();
        return NS_ERROR_FAILURE;
    }
    TransferSession session;
    std::size_t count = 0;
    for (TransferRecord& record : transfers) {
        makeNarrow(record);
        if (!sent(session.send(record))) break;
        ++count;
    }
    return count > 0 ? NS_OK : NS_ERROR_FAILURE;
}

}  // namespace zab
