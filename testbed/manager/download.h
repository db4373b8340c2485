// Downloads a link with what the browser told about it: proof that a transfer carries enough to get the file.
#pragma once

#include <nlohmann/json.hpp>

namespace zab::testbed {

/// `transfer` is a line of the transfer log. Gives "status" (of HTTP), "size" and "sha256". Follows redirects.
/// The segments of an HLS link are fetched in order and joined, those of its sound behind them. Throws
/// std::runtime_error when the address is not of HTTP or an answer cannot be read to its end.
nlohmann::ordered_json download(const nlohmann::ordered_json& transfer);

}  // namespace zab::testbed
