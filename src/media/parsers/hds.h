// HTTP Dynamic Streaming manifests (Adobe F4M): the media renditions, each with its bootstrap data, so that one
// can be offered for each picture height.
//
// Read with the tag scanner of tag_scanner.h. Text ends at the body's first NUL; what a record holds is a view
// into memory of the parser and lives until its next parse.
//
// Cost: n log n in the body.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/parsers/owned_text.h"
#include "media/parsers/records.h"

namespace zab {

struct F4MBootstrap {
    std::string_view id;    // empty when absent
    std::string_view data;  // the content: a bootstrap box in Base64
    F4MBootstrap* next = nullptr;
};

struct F4MMedia {
    std::string_view url;
    std::string_view bootstrapInfoId;
    std::string_view bitrate;    // as written, kilobits per second
    std::string_view height;     // as written, else from the metadata
    std::string_view metadata;   // an AMF0 object in Base64
    std::string_view bootstrap;  // data of the bootstrap that belongs to it
    std::int32_t hidden = 0;     // flag: no height is known, or a later rendition has the same
    F4MMedia* next = nullptr;
};

/// Counted: starts with one reference and ends itself with its last (InterfacePtr holds it). The count is not
/// atomic: one thread alone counts.
class CF4MParser {
  public:
    CF4MParser() = default;
    CF4MParser(const CF4MParser&) = delete;
    CF4MParser& operator=(const CF4MParser&) = delete;

    std::uint32_t AddRef() noexcept { return ++references_; }
    std::uint32_t Release() noexcept;

    /// True when the manifest holds a bootstrap and a media element; else every field is cleared. Forgets what
    /// an earlier parse gave. A record for which there is no memory is left out; throws std::bad_alloc where
    /// that is not enough.
    bool parse(std::string_view body);

    std::string baseUrl;        // empty, or ends in "/"
    std::string_view duration;  // as written, seconds
    std::int32_t hasDrm = 0;    // flag: an element's name begins with "drm"
    std::int32_t hasPv = 0;     // flag: an element's name begins with "pv-"
    Records<F4MBootstrap> bootstraps;
    Records<F4MMedia> media;

  protected:
    virtual ~CF4MParser() = default;

  private:
    class Reader;

    void forget() noexcept;
    void linkBootstraps();
    void hideAllButTheLastOfEachHeight();

    OwnedText body_;
    std::vector<std::optional<std::string>> decodedHeights_;  // of each "metadata" element, once asked for
    std::uint32_t references_ = 1;
};

}  // namespace zab
