#include "media/capture/media_capture.h"

#include <utility>

#include "media/capture/media_pages.h"
#include "settings/shared_list_lock.h"
#include "ui/panel_gate.h"

namespace zab {
namespace {

class NoCapture final : public MediaCapture {
  public:
    void listen(const KeptResponse&) override {}
    void offer(const KeptResponse&) override {}
};

constinit NoCapture g_noCapture;

}  // namespace

MediaCapture& mediaCapture() noexcept { return g_noCapture; }

bool fileEntry(std::unique_ptr<MediaEntry> entry) {
    if (entry == nullptr) return false;
    const EntryFate fate = entryFate(entry->page.url, entry->extension, entry->size);
    if (fate == EntryFate::dropped) return false;
    const SharedListLock lock(OnTimeout::skip);
    MediaPages::Record* record = lock ? mediaPages().find(entry->page.documentId) : nullptr;
    if (record == nullptr) return false;
    record->media.offer(std::move(*entry));
    return fate == EntryFate::shown;
}

}  // namespace zab
