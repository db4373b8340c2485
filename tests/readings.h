// Tables of texts and of what is read from them.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>

namespace zabtest {

struct Reading {
    std::string text, read;
    const char* why;
};

template <class Read>
void expectReadings(Read read, std::span<const Reading> rows) {
    for (const Reading& row : rows)
        EXPECT_EQ(read(row.text), row.read) << row.why << ": " << testing::PrintToString(row.text);
}

}  // namespace zabtest
