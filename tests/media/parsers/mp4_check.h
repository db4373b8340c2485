// What holds for every buffer that the MP4 reader may meet; shared by the property test and the fuzz target.
#pragma once

#include "media/parsers/mp4.h"
#include "media/parsers/must.h"

namespace zabtest {

inline void checkMp4(zab::Bytes buffer) {
    zab::CMp4DashReader reader;
    const bool recognised = reader.read(buffer);
    must(recognised == (!reader.secondsText().empty() || !reader.heightText().empty()));
    must(reader.moov != nullptr || !recognised);
    if (reader.moov != nullptr) {
        must(reader.moov >= buffer.data());
        must(reader.moovSize <= static_cast<std::size_t>(buffer.data() + buffer.size() - reader.moov));
    }
    zab::CMp4DashReader again = reader;
    again.read(buffer);
    must(again.timescale == reader.timescale && again.duration == reader.duration &&
         again.height == reader.height && again.fragmentDuration == reader.fragmentDuration &&
         again.moovSize == reader.moovSize);
}

}  // namespace zabtest
