#include "page/media_pages.h"

#include "binding/never_destroyed.h"

namespace zab {

MediaPages::Record& MediaPages::open(const OpenPage& page) {
    if (Record* known = find(page.document.id)) return *known;
    if (records_.size() >= kMostPages) records_.pop_front();
    return records_.emplace_back(Record{page, {}});
}

MediaPages::Record* MediaPages::find(DocumentId document) noexcept {
    if (document == 0) return nullptr;
    for (Record& record : records_)
        if (record.page.document.id == document) return &record;
    return nullptr;
}

void MediaPages::forget(const DocumentKey& document) noexcept {
    records_.remove_if([&](const Record& record) {
        return document.names(record.page.document.object, record.page.document.id);
    });
}

MediaPages& mediaPages() noexcept {
    static NeverDestroyed<MediaPages> pages;
    return pages.get();
}

}  // namespace zab
