// The direct video addresses in a Facebook page or player reply: for each block of video data the address in
// high and in standard definition, with the play time of the block's DASH manifest.
//
// Text is UTF-16 and ends at its first NUL. The text is searched, not parsed; a block takes the next addresses
// ahead, whether or not another block stands between. What is missing gives no address, a duration that cannot
// be read is 0. Out of memory flies as std::bad_alloc.
// Cost: one pass over the text for each word looked for; memory: each address once, and one entry for each
// block that shares it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace zab {

struct FacebookVideoEntry {
    std::u16string_view url;            // owned by the parser: many blocks may name one address
    std::uint64_t durationSeconds = 0;  // 0: unknown
    std::uint32_t isHd = 0;
    std::uint32_t used = 0;
};

class CFacebookParser {
  public:
    CFacebookParser() = default;
    virtual ~CFacebookParser() = default;
    CFacebookParser(const CFacebookParser&) = delete;
    CFacebookParser& operator=(const CFacebookParser&) = delete;

    /// True when there is at least one entry afterwards.
    bool parse(std::u16string_view text);

    /// Adds an entry and gives its index.
    std::size_t addEntry(std::u16string url, std::uint64_t durationSeconds, bool isHd);

    /// Valid as long as the parser.
    [[nodiscard]] const std::vector<FacebookVideoEntry>& entries() const noexcept { return entries_; }

  private:
    std::size_t addShared(std::u16string_view url, std::uint64_t durationSeconds, bool isHd);

    std::deque<std::u16string> urls_;  // never moved
    std::vector<FacebookVideoEntry> entries_;
};

/// Whole seconds of an ISO 8601 duration ("PT1M30.5S" is 90) that stands at the start of `text` and ends before
/// a quote, blank or backslash; 0 when it is none. Years have 365 days and months 30; the sum is modulo 2^32.
[[nodiscard]] std::uint32_t isoDurationSeconds(std::u16string_view text) noexcept;

}  // namespace zab
