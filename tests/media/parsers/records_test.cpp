#include "media/parsers/records.h"

#include <gtest/gtest.h>

namespace {

struct Record {
    int value = 0;
    Record* next = nullptr;
};

int chunksLeft = 0;

struct ScarceMemory {
    template <class T>
    static std::unique_ptr<T> make() {
        return chunksLeft-- > 0 ? std::make_unique<T>() : nullptr;
    }
};

TEST(Records, AreInTheListWholeOrNotAtAll) {
    zab::Records<Record, ScarceMemory> records;
    int made = 0;
    for (int attempt = 0; attempt < 500; ++attempt) {
        chunksLeft = attempt % 7 == 0 ? 1 : 0;  // most attempts to begin a chunk fail
        if (Record* record = records.append()) record->value = ++made;
    }
    ASSERT_EQ(records.size(), static_cast<std::size_t>(made));
    ASSERT_GT(made, 128) << "more than two chunks, so that failures fell between linked records";
    int linked = 0;
    for (const Record* record = &records[0]; record != nullptr; record = record->next)
        EXPECT_EQ(record->value, ++linked);
    EXPECT_EQ(linked, made);
}

}  // namespace
