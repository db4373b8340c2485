// Pages that come into view.
#pragma once

namespace zab {

/// Tells the buttons which document is selected, under the shared-list lock where it can be had.
void showSelectedDocument();

}  // namespace zab
