// Controllers over numbered windows: messages wait in a queue that the test serves.
#include "ui/controllers.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "ui/media_request_check.h"
#include "ui/panel_messages.h"

namespace zab {
namespace {

using namespace panel_messages;
using zabtest::requestItem;
using enum TransferResult;

constexpr WindowHandle kProcess = 1, kPage = 3;
const std::string kPage7 = requestItem(32, u"7"), kAll = requestItem(30, u"!ALL!") + kPage7;

class Desk : public ControllerHost {
  public:
    bool post(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) override {
        if (hasRoom) queue.push_back([=, this] { controllers.answer(window, message, lParam); });
        return hasRoom;
    }
    bool makesWay(std::function<void()> work) override {
        if (othersWait) later = std::move(work);
        return othersWait;
    }
    /// Page 7 offers three links as its selection, and nothing else.
    std::optional<ChosenMedia> lookUp(const MediaRequest& request, WindowHandle) override {
        if (listsLocked) return std::nullopt;
        ChosenMedia media;
        media.pageKnown = request.pageIdentity == u"7";
        if (media.pageKnown && request.mediaUrl == u"!ALL!") media.links = {"a", "b", "c"};
        return media;
    }
    WindowHandle replyWindow(const Choice&, WindowHandle, WindowHandle) override { return noReply ? 0 : kPage; }
    std::unique_ptr<ChoiceSender> sender() override { return std::make_unique<Sender>(*this); }
    bool file(std::unique_ptr<MediaEntry>) override { return true; }
    void tell(ChoiceEnd end) override { told.push_back(end); }

    std::intptr_t asks(const std::string& payload = kAll) {
        return controllers.requested(kProcess, zabtest::bytesOf(payload));
    }
    void serves() {
        while (!queue.empty()) {
            const auto next = std::move(queue.front());
            queue.pop_front();
            next();
        }
    }

    bool hasRoom = true, othersWait = false, listsLocked = false, noReply = false;
    std::function<void()> later;
    std::deque<std::function<void()>> queue;
    std::string sent;
    std::vector<ChoiceEnd> told;
    std::function<TransferResult(char url)> answers = [](char) { return made; };
    Controllers controllers{*this};

  private:
    struct Sender : ChoiceSender {
        explicit Sender(Desk& owner) : desk(owner) {}
        TransferResult send(const TransferRecord& record, bool) override {
            desk.sent += record.url;
            return desk.answers(record.url[0]);
        }
        Desk& desk;
    };
};

TEST(Controllers, EachTransferHasItsOwnRepeatsAndTheUserIsToldOnce) {
    const struct {
        TransferResult first, fourth;  // try of each link but the last
        const char* sent;
        std::vector<ChoiceEnd> told;
    } rows[] = {
        {retryLater, made, "aaaabbbbc", {}},
        {retryLater, retryLater, "aaaabbbbc", {ChoiceEnd::noCallsNow}},
        {notMade, made, "abc", {}},  // told by the transfer
    };
    for (const auto& row : rows) {
        Desk desk;
        std::map<char, int> tries;
        desk.answers = [&](char url) {
            if (url == 'c') return made;
            return ++tries[url] < 4 ? row.first : row.fourth;
        };
        desk.asks();
        desk.serves();
        EXPECT_EQ(desk.sent, row.sent);
        EXPECT_EQ(desk.told, row.told);
    }
}

TEST(Controllers, WhatComesToNothingIsToldToUsersAlone) {
    Desk desk;
    desk.asks(kPage7);
    desk.asks(requestItem(30, u"!ALL!") + requestItem(32, u"8"));
    desk.serves();
    EXPECT_EQ(desk.told, std::vector{ChoiceEnd::nothingThere}) << "nobody clicks in an unknown page";
    for (bool* lacks : {&desk.listsLocked, &desk.noReply}) {
        *lacks = true;
        desk.asks();
        desk.serves();
        *lacks = false;
    }
    EXPECT_EQ(desk.told.size(), 3u) << "all that can be told";

    int taken = 0;
    for (int i = 0; i < 80; ++i) taken += static_cast<int>(desk.asks());
    EXPECT_EQ(taken, Controllers::kMostWaiting);
    EXPECT_EQ(std::ssize(desk.queue), taken) << "none for what was not taken";
    EXPECT_EQ(desk.asks(kPage7), 0);
    EXPECT_EQ(desk.told.size(), 3u + 16u) << "nothing was asked for that is missed";
    desk.serves();
    EXPECT_EQ(desk.sent.size(), 64u * 3u);
    EXPECT_EQ(desk.asks(), 1) << "there is room again";
}

TEST(Controllers, AMessageInsideATransferWaits) {
    Desk desk;
    bool inside = false;
    desk.answers = [&](char) {
        EXPECT_FALSE(std::exchange(inside, true)) << "a transfer inside another";
        desk.serves();  // what a call into another process does while it waits
        inside = false;
        return made;
    };
    desk.asks();
    desk.asks();
    desk.serves();
    EXPECT_EQ(desk.sent.size(), 6u);
}

TEST(Controllers, WhatHasNoRoomOrMakesWayGoesOnLaterUnlessAllEnds) {
    const struct {
        bool hasRoom, othersWait, ends;
        const char* sent;
    } rows[] = {{false, false, false, "abc"},
                {true, true, false, "abc"},
                {true, false, true, ""},
                {false, false, true, ""},
                {true, true, true, "a"}};
    for (const auto& row : rows) {
        Desk desk;
        desk.hasRoom = row.hasRoom;
        desk.othersWait = row.othersWait;
        EXPECT_EQ(desk.asks(), 1);
        if (row.othersWait) desk.serves();
        EXPECT_EQ(desk.sent, row.othersWait ? "a" : "");
        if (row.ends) desk.controllers.end();
        desk.hasRoom = true;
        desk.othersWait = false;
        if (desk.later) desk.later();
        EXPECT_EQ(desk.controllers.answer(kPage, kClose, 0), 0) << "not passed on";
        for (const auto message : {kResolve, kResolved, kFileEntry})
            EXPECT_EQ(desk.controllers.answer(kPage, message, ~std::uintptr_t{0}), 0) << "of a stranger";
        desk.serves();
        EXPECT_EQ(desk.sent, row.sent);
    }
}

}  // namespace
}  // namespace zab
