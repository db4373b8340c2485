#include "binding/pointer_array.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zab {
namespace {

nsISupports* document(std::uintptr_t number) { return reinterpret_cast<nsISupports*>(number); }

TEST(GrowingArray, IsASetInTheOrderOfAddition) {
    GrowingArray<nsISupports*, 10> documents;
    EXPECT_EQ(documents.capacity(), 10);
    for (std::uintptr_t i = 1; i <= 10; ++i) EXPECT_TRUE(documents.Add(document(i)));
    EXPECT_FALSE(documents.Add(document(3))) << "already there";
    EXPECT_EQ(documents.count(), 10);
    EXPECT_EQ(documents.capacity(), 10);
    documents.Add(document(11));
    EXPECT_EQ(documents.capacity(), 20) << "grows by ten";

    EXPECT_TRUE(documents.Remove(document(1)));
    EXPECT_FALSE(documents.Remove(document(1))) << "gone";
    EXPECT_TRUE(documents.Remove(document(11)));
    EXPECT_FALSE(documents.Contains(document(11)));
    EXPECT_EQ(documents.capacity(), 20) << "never shrinks";
    ASSERT_EQ(documents.count(), 9);
    for (std::int32_t i = 0; i < 9; ++i) EXPECT_EQ(documents[i], document(static_cast<std::uintptr_t>(i) + 2));
}

struct Record {
    std::string url;
    bool operator==(const Record&) const = default;
};

TEST(GrowingArray, KeepsRecordsAsWellAsPointers) {
    GrowingArray<Record, 0, 2> links;
    EXPECT_EQ(links.capacity(), 0);
    EXPECT_FALSE(links.Remove({"none"}));
    const std::string far(100, 'x');  // long enough to be on the heap, where a leak would show
    for (const char* name : {"a", "b", "c"}) links.Add({far + name});
    EXPECT_EQ(links.capacity(), 4);
    links.RemoveAt(1);
    links.Remove({far + "c"});
    ASSERT_EQ(links.count(), 1);
    EXPECT_EQ(links[0].url, far + "a");
}

/// A record for which the memory runs out when the test says so.
struct ScarceRecord {
    int value = 0;
    bool operator==(const ScarceRecord&) const = default;

    static inline bool memoryLeft = true;
    static void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
        return memoryLeft ? ::operator new[](size, std::nothrow) : nullptr;
    }
    static void operator delete[](void* memory) noexcept { ::operator delete[](memory); }
};

TEST(GrowingArray, ThrowsWithoutMemoryAndStaysAsItWas) {
    using Scarce = GrowingArray<ScarceRecord, 1, 1>;
    Scarce records;
    records.Add({1});
    ScarceRecord::memoryLeft = false;
    EXPECT_THROW(Scarce{}, OutOfMemory) << "construction";
    EXPECT_THROW(records.Add({2}), OutOfMemory) << "growth";
    EXPECT_EQ(records.count(), 1);
    EXPECT_EQ(records.capacity(), 1);
    ScarceRecord::memoryLeft = true;
    EXPECT_TRUE(records.Add({2})) << "usable afterwards";
    EXPECT_EQ(records[1].value, 2);
}

}  // namespace
}  // namespace zab
