// The download manager's data file "zabfc.dat": enciphered text that tells the site handlers what changes
// faster than the module does.
//
// Plain contents: UTF-8, one "name=value" per line; a line that begins with "#" is a comment, unknown names and
// lines longer than 4,096 bytes are ignored, white space around a name or value too. The text ends at its first
// NUL. Names:
//     youtube.pairing   0, 1 or 2: how a video and its audio stream are paired in a link (the last one holds)
//     listen.skip       host pattern with "*"; responses of a matching host get no body listener (may repeat)
//     hls.asis          host whose HLS variant addresses are taken as they stand (may repeat)
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "binding/byte_reader.h"
#include "settings/published.h"

namespace zab {

/// What the data file says. An absent or unreadable file is the empty record.
struct ZabFcRecord {
    std::uint32_t youtubePairing = 0;
    std::array<std::uint32_t, 10> reservedWords{};
    std::uint32_t loaded = 0;  // 1: a load was tried, whatever came of it
    std::array<std::uint8_t, 5> reservedBytes{};
    std::string contents;  // plain
    std::vector<std::string> listenSkip;
    std::vector<std::string> hlsAsIs;

    /// `host` without user and port.
    [[nodiscard]] bool skipsListening(std::string_view host) const noexcept;
    [[nodiscard]] bool takesVariantsAsTheyStand(std::string_view host) const noexcept;
};

/// The process-wide record: `const auto file = dataFile().read(); ... file->youtubePairing ...`
Published<ZabFcRecord>& dataFile() noexcept;

/// Enciphers plain contents, or deciphers a file: one is the other's inverse.
std::string applyDataFileCipher(Bytes bytes);

/// The record of a load that found these plain contents.
std::unique_ptr<ZabFcRecord> parseDataFile(std::string contents);

/// Loads the file anew and publishes the result, empty when it cannot be read. The first time that the data
/// folder exists, also starts the thread that calls this at each change of the configuration. 1: there is no
/// data folder; else 0.
std::uint32_t ReloadDataFile(Published<ZabFcRecord>& record);

/// When the browser shuts down: ends that thread and waits for it, at most 1,000 ms. False: it still runs.
bool endConfigTimeWatcher() noexcept;

/// Identifier of that thread; 0 before it is started. It is started at most once.
std::uint32_t configTimeWatcherId() noexcept;

}  // namespace zab
