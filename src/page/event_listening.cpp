#include "page/event_listening.h"

#include "binding/browser_string.h"

namespace zab {
namespace {

constexpr std::uint32_t kUseCapture = 1;

}  // namespace

InterfacePtr<nsISupports> eventTargetOf(iZABHelper5& helper, nsISupports* window) noexcept {
    nsISupports* target = nullptr;
    if (window == nullptr || failed(helper.GetWindowEventTarget(window, &target))) return {};
    return InterfacePtr<nsISupports>(target);
}

bool addListener(iZABHelper5& helper, std::u16string_view type, nsISupports* target,
                 nsISupports* listener) noexcept {
    WideContainer name(type);
    return name.ready() && !failed(helper.AddEventListener(name.get(), target, listener, kUseCapture));
}

bool removeListener(iZABHelper5& helper, std::u16string_view type, nsISupports* target,
                    nsISupports* listener) noexcept {
    WideContainer name(type);
    return name.ready() && !failed(helper.RemoveEventListener(name.get(), target, listener, kUseCapture));
}

}  // namespace zab
