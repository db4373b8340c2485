#include "intercept/object_requests.h"

#include <utility>

namespace zab {

CObjectRequestsArray::Key CObjectRequestsArray::keyOf(Place place) noexcept {
    return {place->record.url, place->number, place};
}

CObjectRequestsArray::Index::iterator CObjectRequestsArray::firstOf(std::string_view url) noexcept {
    const auto found = index_.lower_bound(Key{url, 0, {}});
    return found != index_.end() && found->url == url ? found : index_.end();
}

CObjectRequestsArray::Place CObjectRequestsArray::remove(Place place) noexcept {
    postBytes_ -= place->record.postBody.size();
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
    while (records_.size() > kMostRecords || postBytes_ > kMostPostBytes) remove(records_.begin());
}

OBJECTREQUESTSARRAY_ITEM* CObjectRequestsArray::find(std::string_view url) noexcept {
    const auto found = firstOf(url);
    return found == index_.end() ? nullptr : &found->place->record;
}

void CObjectRequestsArray::renameFirst(std::string_view from, std::string_view to) {
    const auto found = firstOf(from);
    if (found == index_.end()) return;
    std::string renamed(to);  // before anything changes; `to` may be part of the record
    const Place place = found->place;
    auto node = index_.extract(found);
    place->record.url = std::move(renamed);
    node.value().url = place->record.url;
    index_.insert(std::move(node));
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
