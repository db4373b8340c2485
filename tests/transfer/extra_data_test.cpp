#include "transfer/extra_data.h"

#include <gtest/gtest.h>

#include <set>

#include "readings.h"

namespace zab {
namespace {

const ExtraDataSource kSource{"agent",      "C:\\body",
                              "title",      "zip",
                              "form",       true,
                              "type",       UINT64_MAX,
                              "page",       {"c=1", BasicCredentials{"u1", "p1"}},
                              "second",     {"c=2", BasicCredentials{"u2", "p2"}},
                              "extra",      true,
                              "description"};

constexpr const char* kEverything[] = {
    "agent", "C:\\body", "title", "zip", "form", "type", "18446744073709551615", "page", "", "c=1", "u1",
    "p1",    "second",   "extra", "c=2", "u2",   "p2",   "description"};

TEST(ExtraData, PutsEveryTextAtItsPositionAndLeavesOutWhatHasNoValue) {
    using Absent = std::set<std::size_t>;
    const zabtest::ReadingOf<Absent, void (*)(ExtraDataSource&)> rows[] = {
        {[](auto&) {}, {18}, "everything"},
        {[](auto& s) { s = {}; }, {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}, "nothing"},
        {[](auto& s) { s.postGiven = false; }, {4, 18}, "a content type needs its body"},
        {[](auto& s) { s.extraDataGiven = false; }, {13, 18}, "extra data that does not count"},
        {[](auto& s) { s.secondUrl = ""; }, {12, 13, 18}, "extra data belongs to a second address"},
        {[](auto& s) { s.page.login.reset(); }, {10, 11, 18}, "no login for the page"},
        {[](auto& s) { s.second.login->password = ""; }, {16, 18}, "a login without a password"},
    };
    const auto absent = [](void (*change)(ExtraDataSource&)) {
        auto source = kSource;
        change(source);
        const auto elements = extraDataOf(source);
        Absent missing;
        for (std::size_t i = 0; i < elements.size(); ++i)
            if (!elements[i])
                missing.insert(i);
            else
                EXPECT_EQ(*elements[i], kEverything[i]);
        return missing;
    };
    zabtest::expectReadings(absent, rows);
}

}  // namespace
}  // namespace zab
