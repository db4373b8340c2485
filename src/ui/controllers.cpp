#include "ui/controllers.h"

#include <utility>

#include "ui/panel_messages.h"

namespace zab {
namespace {

using namespace panel_messages;

/// Counts as long as it lives; null: no room.
std::shared_ptr<void> placeIn(const std::shared_ptr<std::atomic<int>>& waiting, int most) {
    std::shared_ptr<void> place(nullptr, [waiting](void*) { --*waiting; });
    if (++*waiting > most) place.reset();
    return place;
}

}  // namespace

std::intptr_t Controllers::requested(WindowHandle window, Bytes payload) {
    auto choice = std::make_unique<Choice>();
    choice->request = decodeMediaRequest(payload);
    if (auto media = host_.lookUp(choice->request, window)) {
        choice->media = std::move(*media);
    } else {
        choice->media.pageKnown = true;  // for all that can be told
    }
    choice->place = placeIn(waiting_, kMostWaiting);
    if (choice->place.use_count() == 0) {
        if (choice->media.count() != 0) host_.tell(ChoiceEnd::noCallsNow);
        return 0;
    }
    // Not now: whoever sent this waits for the answer, and no call into another process can be made meanwhile.
    post(window, kResolve, std::move(choice));
    return 1;
}

std::optional<std::intptr_t> Controllers::answer(WindowHandle window, std::uint32_t message,
                                                 std::uintptr_t lParam) {
    std::optional<std::intptr_t> result;
    switch (message) {
        case kAlive: result = 1; break;
        case kResolve: result = resolve(window, lParam); break;
        case kResolved: result = resolved(window, lParam); break;
        case kFileEntry: {
            auto entry = entries_.take(window, message, lParam);
            result = entry && host_.file(std::move(entry)) ? 1 : 0;
            break;
        }
        case kClose: result = 0; break;  // the owner destroys the window
        case kDestroyed: leave(window); break;
    }
    postHeld();
    return result;
}

void Controllers::end() {
    choices_.clear();
    const std::lock_guard lock(heldMutex_);
    held_.clear();
    later_.clear();
}

/// Of a window that may be ending.
void Controllers::leave(WindowHandle window) {
    for (auto& choice : choices_.takeAll(window)) goOn(std::move(choice), 0, window);
}

std::uintptr_t Controllers::add(WindowHandle window, std::unique_ptr<MediaEntry> entry) {
    return entries_.add(window, kFileEntry, std::move(entry));
}

std::unique_ptr<MediaEntry> Controllers::takeBack(WindowHandle window, std::uintptr_t number) {
    return entries_.take(window, kFileEntry, number);
}

std::intptr_t Controllers::resolve(WindowHandle window, std::uintptr_t number) {
    auto choice = choices_.take(window, kResolve, number);
    if (!choice) return 0;
    choice->request.kind = requestedKind(choice->request);
    goOn(std::move(choice), window);
    return 0;
}

std::intptr_t Controllers::resolved(WindowHandle window, std::uintptr_t number) {
    auto choice = choices_.take(window, kResolved, number);
    if (!choice) return 0;
    if (sending_) {
        hold(held_, std::move(choice));
        return 0;
    }
    send(*choice);
    if (!choice->ended()) {
        goOnBehindOthers(std::move(choice), window);
    } else if (choice->givenUp) {
        host_.tell(ChoiceEnd::noCallsNow);
    }
    return 0;
}

void Controllers::send(Choice& choice) {
    struct Sending {
        std::atomic<bool>& flag;
        explicit Sending(std::atomic<bool>& under) : flag(under) { flag = true; }
        ~Sending() { flag = false; }
    } const sending(sending_);
    if (!choice.sender) choice.sender = host_.sender();
    choice.sendNext();
}

void Controllers::goOn(std::unique_ptr<Choice> choice, WindowHandle asked, WindowHandle leaving) {
    if (choice->media.count() == 0) {
        // Who names no page that is known is no user of its menu.
        if (choice->media.pageKnown) host_.tell(ChoiceEnd::nothingThere);
        return;
    }
    const WindowHandle window = host_.replyWindow(*choice, asked, leaving);
    if (window != 0) return post(window, kResolved, std::move(choice));
    host_.tell(ChoiceEnd::noCallsNow);
}

void Controllers::goOnBehindOthers(std::unique_ptr<Choice> choice, WindowHandle asked) {
    if (!host_.makesWay([this] { postAll(later_); })) return goOn(std::move(choice), asked);
    hold(later_, std::move(choice));
}

/// A choice whose message has no room waits for another moment.
void Controllers::post(WindowHandle window, std::uint32_t message, std::unique_ptr<Choice> choice) {
    const std::uintptr_t number = choices_.add(window, message, std::move(choice));
    if (number == 0 || host_.post(window, message, number)) return;
    if (auto back = choices_.take(window, message, number)) hold(held_, std::move(back));
}

void Controllers::hold(Waiting& where, std::unique_ptr<Choice> choice) {
    const std::lock_guard lock(heldMutex_);
    where.push_back(std::move(choice));
}

void Controllers::postAll(Waiting& from) {
    Waiting choices;
    {
        const std::lock_guard lock(heldMutex_);
        choices.swap(from);
    }
    for (auto& choice : choices) goOn(std::move(choice), 0);
}

void Controllers::postHeld() {
    if (!sending_) postAll(held_);
}

}  // namespace zab
