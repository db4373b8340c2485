// Which thread is the browser's main thread: its services and the extension's helpers must not be called from
// any other, but a transfer may start on a window thread of our own.
#pragma once

namespace zab {

/// Called by everything that the browser calls; the first call of all tells the thread.
void noteBrowserThread() noexcept;

/// True on the noted thread, and nowhere as long as none was noted.
bool onBrowserThread() noexcept;

}  // namespace zab
