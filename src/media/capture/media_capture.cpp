#include "media/capture/media_capture.h"

#include <utility>

#include "media/capture/body_capture.h"
#include "media/capture/companion_libraries.h"
#include "media/capture/media_display.h"
#include "media/capture/stream_listener.h"
#include "page/media_pages.h"
#include "settings/data_file.h"
#include "settings/shared_list_lock.h"
#include "web/url.h"

namespace zab {
namespace {

CaptureContext contextOf(const KeptResponse& response) {
    CaptureContext context = captureContextOf(response.headers, response.decision);
    const auto file = dataFile().read();
    context.youtubePairing = file->youtubePairing;
    context.hlsAsIs = file->takesVariantsAsTheyStand(hostOf(context.url));
    context.companions = &companionLibraries();
    return context;
}

void listen(const KeptResponse& response) {
    const auto helper = service<iZABHelper9>();
    if (!helper) return;
    const auto listener = makeObject<IMDBaseStreamListener>(response, contextOf(response));
    if (listener) helper->AttachListener(listener.get(), response.channel);
}

}  // namespace

bool isMediaOfPage(const Decision& decision, std::uint32_t loadFlags, std::string_view url) noexcept {
    return decision.outcome == Outcome::listen || mayBeEntry(decision, loadFlags, url);
}

void captureMedia(const KeptResponse& response) {
    if (response.decision.outcome == Outcome::listen) return listen(response);
    const CaptureContext context = contextOf(response);
    if (!mayBeEntry(response.decision, response.loadFlags, context.url)) return;
    const Decision decision = response.decision;
    BrowserPage page(response);
    page.take(captureResponse(decision, response.loadFlags, context, page), false);
}

bool fileEntry(std::unique_ptr<MediaEntry> entry) {
    if (entry == nullptr) return false;
    const EntryFate fate = mediaDisplay().fateOf(entry->page.url, entry->extension, entry->size);
    if (fate == EntryFate::dropped) return false;
    const SharedListLock lock(OnTimeout::skip);
    MediaPages::Record* record = lock ? mediaPages().find(entry->page.documentId) : nullptr;
    if (record == nullptr) return false;
    entry->inMenu = fate == EntryFate::shown;
    record->media.offer(std::move(*entry));
    return fate == EntryFate::shown;
}

}  // namespace zab
