#include "binding/pointer_array.h"

#include <gtest/gtest.h>

#include <string>

namespace zab {
namespace {

TEST(GrowingArray, IsASetInTheOrderOfAddition) {
    const std::string far(100, 'x');  // long enough to be on the heap, where a leak would show
    const auto item = [&far](int number) { return far + std::to_string(number); };
    GrowingArray<std::string, 0, 10> items;
    EXPECT_FALSE(items.Remove(item(1))) << "nothing is there";
    for (int i = 1; i <= 10; ++i) EXPECT_TRUE(items.Add(item(i)));
    EXPECT_FALSE(items.Add(item(3))) << "already there";
    EXPECT_EQ(items.capacity(), 10);
    items.Add(item(11));
    EXPECT_EQ(items.capacity(), 20) << "grows by ten";

    EXPECT_TRUE(items.Remove(item(1)));
    EXPECT_FALSE(items.Remove(item(1))) << "gone";
    items.RemoveAt(9);
    EXPECT_FALSE(items.Contains(item(11)));
    EXPECT_EQ(items.capacity(), 20) << "never shrinks";
    ASSERT_EQ(items.count(), 9);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(items[i], item(i + 2));
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
