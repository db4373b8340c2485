// What the exported functions of the module's life do: start, observers, tabs, documents, mouse.
#pragma once

#include "binding/interfaces/supports.h"

namespace zab {

/// Hands the extension's own object to its helper; the helper's answer, or 0x8000FFFF.
nsresult initialise(nsISupports* host);

/// Registers the observers of HTTP traffic and of windows, once. From then on the module stays loaded: the
/// browser calls its observers whatever the extension unloads.
nsresult observeStartup(const char* topic);

/// The observer of HTTP traffic is gone. When it was registered, the browser shuts down and this is the last
/// safe moment, on its main thread: popup and buttons, what the button library and the extension lent, windows,
/// threads and handles are given back.
void trafficObserverGone();

nsresult tabSelected(const nsAString* documentId);
nsresult selectedTabReported(const nsAString* documentId);
nsresult documentUnloaded(const nsAString* documentId);
nsresult mouseEvent(nsISupports* event);

}  // namespace zab
