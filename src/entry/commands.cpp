#include "entry/commands.h"

#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/utf.h"
#include "entry/registry_settings.h"
#include "intercept/file_judge.h"
#include "page/media_pages.h"
#include "page/platform.h"
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

/// The transfers of one command.
struct Batch {
    std::deque<TransferRecord> left;
    std::size_t made = 0;
    int repeats = 0;  // of the first one that is left
};

/// Sends one after the other, up to the first that is not made. When no call can be made just now, the rest is
/// tried again from the browser's message loop.
nsresult send(const std::shared_ptr<Batch>& batch) {
    TransferSession session;
    for (; !batch->left.empty(); batch->left.pop_front()) {
        const TransferResult result = session.sendAsBrowser(batch->left.front());
        if (result == TransferResult::retryLater) {
            if (batch->repeats++ < kMostRetries && runSoon([batch] { send(batch); })) return NS_OK;
            reportNoCallsNow();
        }
        if (result != TransferResult::made) break;
        ++batch->made;
        batch->repeats = 0;
    }
    return batch->made > 0 ? NS_OK : NS_ERROR_FAILURE;
}

nsresult send(std::deque<TransferRecord> records) {
    return send(std::make_shared<Batch>(Batch{std::move(records)}));
}

/// Copies: no lock is held while they are sent.
std::deque<TransferRecord> newestOf(DocumentId document, std::size_t most) {
    const SharedListLock lock(OnTimeout::skip);
    const auto* page = lock ? mediaPages().find(document) : nullptr;
    return page != nullptr ? newestTransfers(page->media.entries(), most) : std::deque<TransferRecord>{};
}

}  // namespace

nsresult downloadLink(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                      const nsAString* description) {
    TransferRecord record = recordOf(utf8(referrer), narrow(cookies));
    record.url = utf8(url);
    record.description = utf8(description);
    record.flags = transfer_flags::kLinkCommand;
    return send({std::move(record)});
}

nsresult downloadAll(const nsAString* markup, const nsAString* pageUrl, const nsAString* cookies) {
    const RegistrySettings settings;
    const std::string page = utf8(pageUrl);
    CHTMLParser parser(page, page, fileJudgeOf(settings));
    parser.feed(utf8(markup));
    parser.finish();
    if (parser.links().count() == 0) {
        reportNoLinksFound();
        return NS_ERROR_FAILURE;
    }
    if (parser.leftOut() > 0)
        writeDebuggerText("**********Download all: " + std::to_string(parser.leftOut()) +
                          " links left out\r\n");
    TransferRecord record = recordOf(page, narrow(cookies));
    record.pageUrl = page;
    std::deque<TransferRecord> records;
    for (const PageLink& link : parser.links()) records.emplace_back(record).url = link.url;
    return send(std::move(records));
}

nsresult downloadNewestMedia(const nsAString* documentId, std::size_t most) {
    std::deque<TransferRecord> transfers = newestOf(documentIdOf(viewOf(documentId)), most);
    if (transfers.empty()) {
        reportNoMediaFound();
        return NS_ERROR_FAILURE;
    }
    return send(std::move(transfers));
}

}  // namespace zab
