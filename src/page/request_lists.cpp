#include "page/request_lists.h"

#include "binding/never_destroyed.h"

namespace zab {

void RequestLists::rename(std::string_view from, std::string_view to) {
    requested.renameFirst(from, to);
    examined.renameFirst(from, to);
}

void RequestLists::forget(const DocumentKey& document) noexcept {
    requested.removeOfDocument(document.object, document.id);
    examined.removeOfDocument(document.object, document.id);
}

RequestLists& requestLists() {
    static NeverDestroyed<RequestLists> lists;
    return lists.get();
}

}  // namespace zab
