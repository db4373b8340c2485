#include "page/selected_links.h"

#include "binding/never_destroyed.h"

namespace zab {

SelectedLinks& selectedLinks() noexcept {
    static NeverDestroyed<SelectedLinks> links;
    return links.get();
}

}  // namespace zab
