// What a parser gives, as text.
#pragma once

#include <sstream>
#include <string>

namespace zabtest {

/// "a|b|c;"
template <class First, class... Rest>
std::string record(const First& first, const Rest&... rest) {
    std::ostringstream fields;
    fields.precision(17);
    fields << first;
    ((fields << '|' << rest), ...);
    return fields.str() + ';';
}

}  // namespace zabtest
