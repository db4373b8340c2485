#include "ui/media_choice.h"

#include <algorithm>
#include <utility>

#include "binding/text.h"
#include "binding/utf.h"
#include "ui/menu_order.h"
#include "web/encoding.h"

namespace zab {
namespace {

std::vector<const std::string*> linksNamed(const std::string& url, const SelectedLinks& selection) {
    std::vector<const std::string*> links;
    for (const std::string& link : selection.links)
        if (url == kAllEntries || url == link) links.push_back(&link);
    return links;
}

std::vector<const MediaEntry*> entriesNamed(const std::string& url, const std::vector<MediaEntry>& entries) {
    std::vector<const MediaEntry*> result;
    if (url == kAllEntries) {
        for (const std::size_t index : menuOrder(entries)) result.push_back(&entries[index]);
    } else if (const auto index = entryNamed(entries, url)) {
        result.push_back(&entries[*index]);
    }
    return result;
}

const OBJECTREQUESTSARRAY_ITEM* objectNamed(const std::string& url, DocumentId document, RequestLists& lists) {
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
    entry.page.url = told(request.pageUrl, object.pageUrl);
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

TransferRecord transferOf(const std::string& link, const SelectedLinks& selection) {
    TransferRecord record;
    record.url = link;
    record.referrer = selection.pageUrl;
    record.pageUrl = selection.pageUrl;
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

NamedMedia named(const MediaRequest& request, ChoiceOrigin origin, const ChoiceLists& lists) {
    NamedMedia media;
    const DocumentId document = documentIdOf(request.pageIdentity);
    const std::string url = utf8FromUtf16(request.mediaUrl);
    if (origin == ChoiceOrigin::processController && lists.selection.document == document) {
        media.links = linksNamed(url, lists.selection);
        media.controller = lists.selection.controller;
        if (media.found()) return media;
    }
    const MediaPages::Record* page = lists.pages.find(document);
    media.controller = page != nullptr ? page->page.controller : 0;
    if (page != nullptr) media.entries = entriesNamed(url, page->media.entries());
    if (media.entries.empty()) media.object = objectNamed(url, document, lists.requests);
    return media;
}

void prepare(Choice& choice, const ChoiceLists& lists) {
    choice.ready = true;
    const NamedMedia media = named(choice.request, choice.origin, lists);
    for (const MediaEntry* entry : media.entries) choice.transfers.push_back(transferOf(*entry));
    for (const std::string* link : media.links) choice.transfers.push_back(transferOf(*link, lists.selection));
    if (media.object != nullptr) choice.transfers.push_back(transferOf(choice.request, *media.object));
    choice.requestSeen = media.object != nullptr;
}

}  // namespace zab
