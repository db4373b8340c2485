#include "transfer/extra_data.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>

namespace zab {
namespace {

ExtraDataSource everything() {
    ExtraDataSource source;
    source.userAgent = "agent";
    source.bodyFile = "C:\\body";
    source.pageTitle = "title";
    source.typeHint = "zip";
    source.postContentType = "form";
    source.postGiven = true;
    source.contentType = "type";
    source.sizeBytes = UINT64_MAX;
    source.pageUrl = "page";
    source.page = {"c=1", BasicCredentials{"u1", "p1"}};
    source.secondUrl = "second";
    source.second = {"c=2", BasicCredentials{"u2", "p2"}};
    source.extraData = "extra";
    source.extraDataGiven = true;
    source.description = "description";
    return source;
}

constexpr const char* kEverything[] = {
    "agent", "C:\\body", "title", "zip", "form", "type", "18446744073709551615", "page", "", "c=1", "u1",
    "p1",    "second",   "extra", "c=2", "u2",   "p2",   "description"};

TEST(ExtraData, PutsEveryTextAtItsPositionAndLeavesOutWhatHasNoValue) {
    const struct {
        void (*change)(ExtraDataSource&);
        std::set<std::size_t> absent;
        const char* why;
    } rows[] = {
        {[](ExtraDataSource&) {}, {}, "everything"},
        {[](ExtraDataSource& s) { s = {}; },
         {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17},
         "nothing is known"},
        {[](ExtraDataSource& s) { s.postGiven = false; }, {4}, "a content type needs its body"},
        {[](ExtraDataSource& s) { s.postContentType = ""; }, {4}, "a body without a type"},
        {[](ExtraDataSource& s) { s.extraDataGiven = false; }, {13}, "extra data that does not count"},
        {[](ExtraDataSource& s) { s.secondUrl = ""; }, {12, 13}, "extra data belongs to a second address"},
        {[](ExtraDataSource& s) { s.page.login.reset(); }, {10, 11}, "no login for the page"},
        {[](ExtraDataSource& s) { s.second.login->password = ""; }, {16}, "a login without a password"},
        {[](ExtraDataSource& s) { s.page.cookies = ""; }, {9}, "no cookies for the page"},
    };
    for (const auto& row : rows) {
        auto source = everything();
        row.change(source);
        const auto elements = extraDataOf(source);
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const bool has = i < std::size(kEverything) && row.absent.count(i) == 0;
            EXPECT_EQ(elements[i], has ? std::optional<std::string>(kEverything[i]) : std::nullopt)
                << row.why << i;
        }
    }
}

}  // namespace
}  // namespace zab
