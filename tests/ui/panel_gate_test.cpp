#include "ui/panel_gate.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

constexpr const char* kPage = "http://www.h.example/watch";

TEST(PanelGate, AnswersByTypeAndPage) {
    const std::string longest(31, 'x');
    const std::string tooLong(32, 'x');
    const auto values = [](std::optional<std::uint32_t> type, std::uint32_t capture = 0,
                           const char* excepted = "") {
        return PanelValues{.keyOpen = true,
                           .type = type,
                           .minimumSize = 700,
                           .captureWithoutPanel = capture,
                           .exceptedPages = CExceptionServersList(excepted)};
    };
    PanelValues every = values(2, 1, "www.h.example"), closed = every;
    every.everyType = true;
    closed.keyOpen = false;
    const PanelGate open, refused{.refused = true};
    const struct {
        std::string_view extension;
        PanelValues values;
        PanelGate gate;
        const char* why;
    } rows[] = {
        {"mp4", every, open, "every type: nothing else counts"},
        {tooLong, every, open, "not even the length"},
        {"", values(2, 1, "www.h.example"), open, "no extension"},
        {"MP4", closed, open, "no panel key: the built-in list"},
        {"zip", {}, refused, "and not in it"},
        {longest, values(1), {.minimumSize = 700}, "31 characters"},
        {tooLong, values(1), refused, "32"},
        {"zip", values({}), refused, "nothing set, not in the list"},
        {"zip", values(0), {.minimumSize = 700}, "set, whatever to"},
        {"mp4", values({}, 1), {.captureFlag = 1, .minimumSize = 700}, "nothing set, in the list"},
        {"mp4", values({}), {.minimumSize = 700}, "pages without a panel are not set"},
        {"mp4", values({}, 2), {.minimumSize = 700}, "exactly 1"},
        {"mp4", values(2, 1), {.captureFlag = 1, .minimumSize = 700}, "2 follows it"},
        {"mp4", values(1, 1), {.minimumSize = 700}, "1 does not"},
        {"mp4", values(1, 1, "www.h.example"), {false, true, 1, 700}, "but on an excepted page"},
        {"mp4", values(1, 0, "www.h.example"), {false, true, 0, 700}, "an excepted page alone"},
    };
    for (const auto& row : rows) EXPECT_EQ(panelGate(kPage, row.extension, row.values), row.gate) << row.why;
}

TEST(PanelGate, DecidesWhatBecomesOfAnEntry) {
    using enum EntryFate;
    const struct {
        PanelGate gate;  // refused, excepted, capture flag, least size
        std::uint64_t size;
        EntryFate fate;
    } rows[] = {{{}, 0, shown},
                {{true}, 0, dropped},
                {{false, false, 1}, 0, kept},
                {{false, true}, 0, dropped},
                {{false, true, 1}, 0, kept},
                {{false, false, 1, 700}, 699, dropped},
                {{false, false, 0, 700}, 700, shown},
                {{false, false, 0, 700}, 0, shown}};
    for (const auto& row : rows) EXPECT_EQ(fateOf(row.gate, row.size), row.fate) << &row - rows;
}

}  // namespace
}  // namespace zab
