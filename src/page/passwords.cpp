#include "page/passwords.h"

#include <algorithm>
#include <utility>

#include "binding/never_destroyed.h"

namespace zab {

void CLSPasswordsArray::remember(std::string_view url, BasicCredentials login) {
    auto address = webAddressOf(url);
    if (!address) return;
    const std::lock_guard hold(mutex_);
    const auto known = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.origin == address->origin; });
    if (known != entries_.end()) {
        known->login = std::move(login);
        return;
    }
    if (entries_.size() == kMostOrigins) entries_.erase(entries_.begin());
    entries_.push_back({std::move(address->origin), std::move(login)});
}

void CLSPasswordsArray::rememberAuthorization(std::string_view url, std::string_view headerValue) {
    if (auto login = ParseBasicCredentials(headerValue)) remember(url, *std::move(login));
}

std::optional<BasicCredentials> CLSPasswordsArray::find(std::string_view url) const {
    const auto address = webAddressOf(url);
    if (!address) return std::nullopt;
    const std::lock_guard hold(mutex_);
    for (const auto& entry : entries_)
        if (entry.origin == address->origin) return entry.login;
    return std::nullopt;
}

CLSPasswordsArray& passwords() {
    // Never destroyed: another thread's transfer may still ask while the browser ends.
    static NeverDestroyed<CLSPasswordsArray> list;
    return list.get();
}

}  // namespace zab
