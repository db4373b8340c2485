// Document IDs: decimal numbers that the extension gives to the pages of the browser; 0 means no document.
#pragma once

#include <cstdint>
#include <string_view>

#include "binding/interfaces/supports.h"

namespace zab {

using DocumentId = std::uint64_t;

/// The leading decimal digits of `text`; 0 when there are none, the largest number when it does not fit.
DocumentId documentIdOf(std::u16string_view text) noexcept;

/// The ID that the extension wrote on a document; 0 when it has none or cannot be asked.
DocumentId documentIdOf(nsISupports* document) noexcept;

/// A page as the per-document lists know it: by object, by ID, or by both.
struct DocumentKey {
    nsISupports* object = nullptr;  // compared, never called; null: known by its ID alone
    DocumentId id = 0;              // 0: known by its object alone

    /// Whether an entry that belongs to (`otherObject`, `otherId`) belongs to this page.
    [[nodiscard]] bool names(const nsISupports* otherObject, DocumentId otherId) const noexcept {
        return (object != nullptr && object == otherObject) || (id != 0 && id == otherId);
    }
};

}  // namespace zab
