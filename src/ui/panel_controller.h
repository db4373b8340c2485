// The windows that the button library, the panel and other processes talk to.
//
// One page controller per top-level browser window, a child of it on the browser's main thread; one process
// controller, a message-only window on a thread of its own. Both answer the same messages:
//
//     0x465         alive: 1
//     WM_COPYDATA   dwData 0x466: a media request (media_request.h); 1 when it was taken
//     0x467, 0x468  the controller's own steps of a request; lParam is a ticket
//     0x40E         a media entry that changes owner; lParam is its address
//
// Everybody may send these numbers with any lParam, so none is ever followed: a ticket and an address count
// only while the module's own table holds what it put there for this very window. The table owns the records on
// their way; what was meant for a window that ends is freed with it.
//
// Once a controller exists the module stays loaded until the process ends: window classes and windows of a
// browser's thread cannot be taken back from the outside, and their procedure is code of the module.
#pragma once

#include <memory>

#include "entry/platform.h"
#include "media/capture/media_entry.h"

namespace zab {

/// The page controller of a top-level browser window, made on first use. 0: there is none, because the window
/// is none of this process or nothing could be made. On the browser's main thread alone. Starts the process
/// controller.
WindowHandle pageController(WindowHandle browserWindow) noexcept;

/// The process controller, started on first use; 0: it could not be. On the browser's main thread alone.
WindowHandle processController() noexcept;

/// Sends an entry to a page controller with 0x40E and returns when it was filed; false: it was not taken, and
/// is gone. Calls what stands behind `fileEntry` (media_capture.h), so no lock may be held.
bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept;

}  // namespace zab
