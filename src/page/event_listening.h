// Listening to events of the browser, through the extension's helper.
#pragma once

#include <string_view>

#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"

namespace zab {

/// Where a window's events arrive; nothing when the helper does not tell.
InterfacePtr<nsISupports> eventTargetOf(iZABHelper5& helper, nsISupports* window) noexcept;

/// With capture. The browser holds a reference to the listener from the one to the other. False: the call
/// failed.
bool addListener(iZABHelper5& helper, std::u16string_view type, nsISupports* target,
                 nsISupports* listener) noexcept;
bool removeListener(iZABHelper5& helper, std::u16string_view type, nsISupports* target,
                    nsISupports* listener) noexcept;

}  // namespace zab
