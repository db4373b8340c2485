// Pages that come into view and go away: the one place that tells all per-document lists.
#pragma once

#include "page/document_key.h"

namespace zab {

/// Drops everything that belongs to a page from every per-document list. Waits for the shared-list lock once,
/// at most 1,000 ms; without it, lists that must not be touched unlocked are left as they are.
void forgetDocument(const DocumentKey& document);

/// Tells the buttons which document is selected, under the shared-list lock where it can be had.
void showSelectedDocument();

/// The selected document went away: nothing is selected and the extension's selected tab is unknown.
void clearSelection() noexcept;

/// Asks the extension to bring its notion of the selected tab up to date; false when neither helper could.
bool refreshSelectedTab() noexcept;

}  // namespace zab
