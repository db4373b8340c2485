#include "page/handed_over.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "binding/never_destroyed.h"
#include "web/url.h"

namespace zab {

void HandedOver::policyAsked(std::string_view url) noexcept {
    std::erase_if(navigations_, [&](const Navigation& navigation) {
        return navigation.channel == nullptr && (url.empty() || navigation.url == withoutFragment(url));
    });
}

void HandedOver::channelStarts(const nsISupports* channel) noexcept {
    std::erase_if(navigations_, [&](const Navigation& navigation) { return navigation.channel == channel; });
}

HandedOver::State HandedOver::loadStarts(const nsISupports* channel, std::string_view url, Time now) noexcept {
    std::erase_if(navigations_, [&](const Navigation& navigation) {
        return navigation.channel == nullptr && navigation.state != State::underWay &&
               now - navigation.at > kPatience;
    });
    const auto found = find(nullptr, url);
    // A load that starts while the policy still waits for an answer is another one.
    if (found == navigations_.end() || found->state == State::underWay) return State::notYet;
    found->channel = channel;
    return found->state;
}

void HandedOver::redirected(const nsISupports* channel, std::string_view url, std::string_view location,
                            Time now) {
    const auto found = find(channel, url);
    if (found == navigations_.end()) return;
    navigations_.erase(found);
    add({nullptr, std::string(withoutFragment(location)), now, State::failed});
}

void HandedOver::begins(const nsISupports* channel, std::string_view url) {
    add({channel, std::string(withoutFragment(url)), {}, State::underWay});
}

void HandedOver::ends(const nsISupports* channel, std::string_view url, bool made, Time now) noexcept {
    const auto found = find(channel, url);
    if (found == navigations_.end()) return;
    found->at = now;
    found->state = made ? State::made : State::failed;
}

HandedOver::State HandedOver::stateOf(const nsISupports* channel, std::string_view url) noexcept {
    const auto found = find(channel, url);
    return found == navigations_.end() ? State::notYet : found->state;
}

HandedOver::Navigations::iterator HandedOver::find(const nsISupports* channel, std::string_view url) noexcept {
    return std::find_if(navigations_.begin(), navigations_.end(), [&](const Navigation& navigation) {
        return navigation.channel == channel && navigation.url == withoutFragment(url);
    });
}

void HandedOver::add(Navigation navigation) {
    navigations_.push_back(std::move(navigation));
    auto oldest = std::prev(navigations_.end());
    for (std::size_t bytes = oldest->url.size(); oldest != navigations_.begin(); --oldest) {
        bytes += std::prev(oldest)->url.size();
        if (bytes > kMostBytes || navigations_.end() - oldest == kMost) break;
    }
    navigations_.erase(navigations_.begin(), oldest);
}

HandedOver& handedOver() noexcept {
    static NeverDestroyed<HandedOver> record;
    return record.get();
}

}  // namespace zab
