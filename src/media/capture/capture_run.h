// What the body handlers work with: the response they read for, and where their entries go.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "media/capture/media_entry.h"
#include "media/capture/page_media.h"

namespace zab {

/// One representation of a DASH manifest.
struct DashStream {
    std::string id;
    std::uint32_t height = 0;   // pixels
    std::uint32_t bitrate = 0;  // bits per second
    std::uint64_t size = 0;     // bytes
};

struct DashStreams {
    std::vector<DashStream> video;
    std::vector<DashStream> audio;
};

/// What the content sniffer says of the beginning of a body.
struct SniffedContent {
    enum class Verdict : std::uint8_t { recognised, needsMore, nothing };
    Verdict verdict = Verdict::nothing;
    std::string extension;
    std::uint64_t size = 0;  // bytes
    std::uint32_t duration = 0, width = 0, height = 0, bitrate = 0;
};

/// The download manager's libraries. One that is missing answers with nothing.
class CompanionLibraries {
  public:
    virtual std::optional<DashStreams> dashStreams(std::string_view manifestUrl, std::string_view body) = 0;
    virtual SniffedContent sniff(std::string_view body) = 0;

  protected:
    ~CompanionLibraries() = default;
};

/// What is known of a response when its media is captured.
struct CaptureContext {
    std::string url;  // final request URL, as it stands
    std::string contentType;
    std::string fileName;            // of Content-Disposition; "utf-8''" before a name that is UTF-8
    std::string extension;           // of the response itself, without dot
    std::int64_t contentLength = 0;  // bytes; 0: unknown
    EntryPage page;
    std::uint32_t youtubePairing = 0;          // 0 to 2
    bool hlsAsIs = false;                      // the data file names the host
    CompanionLibraries* companions = nullptr;  // null: none
};

/// One run of a handler.
class CaptureRun {
  public:
    /// A body offers no more than this: a page holds far fewer, and a hostile manifest shall not cost more.
    static constexpr std::size_t kMostOffers = 500;

    CaptureRun(const CaptureContext& context, PageMedia& page) noexcept : context_(context), page_(page) {}

    [[nodiscard]] const CaptureContext& context() const noexcept { return context_; }
    [[nodiscard]] PageMedia& page() const noexcept { return page_; }

    /// A new entry of this page.
    [[nodiscard]] MediaEntry entry() const {
        MediaEntry entry;
        entry.page = context_.page;
        return entry;
    }

    /// A new plain entry: named by its address, else by the page.
    [[nodiscard]] MediaEntry plainEntry(std::string link) const;

    /// False: enough was offered, nothing more is taken.
    bool offer(MediaEntry entry) {
        if (offers_ >= kMostOffers) return false;
        ++offers_;
        page_.offer(std::move(entry));
        return true;
    }

  private:
    const CaptureContext& context_;
    PageMedia& page_;
    std::size_t offers_ = 0;
};

}  // namespace zab
