#include "ui/media_choice.h"

#include <algorithm>
#include <utility>

#include "binding/text.h"
#include "binding/utf.h"
#include "ui/menu_order.h"
#include "web/encoding.h"

namespace zab {
namespace {

std::vector<std::string> linksNamed(const std::string& url, const SelectedLinks& selection) {
    if (url == kAllEntries) return selection.links;
    if (std::ranges::find(selection.links, url) == selection.links.end()) return {};
    return {url};
}

std::vector<TransferRecord> entriesNamed(const std::string& url, const std::vector<MediaEntry>& entries) {
    std::vector<TransferRecord> result;
    if (url == kAllEntries) {
        for (const std::size_t index : menuOrder(entries)) result.push_back(transferOf(entries[index]));
    } else if (const auto index = entryNamed(entries, url)) {
        result.push_back(transferOf(entries[*index]));
    }
    return result;
}

const OBJECTREQUESTSARRAY_ITEM* objectNamed(const std::string& url, DocumentId document, RequestLists& lists) {
    if (document == 0) return nullptr;  // else those of every page would be asked
    for (const std::string& address : addressesOf(url))
        for (CObjectRequestsArray* list : {&lists.requested, &lists.examined})
            if (const auto* object = list->find(address, document)) return object;
    return nullptr;
}

/// What the request tells, and what the browser's own request of it tells beyond that.
MediaEntry entryOf(const MediaRequest& request, const OBJECTREQUESTSARRAY_ITEM& object) {
    const auto told = [](const std::u16string& text, const std::string& known) {
        return text.empty() ? known : utf8FromUtf16(text);
    };
    MediaEntry entry;
    entry.link = object.url;
    entry.description = told(request.description, object.description);
    entry.extension = utf8FromUtf16(request.extension);
    entry.kind = request.kind == ObjectKind::audio ? EntryKind::audio : EntryKind::video;
    entry.page.documentId = object.documentId;
    // Its cookies and login travel along, so that whoever asks has no say in it.
    entry.page.url = object.pageUrl;
    entry.page.referrer = told(request.referrer, object.referrer);
    entry.page.cookies = told(request.cookies, object.cookies);
    entry.page.userAgent = object.userAgent;
    return entry;
}

TransferRecord transferOf(const MediaRequest& request, const OBJECTREQUESTSARRAY_ITEM& object) {
    TransferRecord record = transferOf(entryOf(request, object));
    if (auto login = ParseBasicCredentials(object.authorization)) {
        record.user = std::move(login->user);
        record.password = std::move(login->password);
    }
    return record;
}

}  // namespace

TransferRecord transferOf(const MediaEntry& entry) {
    TransferRecord record;
    record.url = entry.link;
    record.referrer = entry.page.referrer;
    record.cookies = entry.page.cookies;
    record.cookiesFrom = entry.page.namedBy;
    record.userAgent = entry.page.userAgent;
    record.typeHint = entry.extension;
    record.pageTitle = entry.page.title;
    record.pageUrl = entry.page.url;
    record.secondUrl = entry.secondUrl;
    record.extraData = entry.extra;
    record.description = entry.description;
    record.sizeBytes = entry.size;
    record.flags = transfer_flags::kPlain;
    return record;
}

std::deque<TransferRecord> newestTransfers(std::span<const MediaEntry> entries, std::size_t most) {
    std::deque<TransferRecord> transfers;
    for (std::size_t left = entries.size(); left > 0 && transfers.size() < most; --left) {
        TransferRecord& record = transfers.emplace_back(transferOf(entries[left - 1]));
        if (equalsIgnoringCase(record.typeHint, kFlvExtension)) record.typeHint = kFlvExtension;
    }
    return transfers;
}

TransferRecord ChosenMedia::transfer(std::size_t index) const {
    if (index < entries.size()) return entries[index];
    if (object) return *object;
    TransferRecord record;
    record.url = links[index];
    record.referrer = pageUrl;
    record.pageUrl = pageUrl;
    return record;
}

ChosenMedia chosenMedia(const MediaRequest& request, ChoiceOrigin origin, const ChoiceLists& lists) {
    ChosenMedia media;
    const DocumentId document = documentIdOf(request.pageIdentity);
    const std::string url = utf8FromUtf16(request.mediaUrl);
    if (origin == ChoiceOrigin::processController && lists.selection.document == document) {
        media.links = linksNamed(url, lists.selection);
        media.pageUrl = lists.selection.pageUrl;
        media.pageKnown = !lists.selection.links.empty();
        media.controller = lists.selection.controller;
        if (!media.links.empty()) return media;
    }
    if (const MediaPages::Record* page = lists.pages.find(document)) {
        media.pageKnown = true;
        media.controller = page->page.controller;
        media.entries = entriesNamed(url, page->media.entries());
        if (!media.entries.empty()) return media;
    }
    if (const auto* object = objectNamed(url, document, lists.requests)) {
        media.pageKnown = true;
        media.object = transferOf(request, *object);
    }
    return media;
}

}  // namespace zab
