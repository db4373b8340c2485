// What the link transmitter is told of one download.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "transfer/extra_data.h"

namespace zab::testbed {

/// The name of an element of the extra data in Told.
inline std::string nameOf(ExtraElement element) { return "extra " + std::to_string(static_cast<int>(element)); }

/// Absent texts are absent here too. Narrow, in the ANSI code page.
struct Told {
    std::map<std::string, std::string> texts;  // by the parameter's name, or nameOf()
    std::uint32_t flags = 0;

    [[nodiscard]] std::string text(const std::string& name) const {
        const auto found = texts.find(name);
        return found == texts.end() ? std::string{} : found->second;
    }
};

}  // namespace zab::testbed
