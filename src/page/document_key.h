// A page as the per-document lists know it: by object, by ID, or by both.
#pragma once

#include "page/document_id.h"

namespace zab {

struct DocumentKey {
    nsISupports* object = nullptr;  // compared, never called; null: known by its ID alone
    DocumentId id = 0;              // 0: known by its object alone

    /// Whether an entry that belongs to (`otherObject`, `otherId`) belongs to this page.
    [[nodiscard]] bool names(const nsISupports* otherObject, DocumentId otherId) const noexcept {
        return (object != nullptr && object == otherObject) || (id != 0 && id == otherId);
    }
};

}  // namespace zab
