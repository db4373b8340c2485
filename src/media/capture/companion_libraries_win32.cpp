#include "media/capture/companion_libraries.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "binding/library_win32.h"
#include "binding/owner.h"
#include "binding/text.h"
#include "binding/utf.h"
#include "settings/companion_library_win32.h"

namespace zab {

// What the DASH parser hands out.

struct ManifestRecord {
    const ManifestRecord* next;
    const char16_t* id;
    std::uint32_t height;
    std::uint32_t bitrate;  // bits per second
    std::uint64_t size;     // bytes
};

/// A table of operations, as the parser's compiler lays it out. Not in the namespace below: of a class that no
/// other file can see, and that nothing here derives from, a compiler may conclude that it is never called.
class IZABManifest {
  public:
    virtual const ManifestRecord* videoList() = 0;
    virtual const ManifestRecord* audioList() = 0;
    virtual void destroy() = 0;
};

namespace {

// The content sniffer.

/// What ZABFileType fills; the caller zeroes it.
struct FileTypeRecord {
    std::uint32_t one;
    std::uint32_t category;
    char16_t extension[32];  // with its terminator
    std::uint32_t durationSeconds;
    std::uint32_t width, height;  // pixels
    std::uint32_t bitrate;        // bits per second
    std::uint64_t sizeBytes;
    std::uint8_t reserved[576];
};
static_assert(sizeof(FileTypeRecord) == 672 && offsetof(FileTypeRecord, sizeBytes) == 88);

using ZABFileType_t = std::int32_t(const void* body, std::uint32_t length, std::uint32_t zero, void* result);

SniffedContent::Verdict verdictOf(std::int32_t answer) noexcept {
    if (answer == 1 || answer == 2) return SniffedContent::Verdict::recognised;
    return answer == 3 ? SniffedContent::Verdict::needsMore : SniffedContent::Verdict::nothing;
}

// The DASH parser.

using Parse1_t = std::int32_t(const char16_t* url, const char* body, std::uint64_t zero, std::uint64_t alsoZero,
                              IZABManifest** result);

struct ManifestTraits {
    using Raw = IZABManifest*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw manifest) noexcept { manifest->destroy(); }
};

/// An ID that ends within a generous length, else none.
std::u16string_view idOf(const ManifestRecord& record) noexcept {
    constexpr std::size_t kLongest = 4096;
    if (record.id == nullptr) return {};
    const auto* end = std::find(record.id, record.id + kLongest, u'\0');
    if (end == record.id + kLongest) return {};
    return {record.id, static_cast<std::size_t>(end - record.id)};
}

/// No more than a run may offer, so that a list that never ends does.
std::vector<DashStream> streamsOf(const ManifestRecord* record) {
    std::vector<DashStream> streams;
    for (; record != nullptr && streams.size() < CaptureRun::kMostOffers; record = record->next)
        streams.push_back({utf8FromUtf16(idOf(*record)), record->height, record->bitrate, record->size});
    return streams;
}

class Libraries final : public CompanionLibraries {
  public:
    std::optional<DashStreams> dashStreams(std::string_view manifestUrl, std::string_view body) override {
        const auto parse = parser_.function();
        if (parse == nullptr) return std::nullopt;
        const std::string text(body);
        Owner<ManifestTraits> manifest;
        const std::u16string url = utf16FromUtf8(manifestUrl);
        const bool isManifest = parse(url.c_str(), text.c_str(), 0, 0, manifest.put()) != 0;
        if (!isManifest || !manifest) return std::nullopt;
        return DashStreams{streamsOf(manifest.get()->videoList()), streamsOf(manifest.get()->audioList())};
    }

    SniffedContent sniff(std::string_view body) override {
        SniffedContent sniffed;
        const auto fileType = sniffer_.function();
        if (fileType == nullptr) return sniffed;
        FileTypeRecord record{};
        sniffed.verdict = verdictOf(fileType(body.data(), static_cast<std::uint32_t>(body.size()), 0, &record));
        if (sniffed.verdict != SniffedContent::Verdict::recognised) return sniffed;
        sniffed.extension =
            utf8FromUtf16(upToNul(std::u16string_view(record.extension, std::size(record.extension))));
        sniffed.size = record.sizeBytes;
        sniffed.duration = record.durationSeconds;
        sniffed.width = record.width;
        sniffed.height = record.height;
        sniffed.bitrate = record.bitrate;
        return sniffed;
    }

  private:
    CompanionFunction<ZABFileType_t> sniffer_{u"zabftype64.dll", "ZABFileType"};
    CompanionFunction<Parse1_t> parser_{u"zabvmprs64.dll", "Parse1"};
};

}  // namespace

CompanionLibraries& companionLibraries() noexcept {
    static constinit Libraries libraries;
    return libraries;
}

}  // namespace zab
