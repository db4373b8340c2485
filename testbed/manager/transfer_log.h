// One JSON line per transfer: everything that the call brought, nothing interpreted.
//
// Texts are UTF-8; an absent text is null, an empty one "". Keys: url, referrer, cookies, postData, user,
// password, reserved, fileName, flags, extraData (an array of texts, or the VARIANT's type when it is no array
// of texts), reservedVariant (its type), and what the manager made of it: "died", or "download" with status,
// size and sha256, or "error".
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <nlohmann/json.hpp>
#include <string>

namespace zab::testbed {

nlohmann::ordered_json jsonOf(BSTR text);
/// Texts of a VT_ARRAY | VT_BSTR, else the type's number.
nlohmann::ordered_json jsonOf(const VARIANT* value);

/// Appends one whole line with one write, so that a reader never sees half of it.
void appendLine(const std::string& file, const nlohmann::ordered_json& line);

}  // namespace zab::testbed
