// Controllers over numbered windows: messages wait in a queue that the test serves.
#include "ui/controllers.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <random>

#include "ui/media_request_check.h"
#include "ui/panel_messages.h"

namespace zab {
namespace {

using namespace panel_messages;
using zabtest::requestItem;
using enum TransferResult;

constexpr WindowHandle kProcess = 1, kOwn = 2, kPage = 3;

struct Posted {
    WindowHandle window;
    std::uint32_t message;
    std::uintptr_t lParam;
};

class Desk : public ControllerHost {
  public:
    bool post(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) override {
        if (queue.size() >= room) return false;
        queue.push_back({window, message, lParam});
        return true;
    }
    bool makesWay(std::function<void()> work) override {
        if (othersWait) later = std::move(work);
        return othersWait;
    }
    /// Page 7 offers `links` as its selection; "nothing" names nothing there.
    std::optional<ChosenMedia> lookUp(const MediaRequest& request, WindowHandle) override {
        ChosenMedia media;
        if (request.pageIdentity != u"7") return media;
        media.pageKnown = true;
        if (request.mediaUrl == u"!ALL!") media.links = links;
        return media;
    }
    WindowHandle replyWindow(const Choice&, WindowHandle, WindowHandle leaving) override {
        return leaving != kPage ? kPage : kOwn;
    }
    std::unique_ptr<ChoiceSender> sender() override { return std::make_unique<Sender>(*this); }
    bool file(std::unique_ptr<MediaEntry>) override { return true; }
    void tell(ChoiceEnd end) override { told.push_back(end); }

    std::intptr_t asks(const std::string& payload, WindowHandle window = kProcess) {
        return controllers.requested(window,
                                     {reinterpret_cast<const std::uint8_t*>(payload.data()), payload.size()});
    }
    std::intptr_t asksAll() { return asks(requestItem(30, u"!ALL!") + requestItem(32, u"7")); }
    /// Serves one message; false: none waits.
    bool serves() {
        if (queue.empty()) return false;
        const Posted next = queue.front();
        queue.pop_front();
        controllers.answer(next.window, next.message, next.lParam);
        return true;
    }
    void servesAll() {
        while (serves()) {
        }
    }

    const std::vector<std::string> links{"a", "b", "c"};
    std::size_t room = 10'000;
    bool othersWait = false;
    std::function<void()> later;
    std::deque<Posted> queue;
    std::vector<std::string> sent;
    std::vector<ChoiceEnd> told;
    std::function<TransferResult(const std::string& url)> answers = [](const std::string&) { return made; };
    Controllers controllers{*this};

  private:
    struct Sender : ChoiceSender {
        explicit Sender(Desk& owner) : desk(owner) {}
        TransferResult send(const TransferRecord& record, bool) override {
            desk.sent.push_back(record.url);
            return desk.answers(record.url);
        }
        Desk& desk;
    };
};

TEST(Controllers, EachTransferHasItsOwnRepeatsAndTheUserIsToldOnce) {
    const struct {
        std::function<TransferResult(const std::string&, int)> answers;
        const char* sent;
        std::vector<ChoiceEnd> told;
    } rows[] = {
        {[](const auto&, int time) { return time < 4 ? retryLater : made; }, "aaaabbbbcccc", {}},
        {[](const auto& url, int) { return url == "c" ? made : retryLater; },
         "aaaabbbbc",
         {ChoiceEnd::noCallsNow}},
        {[](const auto& url, int) { return url == "a" ? notMade : made; }, "abc", {}},  // told by the transfer
    };
    for (const auto& row : rows) {
        Desk desk;
        std::map<std::string, int> times;
        desk.answers = [&](const std::string& url) { return row.answers(url, ++times[url]); };
        desk.asksAll();
        desk.servesAll();
        std::string sent;
        for (const std::string& url : desk.sent) sent += url;
        EXPECT_EQ(sent, row.sent);
        EXPECT_EQ(desk.told, row.told);
    }
}

TEST(Controllers, WhatComesToNothingIsToldToUsersAlone) {
    Desk desk;
    desk.asks(requestItem(30, u"nothing") + requestItem(32, u"7"));
    desk.asks(requestItem(30, u"!ALL!") + requestItem(32, u"8"));
    desk.servesAll();
    EXPECT_EQ(desk.told, std::vector{ChoiceEnd::nothingThere}) << "nobody clicks in an unknown page";

    int taken = 0;
    for (int i = 0; i < 80; ++i) taken += static_cast<int>(desk.asksAll());
    EXPECT_EQ(taken, 64);
    EXPECT_EQ(desk.told.size(), 1u + 16u);
    desk.servesAll();
    EXPECT_EQ(desk.sent.size(), 64u * 3u);
    EXPECT_EQ(desk.asksAll(), 1) << "there is room again";
}

TEST(Controllers, AMessageInsideATransferOrWithoutRoomWaits) {
    Desk desk;
    bool inside = false;
    desk.answers = [&](const std::string&) {
        EXPECT_FALSE(std::exchange(inside, true)) << "a transfer inside another";
        desk.servesAll();  // what a call into another process does while it waits
        inside = false;
        return made;
    };
    desk.asksAll();
    desk.asksAll();
    desk.servesAll();
    EXPECT_EQ(desk.sent.size(), 6u);

    desk.room = 0;
    EXPECT_EQ(desk.asksAll(), 1);
    desk.room = 10;
    desk.controllers.answer(kPage, kAlive, 0);
    desk.servesAll();
    EXPECT_EQ(desk.sent.size(), 9u);
}

TEST(Controllers, TheNextTransferWaitsForWhatComesBehindMessages) {
    Desk desk;
    desk.othersWait = true;
    desk.asksAll();
    desk.servesAll();
    EXPECT_EQ(desk.sent.size(), 1u);
    desk.othersWait = false;
    desk.later();
    desk.servesAll();
    EXPECT_EQ(desk.sent, desk.links);
}

TEST(Controllers, StrangersEndNothingAndReachNothing) {
    Desk desk;
    std::mt19937 random(8);
    const std::uint32_t numbers[] = {kClose,   0x2,       kDestroyed, kAlive,    kRequestByCopy,
                                     kResolve, kResolved, 0x469,      kFileEntry};
    MediaEntry entry;
    const std::uintptr_t addresses[] = {0, 8, ~std::uintptr_t{0}, reinterpret_cast<std::uintptr_t>(&entry)};
    desk.asksAll();
    for (int i = 0; i < 100'000; ++i) {
        const WindowHandle window = 1 + random() % 3;
        if (i % 10 == 0) {
            std::string noise(random() % 64, '\0');
            for (char& c : noise) c = static_cast<char>(random());
            desk.asks((i % 20 == 0 ? requestItem(30, u"!ALL!") : "") + noise, window);
        } else {
            const auto number = numbers[random() % std::size(numbers)];
            const auto answer = desk.controllers.answer(window, number, addresses[random() % 4]);
            if (number == kClose) {
                ASSERT_EQ(answer, 0) << "not passed on";
            }
        }
        if (i % 3 == 0) desk.serves();
    }
    desk.servesAll();
    EXPECT_EQ(desk.sent, (std::vector<std::string>{"a", "b", "c"})) << "what the user chose, and that once";
}

}  // namespace
}  // namespace zab
