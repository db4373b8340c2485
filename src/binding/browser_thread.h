// Which thread is the browser's main thread: its services and the extension's helpers must not be called from
// any other, but a transfer may start on a window thread of our own.
#pragma once

namespace zab {

/// Called by the first entry point that the browser calls.
void noteBrowserThread() noexcept;

/// True on the noted thread, and everywhere as long as none was noted.
bool onBrowserThread() noexcept;

}  // namespace zab
