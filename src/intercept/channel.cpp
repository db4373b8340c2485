#include "intercept/channel.h"

#include "binding/browser_string.h"

namespace zab {

nsresult Channel::readUrl(std::string& url) const {
    nsISupports* raw = nullptr;
    if (const nsresult status = helper_.GetURI(get(), &raw); failed(status)) return status;
    const InterfacePtr<nsISupports> uri(raw);
    NarrowContainer spec;
    if (!uri || !spec.ready()) return NS_ERROR_NOT_AVAILABLE;
    // What slot 59 gives is the helper's own kind of address object, whatever it calls itself.
    const nsresult status = static_cast<iZABHelperURI*>(uri.get())->GetSpec(spec.get());
    if (!failed(status)) url = spec.view();
    return status;
}

nsresult Channel::readStatus(std::uint32_t& status) const noexcept {
    return helper_.GetResponseStatus(get(), &status);
}

std::uint32_t Channel::loadFlags() const noexcept {
    std::uint32_t flags = 0;
    return failed(helper_.GetLoadFlags(get(), &flags)) ? 0 : flags;
}

std::optional<std::string> Channel::responseHeader(std::string_view name) const {
    NarrowContainer header(name);
    NarrowContainer value;
    if (!header.ready() || !value.ready()) return std::nullopt;
    if (failed(helper_.GetResponseHeader(get(), header.get(), value.get()))) return std::nullopt;
    return std::string(value.view());
}

bool Channel::setResponseHeader(std::string_view name, std::string_view value) const noexcept {
    constexpr std::uint32_t kReplace = 0;
    NarrowContainer header(name);
    NarrowContainer text(value);
    return header.ready() && text.ready() &&
           !failed(helper_.SetResponseHeader(get(), header.get(), text.get(), kReplace));
}

bool Channel::cancel() const noexcept { return !failed(helper_.Cancel(get(), kTakenOver)); }

}  // namespace zab
