// What the user's choice becomes: transfers like any others, without flags.
//
// The lists are read under the shared-list lock; what named() gives points into them and is valid only as long
// as it is held. Transfers are copies, made to be sent without it.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "page/media_entry.h"
#include "page/media_pages.h"
#include "page/request_lists.h"
#include "page/selected_links.h"
#include "transfer/transfer.h"
#include "ui/media_request.h"

namespace zab {

/// In UTF-8, for a transfer that asks as the browser would.
TransferRecord transferOf(const MediaEntry& entry);

/// The newest entries, the newest first; FLV is told as "flv" however the page writes it.
std::deque<TransferRecord> newestTransfers(std::span<const MediaEntry> entries, std::size_t most);

/// Where a choice is looked up.
struct ChoiceLists {
    RequestLists& requests;
    MediaPages& pages;
    const SelectedLinks& selection;
};

/// Which controller was told: the popup of selected links speaks to the process controller.
enum class ChoiceOrigin { pageController, processController };

/// What a request names; one of the three, or none.
struct NamedMedia {
    std::vector<const MediaEntry*> entries;  // in menu order
    std::vector<const std::string*> links;   // of the selection, in its order
    const OBJECTREQUESTSARRAY_ITEM* object = nullptr;
    WindowHandle controller = 0;  // the page's own; 0: it has none

    [[nodiscard]] bool found() const noexcept {
        return !entries.empty() || !links.empty() || object != nullptr;
    }
};

/// Entries of the page by their names in its menu come first, then what the page requested.
NamedMedia named(const MediaRequest& request, ChoiceOrigin origin, const ChoiceLists& lists);

/// A choice on its way to the download manager.
struct Choice {
    MediaRequest request;
    ChoiceOrigin origin = ChoiceOrigin::pageController;
    bool requestSeen = false;              // the transfers tell what the browser's own request told
    bool ready = false;                    // `transfers` is made
    std::deque<TransferRecord> transfers;  // what is still to be sent
    int retries = 0;
};

/// Makes the transfers of what a choice names; nothing when that is gone.
void prepare(Choice& choice, const ChoiceLists& lists);

inline constexpr int kMostRetries = 3;

enum class ChoiceProgress {
    done,     // all were made, or one was not and the user is told
    later,    // to be tried again: no call can be made from here now
    givenUp,  // the same, too often; nobody has told the user yet
};

/// Sends one transfer after the other with `send` (TransferRecord& -> TransferResult), up to the first that is
/// not made.
template <class Send>
ChoiceProgress sendChoice(Choice& choice, Send send) {
    for (; !choice.transfers.empty(); choice.transfers.pop_front()) {
        const TransferResult result = send(choice.transfers.front());
        if (result == TransferResult::notMade) return ChoiceProgress::done;
        if (result == TransferResult::retryLater)
            return choice.retries++ < kMostRetries ? ChoiceProgress::later : ChoiceProgress::givenUp;
    }
    return ChoiceProgress::done;
}

}  // namespace zab
