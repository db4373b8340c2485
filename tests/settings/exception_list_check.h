// What holds for every exception list and address.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "binding/text.h"
#include "media/parsers/must.h"
#include "settings/exception_servers.h"

namespace zabtest {

/// The first line is the address, the rest the list.
inline void checkExceptionList(std::string_view input) {
    const std::string url(zab::upTo(input, '\n'));
    const std::string list(input.substr(std::min(url.size() + 1, input.size())));
    const auto listed = [](const std::string& servers, const std::string& address) {
        return zab::CExceptionServersList(servers).IsListed(address);
    };
    const bool is = listed(list, url);
    must(!is || zab::contains(url, ":"));
    must(listed(zab::uppered(list), zab::lowered(url)) == is);
    must(listed("\t" + list + " ", url) == is);
    must(!is || listed(list + " other.example", url));
    must(!listed("", url));
}

}  // namespace zabtest
