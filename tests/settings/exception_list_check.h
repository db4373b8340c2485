// What holds for every exception list and address.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <string_view>

#include "binding/text.h"
#include "settings/exception_servers.h"

namespace zab {

/// The first line is the address, the rest the list.
inline void checkExceptionList(std::string_view input) {
    const std::string url(upTo(input, '\n'));
    const std::string list(input.substr(std::min(url.size() + 1, input.size())));
    const bool listed = CExceptionServersList(list).IsListed(url);
    EXPECT_FALSE(listed && !contains(url, ":")) << "an address without a host is never listed";
    EXPECT_EQ(CExceptionServersList(uppered(list)).IsListed(lowered(url)), listed) << "letter case is nothing";
    EXPECT_EQ(CExceptionServersList("\t" + list + " ").IsListed(url), listed)
        << "nor are blanks around the list";
    EXPECT_TRUE(!listed || CExceptionServersList(list + " other.example").IsListed(url)) << "more lists more";
    EXPECT_FALSE(CExceptionServersList().IsListed(url));
}

}  // namespace zab
