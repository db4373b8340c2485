// The windows that the button library, the panel and other processes talk to.
//
// One page controller per top-level browser window, a child of it on the browser's main thread; one process
// controller, a message-only window on a thread of its own. Both answer the same messages (controllers.h):
//
//     0x465        alive: 1
//     WM_COPYDATA  dwData 0x466: a media request (media_request.h); 1 when it was taken
//     0x467        is anything meant by a request? lParam: the request
//     0x468        it is: hand its next transfer over; lParam: the request
//     0x40E        a media entry for its page: 1 when the page's button may show it; lParam: the entry
//
// A third window, which nobody is told of, stands on the browser's thread: there a choice goes on whose page
// has no controller, or has lost it. All end with endControllers(), page controllers with their browser window
// as well, and by no message.
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

/// The process controller, started on first use. 0: it could not be, or needs longer than 1,000 ms, and is
/// there at a later call. On the browser's main thread alone.
WindowHandle processController() noexcept;

/// When the browser shuts down: ends all of them, and waits for the thread of the process controller, at most
/// 1,000 ms. What is chosen and not yet sent is gone. False: the thread still runs. On the browser's main
/// thread.
bool endControllers() noexcept;

/// Sends an entry to a page controller with 0x40E and returns when its thread has filed it, as `fileEntry`
/// (media_capture.h) does and answers; an entry that nobody receives is filed here. No lock may be held.
bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept;

}  // namespace zab
