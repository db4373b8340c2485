// Addresses as XML manifests write them.
#pragma once

#include <string>
#include <string_view>

namespace zab {

/// Without surrounding white space; the five predefined entities and numeric references (XML 1.0 section 4.1)
/// are decoded, to UTF-8, and all else stays as it stands.
std::string addressInXml(std::string_view written);

}  // namespace zab
