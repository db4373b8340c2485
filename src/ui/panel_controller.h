// The windows that the button library, the panel and other processes talk to.
//
// One page controller per top-level browser window, a child of it on the browser's main thread; one process
// controller, a message-only window on a thread of its own. Both answer the same messages:
//
//     0x465        alive: 1
//     WM_COPYDATA  dwData 0x466: a media request (media_request.h); 1 when it was taken
//     0x467        is what a request names known? lParam: the request
//     0x468        it is: hand it over; lParam: the request
//     0x40E        a media entry for its page: 1 when the page's button may show it; lParam: the entry
//
// A record in lParam changes owner with the message. Everybody may send these numbers with any lParam, so none
// is followed: it counts only when the module's own table (in_flight.h) holds that record for that window and
// message. The table owns the records on their way; those of a window that ends are freed with it.
//
// Once a controller exists the module stays loaded until the process ends: windows and their classes belong to
// the browser's thread, which the end of a module cannot wait for, and their procedure is code of the module.
#pragma once

#include <memory>

#include "page/media_entry.h"
#include "page/platform.h"

namespace zab {

/// The page controller of a top-level browser window, made on first use. 0: there is none, because the window
/// is none of this process or nothing could be made. On the browser's main thread alone. Starts the process
/// controller.
WindowHandle pageController(WindowHandle browserWindow) noexcept;

/// The process controller, started on first use; 0: it could not be. On the browser's main thread alone.
WindowHandle processController() noexcept;

/// When the browser shuts down: closes all controllers, and waits for the thread of the process controller, at
/// most 1,000 ms. False: it still runs.
bool endControllers() noexcept;

/// Sends an entry to a page controller with 0x40E and returns when its thread has filed it, as `fileEntry`
/// (media_capture.h) does and answers; an entry that nobody receives is gone. No lock may be held.
bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept;

}  // namespace zab
