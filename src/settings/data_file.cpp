#include "settings/data_file.h"

#include <algorithm>
#include <optional>

#include "binding/pieces.h"
#include "binding/text.h"
#include "settings/exception_servers.h"
#include "settings/seal_cipher.h"

namespace zab {
namespace {

constexpr SealCipher::Key kDataFileKey{0x224A5BD4, 0x668C4399, 0xB2FA5AC8, 0x0E63FA26, 0xA2AFD45A};
constexpr std::size_t kLongestLine = 4096;  // bytes

void readPairing(ZabFcRecord& record, std::string_view value) {
    if (value.size() == 1 && value >= "0" && value <= "2")
        record.youtubePairing = static_cast<std::uint32_t>(value[0] - '0');
}
void readListenSkip(ZabFcRecord& record, std::string_view value) { record.listenSkip.emplace_back(value); }
void readHlsAsIs(ZabFcRecord& record, std::string_view value) { record.hlsAsIs.emplace_back(value); }

constexpr struct {
    std::string_view name;
    void (*read)(ZabFcRecord& record, std::string_view value);
} kNames[] = {
    {"youtube.pairing", readPairing},
    {"listen.skip", readListenSkip},
    {"hls.asis", readHlsAsIs},
};

void readLine(ZabFcRecord& record, std::string_view line) {
    if (line.size() > kLongestLine || line.starts_with('#')) return;
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view name = trim(line.substr(0, equals)), value = trim(line.substr(equals + 1));
    if (value.empty()) return;
    for (const auto& row : kNames)
        if (row.name == name) row.read(record, value);
}

bool anyMatches(const std::vector<std::string>& patterns, std::string_view host) noexcept {
    return std::any_of(patterns.begin(), patterns.end(),
                       [host](const std::string& pattern) { return matchesHostPattern(pattern, host); });
}

}  // namespace

bool ZabFcRecord::skipsListening(std::string_view host) const noexcept { return anyMatches(listenSkip, host); }
bool ZabFcRecord::takesVariantsAsTheyStand(std::string_view host) const noexcept {
    return anyMatches(hlsAsIs, host);
}

Published<ZabFcRecord>& dataFile() noexcept {
    static Published<ZabFcRecord> record;
    return record;
}

std::string applyDataFileCipher(Bytes bytes) {
    std::string result(bytes.begin(), bytes.end());
    SealCipher(kDataFileKey).apply({reinterpret_cast<std::uint8_t*>(result.data()), result.size()});
    return result;
}

std::unique_ptr<ZabFcRecord> parseDataFile(std::string contents) {
    auto record = std::make_unique<ZabFcRecord>();
    record->loaded = 1;
    record->contents = std::move(contents);
    for (const std::string_view line : piecesOf(upToNul(record->contents), '\n'))
        readLine(*record, trimRight(line, "\r"));
    return record;
}

}  // namespace zab
