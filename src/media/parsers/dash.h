// DASH manifests (MPD, ISO/IEC 23009-1) as YouTube serves them: each complete representation with its itag, its
// address and its segment list.
//
// Read with the tag scanner of tag_scanner.h. Text ends at the body's first NUL; what a record holds is a view
// into the parser's own copy and lives until the parser's next parse.
//
// Cost: n log n in the body.
#pragma once

#include <cstdint>
#include <string_view>

#include "media/parsers/owned_text.h"
#include "media/parsers/records.h"

namespace zab {

struct DashRepresentation {
    std::int32_t itag = 0;         // the attribute "id", not 0
    std::string_view baseUrl;      // not empty, as the next
    std::string_view segmentList;  // raw, with its child elements
    std::int32_t reserved[2] = {};
    std::int32_t used = 0;  // set by whoever has taken the record
    DashRepresentation* next = nullptr;
};

class CYoutubeDashXMLParser {
  public:
    CYoutubeDashXMLParser() = default;
    CYoutubeDashXMLParser(const CYoutubeDashXMLParser&) = delete;
    CYoutubeDashXMLParser& operator=(const CYoutubeDashXMLParser&) = delete;
    virtual ~CYoutubeDashXMLParser() = default;

    /// True when there is a record. Forgets what an earlier parse gave. A record for which there is no memory
    /// is left out; throws std::bad_alloc where that is not enough.
    bool parse(std::string_view body);

    /// The record whose sound goes with a video itag, out of all records, or null.
    [[nodiscard]] DashRepresentation* pickAudioFor(std::uint32_t videoItag) const;

    Records<DashRepresentation> representations;

  private:
    OwnedText body_;
};

}  // namespace zab
