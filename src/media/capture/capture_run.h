// What the body handlers work with: the response they read for, and where their entries go.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "page/media_entry.h"
#include "page/offered_media.h"

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
    std::string fileName;                      // of Content-Disposition; "utf-8''" before a name that is UTF-8
    std::string extension;                     // of the response itself, without dot
    std::int64_t contentLength = 0;            // bytes; 0: unknown
    std::uint32_t youtubePairing = 0;          // 0 to 2
    bool hlsAsIs = false;                      // the data file names the host
    CompanionLibraries* companions = nullptr;  // null: none
};

/// The page that a run reads for. What is known of its media is shared, so it is seen only in passing: a
/// handler holds nothing of it while it parses, or asks a library.
class CapturePage {
  public:
    /// The page, looked for when it is first needed. Null: there is none, and its entries have no place.
    virtual const EntryPage* identity() = 0;
    /// False too when the page's media cannot be had now.
    virtual bool ask(const std::function<bool(const OfferedMedia&)>& question) = 0;
    /// Left out when the page's media cannot be had now.
    virtual void change(const std::function<void(OfferedMedia&)>& change) = 0;

  protected:
    ~CapturePage() = default;
};

/// One run of a handler.
class CaptureRun {
  public:
    /// A body offers no more than this: a page holds far fewer, and a hostile manifest shall not cost more.
    static constexpr std::size_t kMostOffers = 500;

    CaptureRun(const CaptureContext& context, CapturePage& page) noexcept : context_(context), page_(page) {}

    [[nodiscard]] const CaptureContext& context() const noexcept { return context_; }
    [[nodiscard]] CapturePage& page() const noexcept { return page_; }
    /// Empty without a page.
    [[nodiscard]] const EntryPage& pageIdentity() const;

    /// A new entry of this page.
    [[nodiscard]] MediaEntry entry() const;
    /// A new plain entry: named by its address, else by the page.
    [[nodiscard]] MediaEntry plainEntry(std::string link) const;

    /// False: nothing more is taken, for enough was offered or there is no page.
    bool offer(MediaEntry entry);

    /// What was offered, each stream once, in order.
    [[nodiscard]] std::vector<MediaEntry> takeEntries() noexcept { return found_.takeEntries(); }

  private:
    const CaptureContext& context_;
    CapturePage& page_;
    OfferedMedia found_;
    std::size_t offers_ = 0;
};

}  // namespace zab
