// What holds for every data file, whatever it contains.
#pragma once

#include <string>

#include "media/parsers/must.h"
#include "settings/data_file.h"

namespace zabtest {

inline void checkDataFile(zab::Bytes plain) {
    const std::string contents(plain.begin(), plain.end());
    std::string ciphered = zab::applyDataFileCipher(plain);
    ciphered = zab::applyDataFileCipher({reinterpret_cast<std::uint8_t*>(ciphered.data()), ciphered.size()});
    must(ciphered == contents);  // what is enciphered can be deciphered

    const auto record = zab::parseDataFile(contents);
    must(record->loaded == 1 && record->contents == contents);
    for (const auto* patterns : {&record->listenSkip, &record->hlsAsIs})
        for (const std::string& pattern : *patterns)
            must(!pattern.empty() && pattern.size() <= 4096 && contents.find(pattern) != std::string::npos);
}

}  // namespace zabtest
