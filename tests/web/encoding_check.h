// What holds for every Base64 text, Authorization value and encoded word, whoever wrote it; for the fuzz
// target.
#pragma once

#include <string>
#include <string_view>

#include "media/parsers/must.h"
#include "web/encoding.h"

namespace zabtest {

inline void checkEncoding(std::string_view bytes) {
    must(zab::Base64Decode(zab::Base64Encode(bytes)) == bytes);
    const std::string decoded = zab::Base64Decode(bytes);
    must(bytes.starts_with(zab::Base64Encode(decoded).substr(0, decoded.size() / 3 * 4)) || bytes[0] == ' ' ||
         bytes[0] == '\t');

    if (const auto login = zab::ParseBasicCredentials(bytes)) {
        const auto again =
            zab::ParseBasicCredentials("Basic " + zab::Base64Encode(login->user + ':' + login->password));
        must(again && again->user == login->user && again->password == login->password);
    }
    const std::string word = std::string("=?utf-8?").append(bytes);
    if (const auto name = zab::DecodeEncodedWordFileName(word)) must(name->starts_with(zab::kUtf8NamePrefix));
}

}  // namespace zabtest
