#include "media/capture/stream_listener.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "binding/guard.h"
#include "binding/never_destroyed.h"
#include "page/module_state.h"

namespace zab {
namespace {

/// Those that live: a page that goes away must be told to each.
std::vector<IMDBaseStreamListener*>& listeners() noexcept {
    static NeverDestroyed<std::vector<IMDBaseStreamListener*>> all;
    return all.get();
}

}  // namespace

IMDBaseStreamListener::IMDBaseStreamListener(const KeptResponse& response, CaptureContext context)
    : kind_(response.decision.listener), page_(response), capture_(kind_, std::move(context)) {
    listeners().push_back(this);
}

IMDBaseStreamListener::~IMDBaseStreamListener() {
    guarded([this] { finish(); });
    std::erase(listeners(), this);
}

void IMDBaseStreamListener::finish() {
    std::vector<MediaEntry> entries = capture_.finish(page_);
    if (!entries.empty() && isSiteKind(kind_)) moduleState().siteMediaFiled = true;
    page_.take(std::move(entries), kind_ == MediaKind::sniff);
}

nsresult IMDBaseStreamListener::WantsMoreData(uint32_t* wants) {
    if (wants == nullptr) return NS_ERROR_NULL_POINTER;
    *wants = capture_.wantsMore() ? 1 : 0;
    return NS_OK;
}

nsresult IMDBaseStreamListener::OnResponseData(const uint8_t* bytes, uint32_t length, uint32_t) {
    if (bytes == nullptr || length == 0) return NS_OK;
    guarded([&] {
        // What the browser is asked at the end of a body may make it give this listener up.
        const auto self = referenceTo(this);
        if (capture_.add({reinterpret_cast<const char*>(bytes), length})) finish();
    });
    return NS_OK;
}

void IMDBaseStreamListener::DeleteThis(uint32_t flags) {
    constexpr std::uint32_t kFreesMemory = 1;
    this->~IMDBaseStreamListener();
    if ((flags & kFreesMemory) != 0) ::operator delete(static_cast<void*>(this));
}

void forgetListeners(const DocumentKey& document) noexcept {
    for (IMDBaseStreamListener* listener : listeners()) listener->forget(document);
}

}  // namespace zab
