#include "transfer/extra_data.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

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

using Elements = std::map<std::size_t, std::string>;  // what is not absent, by position

Elements elementsOf(const ExtraDataSource& source) {
    Elements result;
    const auto elements = extraDataOf(source);
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i]) result.emplace(i, *elements[i]);
    return result;
}

const Elements kEverything = {{0, "agent"},
                              {1, "C:\\body"},
                              {2, "title"},
                              {3, "zip"},
                              {4, "form"},
                              {5, "type"},
                              {6, "18446744073709551615"},
                              {7, "page"},
                              {8, ""},
                              {9, "c=1"},
                              {10, "u1"},
                              {11, "p1"},
                              {12, "second"},
                              {13, "extra"},
                              {14, "c=2"},
                              {15, "u2"},
                              {16, "p2"},
                              {17, "description"}};

TEST(ExtraData, PutsEveryTextAtItsPosition) { EXPECT_EQ(elementsOf(everything()), kEverything); }

TEST(ExtraData, LeavesOutWhatHasNoValue) {
    const struct {
        std::function<void(ExtraDataSource&)> change;
        std::vector<std::size_t> absent;
        const char* why;
    } rows[] = {
        {[](auto& s) { s = {}; },
         {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17},
         "nothing is known"},
        {[](auto& s) { s.postGiven = false; }, {4}, "a content type needs its body"},
        {[](auto& s) { s.postContentType = ""; }, {4}, "a body without a type"},
        {[](auto& s) { s.extraDataGiven = false; }, {13}, "extra data that does not count"},
        {[](auto& s) { s.secondUrl = ""; }, {12, 13}, "extra data belongs to a second address"},
        {[](auto& s) { s.page.login.reset(); }, {10, 11}, "no login for the page"},
        {[](auto& s) { s.second.login->password = ""; }, {16}, "a login without a password"},
        {[](auto& s) { s.page.cookies = ""; }, {9}, "no cookies for the page"},
    };
    for (const auto& row : rows) {
        auto source = everything();
        row.change(source);
        auto expected = kEverything;
        for (const auto position : row.absent) expected.erase(position);
        EXPECT_EQ(elementsOf(source), expected) << row.why;
    }
}

}  // namespace
}  // namespace zab
