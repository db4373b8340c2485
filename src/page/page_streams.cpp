#include "page/page_streams.h"

#include <utility>

#include "binding/text.h"
#include "web/url.h"

namespace zab {
namespace {

// FNV-1a: short, and no allocation for the lower case of an extension.
constexpr std::uint64_t kHashStart = 0xCBF29CE484222325, kHashFactor = 0x100000001B3;

constexpr std::uint64_t mixed(std::uint64_t hash, char c) noexcept {
    return (hash ^ static_cast<unsigned char>(c)) * kHashFactor;
}

}  // namespace

void RecentKeys::add(std::uint64_t key) {
    if (!keys_.insert(key).second) return;
    if (order_.size() < most_) return order_.push_back(key);
    keys_.erase(std::exchange(order_[oldest_], key));
    oldest_ = (oldest_ + 1) % most_;
}

std::uint64_t PageStreams::keyOf(std::string_view text) noexcept {
    std::uint64_t hash = kHashStart;
    for (const char c : text) hash = mixed(hash, c);
    return hash;
}

std::uint64_t PageStreams::placeOf(std::string_view url, std::string_view extension) noexcept {
    std::uint64_t hash = keyOf(directoryOf(url));
    hash = mixed(hash, '\0');
    for (const char c : extension) hash = mixed(hash, toLower(c));
    return hash;
}

void PageStreams::addPlace(std::string_view partUrl) { addPlace(partUrl, extensionOf(lastSegmentOf(partUrl))); }

void PageStreams::addPlace(std::string_view url, std::string_view extension) {
    places_.add(placeOf(url, extension));
}

bool PageStreams::isPart(std::string_view url) const noexcept {
    return !places_.empty() && places_.holds(placeOf(url, extensionOf(lastSegmentOf(url))));
}

}  // namespace zab
