// HLS playlists (RFC 8216): one M3U8 body, read line by line into variants and renditions or into segments.
//
// Deliberately lenient: no header is needed, an unknown line is passed over, and a number that does not scan
// leaves its field at zero. Text ends at the body's first NUL. Every text that a record or a stream holds is a
// view into the parser's own copy of the body and lives as long as the parser, until its next parse.
//
// Cost: linear in the body; the walk over the streams adds the sorting of the renditions by group.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "media/parsers/owned_text.h"
#include "media/parsers/records.h"

namespace zab {

/// One "#EXT-X-MEDIA:" entry.
struct MediaRendition {
    std::string_view groupId;
    std::string_view uri;
    std::string_view type;
    std::string_view language;
    std::string_view name;
    std::int32_t isDefault = 0;
    std::string_view autoselect;
    std::string_view forced;
    std::string_view characteristics;
    std::string_view subtitles;
};

class CM3UParser {
  public:
    enum Kind : std::uint32_t { kNotAPlaylist = 0, kMaster = 1, kMedia = 2 };

    /// One "#EXT-X-STREAM-INF:" entry with the URI line that follows it.
    struct MPLVariant {
        virtual ~MPLVariant() = default;

        std::string_view uri;
        std::int32_t programId = 0;
        std::string_view bandwidth;  // as written, bits per second
        std::string_view codecs;
        std::string_view resolution;  // as written, width x height
        std::string_view audio;       // group name, as the next two
        std::string_view video;
        std::string_view subtitles;
    };

    struct MediaSegment {
        virtual ~MediaSegment() = default;

        std::uint64_t reserved = 0;
        std::string_view title;
        std::string_view uri;
        double duration = 0;                             // seconds
        std::uint32_t reservedRangeAndSequence[4] = {};  // never filled
        MediaSegment* next = nullptr;
    };

    struct MasterPlaylist {
        Records<MPLVariant> variants;
        Records<MediaRendition> renditions;
        std::int32_t version = 0;
    };

    struct MediaPlaylist {
        Records<MediaSegment> segments;
        double targetDuration = 0;  // seconds
        std::int64_t mediaSequence = 0;
        bool endList = false;
        std::int32_t version = 0;
        double totalDuration = 0;  // seconds, the sum over the segments
    };

    /// What is known between two lines of one parse.
    struct decodingState;

    /// One stream to offer. What is not known is empty.
    struct Stream {
        std::string_view uri;
        std::string_view audioUri;      // of the first rendition of the variant's audio group
        std::string_view height;        // what stands behind the resolution's first "x"
        std::string_view durationText;  // whole seconds
        std::string_view bandwidth;
    };

    CM3UParser() = default;
    CM3UParser(const CM3UParser&) = delete;
    CM3UParser& operator=(const CM3UParser&) = delete;
    virtual ~CM3UParser() = default;

    /// True when the body is a master or a media playlist. Forgets what an earlier parse gave. A record for
    /// which there is no memory is left out; throws std::bad_alloc where that is not enough.
    bool parse(std::string_view body);

    /// The next stream: the variants of a master playlist one by one, or the one of a media playlist. False at
    /// the end. All fields of `stream` are set, to empty text first.
    bool getNextStream(Stream& stream);

    MasterPlaylist master;
    MediaPlaylist media;
    std::uint32_t kind = kNotAPlaylist;
    std::uint32_t takeAllVariants = 0;   // flag; else variants of a single codec are not offered
    std::uint32_t hasNonTsSegments = 0;  // flag: an initialisation map names a file that is not ".ts"
    std::uint32_t cursor = 0;            // index of the variant that getNextStream looks at next

  private:
    void forget() noexcept;
    [[nodiscard]] bool offersAllVariants() const noexcept;
    [[nodiscard]] std::string_view audioOf(std::string_view group);

    OwnedText body_;
    std::string durationText_;
    std::vector<const MediaRendition*> renditionsByGroup_;  // sorted; within a group in order of appearance
};

}  // namespace zab
