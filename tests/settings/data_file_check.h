// What holds for every data file, whatever it contains.
#pragma once

#include <algorithm>
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
    must(record->youtubePairing <= 2);
    const auto lines = static_cast<std::size_t>(std::count(contents.begin(), contents.end(), '\n')) + 1;
    must(record->listenSkip.size() + record->hlsAsIs.size() <= lines);
    for (const auto* patterns : {&record->listenSkip, &record->hlsAsIs})
        for (const std::string& pattern : *patterns)
            must(!pattern.empty() && pattern.size() <= 4096 && contents.find(pattern) != std::string::npos);
    const bool all = std::count(record->listenSkip.begin(), record->listenSkip.end(), "*") != 0;
    must(!all || record->skipsListening("www.example.com"));
}

}  // namespace zabtest
