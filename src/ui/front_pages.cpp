#include "ui/front_pages.h"

#include <utility>

namespace zab {

void FrontPages::select(DocumentId document, WindowHandle window, bool guessed) {
    if (window == 0) {
        somewhere_ = document;
        return;
    }
    leaveOthers(document, window);
    const auto known = fronts_.find(window);
    Front front{document, guessed};
    if (known != fronts_.end()) {
        front.before = known->second.document == document ? known->second.before : known->second.document;
        if (known->second.document == document && !known->second.guessed) front.guessed = false;
    }
    fronts_[window] = front;
}

void FrontPages::seen(DocumentId document, WindowHandle window) {
    if (document == 0 || window == 0) return;
    bool selected = somewhere_ == document;
    if (selected) somewhere_.reset();
    for (auto row = fronts_.begin(); row != fronts_.end();) {
        auto& [where, front] = *row;
        if (!front.guessed || front.document != document) {
            ++row;
            continue;
        }
        selected = true;
        front.guessed = false;
        if (where == window) return;
        if (!front.before) {
            row = fronts_.erase(row);
            continue;
        }
        front.document = *std::exchange(front.before, std::nullopt);
        ++row;
    }
    if (selected) {
        fronts_[window] = {document};
    } else {
        leaveOthers(document, window);
    }
}

void FrontPages::loading(DocumentId document, WindowHandle window) { loading_[window] = document; }

void FrontPages::ended(DocumentId document) {
    if (document == 0) return;
    if (somewhere_ == document) somewhere_ = 0;
    for (auto& [window, front] : fronts_) {
        if (front.document == document) front.document = 0;
        if (front.before == document) front.before = 0;
    }
    std::erase_if(loading_, [=](const auto& row) { return row.second == document; });
}

bool FrontPages::isFront(DocumentId document, WindowHandle window) const {
    if (const auto front = fronts_.find(window); front != fronts_.end())
        return document != 0 && front->second.document == document;
    if (somewhere_) return *somewhere_ == document;
    const auto last = loading_.find(window);
    return last != loading_.end() && last->second == document;
}

/// A document is in one window only.
void FrontPages::leaveOthers(DocumentId document, WindowHandle window) {
    if (document == 0) return;
    for (auto& [where, front] : fronts_)
        if (where != window && front.document == document) front.document = 0;
}

}  // namespace zab
