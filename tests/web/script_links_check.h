// What holds for every script; shared with the fuzz target.
#pragma once

#include <string_view>

#include "media/parsers/must.h"
#include "web/script_links.h"

namespace zabtest {

inline void checkScriptLinks(std::string_view script) {
    std::size_t bytes = 0;
    zab::CLinksInJavaParser(script).parse([&](std::string_view address) {
        must(!address.empty());
        must(address.find_first_of(" \t\r\n<>\"") == std::string_view::npos);
        bytes += address.size();
    });
    // Two digits of a "\xNN" can become two bytes, never more than were written.
    must(bytes <= script.size());
}

}  // namespace zabtest
