// Pages that go away, and the one that is selected.
#pragma once

#include <span>

#include "page/document_id.h"
#include "settings/shared_list_lock.h"

namespace zab {

/// A list that keeps something of each page.
struct DocumentList {
    void (*forget)(const DocumentKey& document);
    OnTimeout onTimeout;  // whether it may be touched when the lock could not be had
};

/// Every such list of the module. Some belong to rooms above this one, so the entry points, which know all
/// rooms, define it.
std::span<const DocumentList> documentLists() noexcept;
/// Does, without the lock, what the changes of the lists ask of the browser; defined beside the table.
void settleDocumentLists();

/// Drops everything that belongs to a page from every per-document list. Waits for the shared-list lock once,
/// at most 1,000 ms; without it, lists that must not be touched unlocked are left as they are.
void forgetDocument(const DocumentKey& document);

/// The selected document went away: nothing is selected and the extension's selected tab is unknown.
void clearSelection();

/// Asks the extension to bring its notion of the selected tab up to date; false when neither helper could.
bool refreshSelectedTab();

}  // namespace zab
