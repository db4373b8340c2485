#include "page/request_lists.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(RequestLists, ARedirectAndADocumentsEndReachBoth) {
    RequestLists lists;
    const auto has = [&lists](const char* url) {
        return std::pair{lists.requested.find(url) != nullptr, lists.examined.find(url) != nullptr};
    };
    constexpr std::pair both{true, true}, neither{false, false};
    for (auto* list : {&lists.requested, &lists.examined}) {
        OBJECTREQUESTSARRAY_ITEM record;
        record.url = "http://h.example/old";
        record.documentId = 7;
        list->add(std::move(record));
    }
    lists.rename("http://h.example/old", "http://h.example/new");
    EXPECT_EQ(has("http://h.example/old"), neither);
    EXPECT_EQ(has("http://h.example/new"), both);
    lists.forget({nullptr, 8});
    EXPECT_EQ(has("http://h.example/new"), both) << "another document";
    lists.forget({nullptr, 7});
    EXPECT_EQ(has("http://h.example/new"), neither);
}

}  // namespace
}  // namespace zab
