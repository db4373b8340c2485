// What the user's choice names: transfers like any others, without flags.
//
// The lists are read under the shared-list lock. What they give are copies, to be sent without it.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "page/media_entry.h"
#include "page/media_pages.h"
#include "page/request_lists.h"
#include "page/selected_links.h"
#include "transfer/transfer_record.h"
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

/// What a choice names, copied: nothing that happens to its page changes it. One of the three, or nothing.
struct ChosenMedia {
    std::vector<TransferRecord> entries;   // of the page, in menu order
    std::vector<std::string> links;        // of the selection, in its order
    std::optional<TransferRecord> object;  // that the page requested, as the browser's own request told it

    std::string pageUrl;          // of the links
    bool pageKnown = false;       // the module offers something in the page that is named
    WindowHandle controller = 0;  // the page's own; 0: it has none

    [[nodiscard]] std::size_t count() const noexcept {
        return entries.size() + links.size() + (object ? 1 : 0);
    }
    /// `index` is below count().
    [[nodiscard]] TransferRecord transfer(std::size_t index) const;
};

/// Entries of the page by their names in its menu come first, then what the page requested. A page that the
/// module does not know names nothing, whatever the request tells of it.
ChosenMedia chosenMedia(const MediaRequest& request, ChoiceOrigin origin, const ChoiceLists& lists);

/// A transfer that can only be made later is tried so often again.
inline constexpr int kMostRetries = 3;

}  // namespace zab
