#include "web/link_processor.h"

#include <algorithm>
#include <utility>

#include "binding/text.h"
#include "web/url.h"
#include "web/url_resolve.h"
#include "web/web_address.h"

namespace zab {
namespace {

std::size_t hashOf(std::string_view url) noexcept {
    return std::hash<std::string_view>{}(withoutFragment(url));
}

}  // namespace

CLinkProcessor::CLinkProcessor(std::string_view baseUrl, std::string_view pageUrl, FileJudge judge)
    : judge_(std::move(judge)), page_(withoutFragment(pageUrl)) {
    if (auto canonical = canonicalUrl(page_)) page_ = *std::move(canonical);
    if (baseUrl.size() <= kMostBaseBytes) base_ = baseUrl;
}

void CLinkProcessor::setBase(std::string_view written) {
    if (std::exchange(baseGiven_, true)) return;
    std::string base = resolveUrl(base_, cleanedReference(schemeOf(base_), written));
    if (base.size() <= kMostBaseBytes && isWebScheme(schemeOf(base))) base_ = std::move(base);
}

std::size_t CLinkProcessor::add(const Found& found) {
    // One that is too long keeps its number.
    const bool fits = found.written.size() <= kMostUrlBytes;
    found_.push_back({std::string(fits ? found.written : std::string_view{}), std::string(found.text),
                      found.source, found.playable});
    return found_.size() - 1;
}

void CLinkProcessor::setText(std::size_t number, std::string_view text) { found_[number].text = text; }

std::optional<std::string> CLinkProcessor::resolved(std::string_view written) const {
    const std::string cleaned = cleanedReference(schemeOf(base_), written);
    if (cleaned.empty()) return std::nullopt;  // the page itself, which nobody means
    const std::string_view own = splitReference(cleaned).scheme;
    if (!own.empty() && !isWebScheme(own)) return std::nullopt;
    auto url = canonicalUrl(resolveUrl(base_, cleaned));
    if (!url || url->size() > kMostUrlBytes || !isWebScheme(schemeOf(*url))) return std::nullopt;
    const std::string_view target = withoutFragment(*url);
    if (target.size() < url->size() && target == page_) return std::nullopt;
    return url;
}

LinkReason CLinkProcessor::reasonOf(std::string_view url, LinkSource source) const {
    if (judge_)
        if (const auto reason = judge_(url)) return *reason;
    switch (source) {
        case LinkSource::link: return LinkReason::textLink;
        case LinkSource::script: return LinkReason::inScript;
        default: return LinkReason::pagePart;
    }
}

void CLinkProcessor::finish() {
    std::uint32_t place = 0;
    for (Written& written : std::exchange(found_, {})) {
        ++place;
        if (auto url = resolved(written.reference)) take(*std::move(url), written, place);
    }
    known_.clear();
    choose();
}

void CLinkProcessor::take(std::string url, Written& written, std::uint32_t place) {
    const auto [known, isNew] = known_.try_emplace(std::string(withoutFragment(url)), candidates_.size());
    if (!isNew) return merge(candidates_[known->second], written);
    const LinkReason reason = reasonOf(url, written.source);
    // Of one rank no more are ever chosen than these.
    if (counts_[rankOf(reason)] == kMostLinks) {
        leftOut_.insert(hashOf(url));
        known_.erase(known);
        return;
    }
    ++counts_[rankOf(reason)];
    if (!leftOut_.empty()) leftOut_.erase(hashOf(url));
    candidates_.push_back(
        {std::move(url), std::move(written.text), written.source, written.playable, place, reason});
}

/// What another place of the page says about the same address; the best of it counts.
void CLinkProcessor::merge(PageLink& link, Written& written) {
    if (link.text.empty()) link.text = std::move(written.text);
    link.playable |= written.playable;
    if (written.source >= link.source) return;
    link.source = written.source;
    --counts_[rankOf(link.reason)];
    link.reason = reasonOf(link.url, link.source);
    ++counts_[rankOf(link.reason)];
}

void CLinkProcessor::choose() {
    std::size_t room = kMostLinks;
    for (std::size_t& count : counts_) room -= count = std::min(count, room);
    for (PageLink& link : std::exchange(candidates_, {})) {
        std::size_t& left = counts_[rankOf(link.reason)];
        if (left == 0) {
            leftOut_.insert(hashOf(link.url));
        } else {
            --left;
            links_.Append(std::move(link));
        }
    }
}

}  // namespace zab
