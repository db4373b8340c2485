// Pages that come into view.
#pragma once

#include "page/document_id.h"

namespace zab {

/// A document comes to the front of its window, and its button with it; 0: a tab without a document.
void showDocument(DocumentId document);

}  // namespace zab
