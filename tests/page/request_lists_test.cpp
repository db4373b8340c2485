#include "page/request_lists.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(RequestLists, ARedirectAndADocumentsEndReachBoth) {
    RequestLists lists;
    OBJECTREQUESTSARRAY_ITEM record;
    record.url = "old";
    record.documentId = 7;
    for (auto* list : {&lists.requested, &lists.examined}) list->add(record);
    lists.rename("old", "new");
    lists.forget({nullptr, 8});
    EXPECT_TRUE(lists.requested.find("new") && lists.examined.find("new")) << "another document ended";
    lists.forget({nullptr, 7});
    EXPECT_FALSE(lists.requested.find("new") || lists.examined.find("new"));
}

}  // namespace
}  // namespace zab
