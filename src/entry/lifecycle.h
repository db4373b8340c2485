// What the exported functions of the module's life do: start, observers, tabs, documents, mouse.
#pragma once

#include "binding/interfaces/supports.h"

namespace zab {

/// Hands the extension's own object to its helper; the helper's answer, or 0x8000FFFF.
nsresult initialise(nsISupports* host);

/// Registers the observers of HTTP traffic and of windows, once.
nsresult observeStartup(const char* topic);

nsresult tabSelected(const nsAString* documentId);
nsresult selectedTabReported(const nsAString* documentId);
nsresult documentUnloaded(const nsAString* documentId);
nsresult mouseEvent(nsISupports* event);

}  // namespace zab
