#include "web/link_processor.h"

#include <utility>

#include "binding/text.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
CLinkProcessor::CLinkProcessor(std::string_view baseUrl, std::string_view pageUrl)
    : page_(withoutFragment(pageUrl)) {
    if (baseUrl.size() <= kMostBaseBytes) base_ = baseUrl;
}

void CLinkProcessor::setBase(std::string_view written) {
    if (baseGiven_) return;
    baseGiven_ = true;
    std::string base = resolveUrl(base_, cleanedReference(schemeOf(base_), written));
    const auto sources = std::exchange(written_, {});
    if (base.size() > kMostBaseBytes || !isWebScheme(schemeOf(base))) return;
    base_ = std::move(base);

    CLinksArray before;
    for (PageLink& link : links_) before.Append(std::move(link));
    while (links_.count() > 0) links_.RemoveAt(links_.count() - 1);
    known_.clear();
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const PageLink& link = before[static_cast<std::int32_t>(i)];
        add({sources[i], link.source, link.playable, link.place, link.text});
    }
}

std::optional<std::string> CLinkProcessor::absolute(std::string_view written) const {
    if (written.size() > kMostUrlBytes) return std::nullopt;
    const std::string cleaned = cleanedReference(schemeOf(base_), written);
    if (cleaned.empty()) return std::nullopt;  // the page itself, which nobody means
    const std::string_view own = splitReference(cleaned).scheme;
    if (!own.empty() && !isWebScheme(own)) return std::nullopt;
    std::string url = resolveUrl(base_, cleaned);
    if (url.size() > kMostUrlBytes || !isWebScheme(schemeOf(url)) || hostOf(url).empty()) return std::nullopt;
    const std::string_view target = withoutFragment(url);
    if (target.size() < url.size() && target == page_) return std::nullopt;
    return url;
}

std::optional<std::size_t> CLinkProcessor::add(const Found& found) {
    auto url = absolute(found.written);
    if (!url) return std::nullopt;
    const auto [place, isNew] = known_.try_emplace(std::string(withoutFragment(*url)), known_.size());
    if (!isNew) {
        links_[static_cast<std::int32_t>(place->second)].takeFrom(found.text, found.playable);
        return place->second;
    }
    if (known_.size() > kMostLinks) {
        known_.erase(place);
        return std::nullopt;
    }
    if (!baseGiven_) written_.emplace_back(found.written);
    links_.Append({std::move(*url), std::string(found.text), found.source, found.playable, found.place});
    return place->second;
}

void CLinkProcessor::setText(std::size_t index, std::string_view text) {
    links_[static_cast<std::int32_t>(index)].takeFrom(text, false);
}

void mergeInPageOrder(const CLinksArray& a, const CLinksArray& b, CLinksArray& merged) {
    std::unordered_map<std::string_view, std::int32_t> known;
    const PageLink* nextA = a.begin();
    const PageLink* nextB = b.begin();
    while (nextA != a.end() || nextB != b.end()) {
        const bool takesA = nextB == b.end() || (nextA != a.end() && nextA->place <= nextB->place);
        const PageLink& link = takesA ? *nextA++ : *nextB++;
        const std::string_view address = withoutFragment(link.url);
        if (const auto place = known.find(address); place != known.end()) {
            merged[place->second].takeFrom(link.text, link.playable);
        } else if (known.size() < CLinkProcessor::kMostLinks) {
            known.emplace(address, merged.count());
            merged.Append(link);
        }
    }
}

}  // namespace zab
