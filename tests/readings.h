// Tables of what is given and of what is read from it.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace zabtest {

template <class Read, class Given = std::string>
struct ReadingOf {
    Given text;
    Read read;
    const char* why;
};
using Reading = ReadingOf<std::string>;

template <class Reader, class Read, class Given, std::size_t kRows>
void expectReadings(Reader read, const ReadingOf<Read, Given> (&rows)[kRows]) {
    for (const auto& row : rows)
        EXPECT_EQ(read(row.text), row.read) << row.why << ": " << testing::PrintToString(row.text);
}

}  // namespace zabtest
