// What the controller windows do with their messages, over windows that are numbers.
//
// A choice arrives as a copy and is looked up there and then, so that neither the end of its page nor that of a
// window loses it. From then on it belongs to a table (in_flight.h), and messages carry its address: to the
// controller itself, which knows whether anything is meant; then, one for each transfer, to a window of the
// browser's thread. Everybody may send these numbers with any lParam, so none is followed that the table does
// not hold for that window and message. Nor is any message believed that says a window ends: it is a reason to
// send what the window was to receive elsewhere, which is right in either case.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "binding/byte_reader.h"
#include "page/media_entry.h"
#include "page/platform.h"
#include "ui/choice.h"
#include "ui/in_flight.h"

namespace zab {

/// Why a click came to nothing.
enum class ChoiceEnd { nothingThere, noCallsNow };

/// What the controllers need of windows, of the lists and of the user. Called on the threads of the windows.
class ControllerHost {
  public:
    virtual ~ControllerHost() = default;
    virtual bool post(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) = 0;
    /// Posted messages come before input, painting and timers: when one of these waits for the calling thread,
    /// `work` runs behind it. False: none waits, or there is no timer to run it by.
    virtual bool makesWay(std::function<void()> work) = 0;
    /// What a request names; nothing when the lists cannot be had.
    virtual std::optional<ChosenMedia> lookUp(const MediaRequest& request, WindowHandle asked) = 0;
    /// The window of the browser's thread where a choice goes on, other than `leaving`: the controller of its
    /// page, else `asked`, else the one that ends with the module; 0: there is none.
    virtual WindowHandle replyWindow(const Choice& choice, WindowHandle asked, WindowHandle leaving) = 0;
    virtual std::unique_ptr<ChoiceSender> sender() = 0;
    virtual bool file(std::unique_ptr<MediaEntry> entry) = 0;
    virtual void tell(ChoiceEnd end) = 0;
};

class Controllers {
  public:
    /// Choices that wait at one time; a further one comes to nothing.
    static constexpr int kMostWaiting = 64;

    explicit Controllers(ControllerHost& host) : host_(host) {}

    /// Takes a media request; 1 when it was taken.
    std::intptr_t requested(WindowHandle window, Bytes payload);

    /// Answers a message other than WM_COPYDATA. Nothing: it is none of the controllers'.
    std::optional<std::intptr_t> answer(WindowHandle window, std::uint32_t message, std::uintptr_t lParam);

    /// Drops what is on its way.
    void end();

    /// The number by which a message tells of the entry; 0: there is none.
    std::uintptr_t add(WindowHandle window, std::unique_ptr<MediaEntry> entry);
    /// Nobody received it.
    std::unique_ptr<MediaEntry> takeBack(WindowHandle window, std::uintptr_t number);

  private:
    void leave(WindowHandle window);
    std::intptr_t resolve(WindowHandle window, std::uintptr_t number);
    std::intptr_t resolved(WindowHandle window, std::uintptr_t number);
    void send(Choice& choice);
    void goOn(std::unique_ptr<Choice> choice, WindowHandle asked, WindowHandle leaving = 0);
    void goOnBehindOthers(std::unique_ptr<Choice> choice, WindowHandle asked);
    void post(WindowHandle window, std::uint32_t message, std::unique_ptr<Choice> choice);
    using Waiting = std::deque<std::unique_ptr<Choice>>;
    void hold(Waiting& where, std::unique_ptr<Choice> choice);
    void postAll(Waiting& from);
    void postHeld();

    ControllerHost& host_;
    std::shared_ptr<std::atomic<int>> waiting_ = std::make_shared<std::atomic<int>>(0);
    InFlight<Choice> choices_;
    InFlight<MediaEntry> entries_;
    std::atomic<bool> sending_{false};  // a transfer, which may bring the next message, has not ended

    std::mutex heldMutex_;
    Waiting held_;   // until nothing is sent, or until a message can be posted again
    Waiting later_;  // until what else waits for their thread is served
};

}  // namespace zab
