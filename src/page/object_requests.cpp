#include "page/object_requests.h"

#include <utility>

#include "binding/text.h"
#include "page/media_entry.h"

namespace zab {
namespace {

/// Of all texts but the POST body.
std::size_t textBytesOf(const OBJECTREQUESTSARRAY_ITEM& record) noexcept {
    std::size_t bytes = 0;
    for (const std::string* text :
         {&record.url, &record.pageUrl, &record.referrer, &record.cookies, &record.userAgent,
          &record.authorization, &record.postContentType, &record.description, &record.extension})
        bytes += text->size();
    return bytes;
}

}  // namespace

ObjectKind objectKindOf(std::string_view mimeGuess, std::string_view extension) noexcept {
    if (startsWithIgnoringCase(mimeGuess, "video/")) return ObjectKind::video;
    if (startsWithIgnoringCase(mimeGuess, "audio/")) return ObjectKind::audio;
    if (isAudioExtension(extension)) return ObjectKind::audio;
    return isMediaExtension(extension) ? ObjectKind::video : ObjectKind::unknown;
}

CObjectRequestsArray::Key CObjectRequestsArray::keyOf(Place place) noexcept {
    return {place->record.url, place->number, place};
}

CObjectRequestsArray::Index::iterator CObjectRequestsArray::firstOf(std::string_view url) noexcept {
    const auto found = index_.lower_bound(Key{url, 0, {}});
    return found != index_.end() && found->url == url ? found : index_.end();
}

CObjectRequestsArray::Place CObjectRequestsArray::remove(Place place) noexcept {
    postBytes_ -= place->record.postBody.size();
    textBytes_ -= textBytesOf(place->record);
    index_.erase(keyOf(place));
    return records_.erase(place);
}

void CObjectRequestsArray::add(OBJECTREQUESTSARRAY_ITEM record) {
    records_.push_back({std::move(record), ++lastNumber_});
    const Place added = std::prev(records_.end());
    try {
        index_.insert(keyOf(added));
    } catch (...) {
        records_.erase(added);
        throw;
    }
    postBytes_ += added->record.postBody.size();
    textBytes_ += textBytesOf(added->record);
    removeWhatIsTooMuch();
}

void CObjectRequestsArray::removeWhatIsTooMuch() noexcept {
    while (records_.size() > kMostRecords || postBytes_ > kMostPostBytes ||
           (textBytes_ > kMostTextBytes && records_.size() > 1))
        remove(records_.begin());
}

void CObjectRequestsArray::addRequest(OBJECTREQUESTSARRAY_ITEM record) {
    if (const auto* known = find(record.url); known != nullptr && known->fromPolicy) {
        record.kind = known->kind;
        record.extension = known->extension;
        if (record.pageUrl.empty()) record.pageUrl = known->pageUrl;
        if (record.documentId == 0) record.documentId = known->documentId;
        removeFirst(record.url);
    }
    add(std::move(record));
}

const OBJECTREQUESTSARRAY_ITEM* CObjectRequestsArray::find(std::string_view url) noexcept {
    const auto found = firstOf(url);
    return found == index_.end() ? nullptr : &found->place->record;
}

const OBJECTREQUESTSARRAY_ITEM* CObjectRequestsArray::find(std::string_view url,
                                                           std::uint64_t documentId) noexcept {
    for (auto at = firstOf(url); at != index_.end() && at->url == url; ++at)
        if (documentId == 0 || at->place->record.documentId == documentId) return &at->place->record;
    return nullptr;
}

void CObjectRequestsArray::renameFirst(std::string_view from, std::string_view to) {
    const auto found = firstOf(from);
    if (found == index_.end()) return;
    std::string renamed(to);  // before anything changes; `to` may be part of the record
    const Place place = found->place;
    auto node = index_.extract(found);
    textBytes_ += renamed.size() - place->record.url.size();
    place->record.url = std::move(renamed);
    node.value().url = place->record.url;
    index_.insert(std::move(node));
    removeWhatIsTooMuch();
}

void CObjectRequestsArray::removeFirst(std::string_view url) noexcept {
    const auto found = firstOf(url);
    if (found != index_.end()) remove(found->place);
}

void CObjectRequestsArray::removeOfDocument(const nsISupports* document, std::uint64_t documentId) noexcept {
    for (Place place = records_.begin(); place != records_.end();) {
        const auto& record = place->record;
        const bool matches = (document != nullptr && record.document == document) ||
                             (documentId != 0 && record.documentId == documentId);
        place = matches ? remove(place) : std::next(place);
    }
}

}  // namespace zab
