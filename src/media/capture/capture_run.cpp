#include "media/capture/capture_run.h"

#include "binding/text.h"
#include "media/capture/descriptions.h"
#include "web/url.h"

namespace zab {

const EntryPage& CaptureRun::pageIdentity() const {
    static const EntryPage kNone;
    const EntryPage* page = page_.identity();
    return page == nullptr ? kNone : *page;
}

MediaEntry CaptureRun::entry() const {
    MediaEntry entry;
    entry.page = pageIdentity();
    entry.page.namedBy = context_.url;
    return entry;
}

bool CaptureRun::offer(MediaEntry entry) {
    if (offers_ >= kMostOffers || page_.identity() == nullptr) return false;
    ++offers_;
    found_.offer(std::move(entry));
    return true;
}

MediaEntry CaptureRun::plainEntry(std::string link) const {
    MediaEntry plain = entry();
    plain.description = fileNameOf(link);
    if (plain.description.empty()) plain.description = plain.page.title;
    plain.extension = lowered(extensionOf(lastSegmentOf(link)));
    plain.kind = entryKindOf(plain.extension);
    plain.link = std::move(link);
    return plain;
}

}  // namespace zab
