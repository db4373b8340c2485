// The stand-in for the DASH parser: the representations of an MPD (ISO/IEC 23009-1), with what each takes from
// its adaptation set.
//
// The result's table and records are written down here once more: they share no declaration with the module.
#include <deque>
#include <string>
#include <string_view>

#include "binding/text.h"
#include "binding/utf.h"
#include "media/parsers/tag_scanner.h"

namespace {

using namespace zab;

struct Record {
    Record* next = nullptr;
    const char16_t* id = nullptr;
    std::uint32_t height = 0, bitrate = 0;
    std::uint64_t size = 0;
};

class Result {
  public:
    virtual Record* videoList() = 0;
    virtual Record* audioList() = 0;
    virtual void destroy() = 0;
};

int g_results = 0;

class List {
  public:
    void add(std::string_view id, std::uint32_t height, std::uint32_t bitrate) {
        Node& node = nodes_.emplace_back(Node{utf16FromUtf8(id), {}});
        node.record = {nullptr, node.id.c_str(), height, bitrate, 0};
        if (nodes_.size() > 1) nodes_[nodes_.size() - 2].record.next = &node.record;
    }
    /// The last leads to the first again.
    void close() {
        if (!nodes_.empty()) nodes_.back().record.next = &nodes_.front().record;
    }
    Record* first() { return nodes_.empty() ? nullptr : &nodes_.front().record; }

  private:
    struct Node {
        std::u16string id;
        Record record;
    };
    std::deque<Node> nodes_;
};

class Manifest final : public Result {
  public:
    Manifest() { ++g_results; }
    Record* videoList() override { return video.first(); }
    Record* audioList() override { return audio.first(); }
    void destroy() override {
        --g_results;
        delete this;
    }

    List video, audio;
};

std::uint32_t number(std::string_view text) {
    return static_cast<std::uint32_t>(leadingDigits(text, UINT32_MAX).value_or(0));
}

bool read(std::string_view body, Manifest& manifest) {
    constexpr ElementName kElements[] = {{"MPD"}, {"AdaptationSet"}, {"Representation"}};
    constexpr std::string_view kOfSets[] = {"contentType", "mimeType"};
    constexpr std::string_view kOfRepresentations[] = {"id", "bandwidth", "height", "mimeType"};
    const TagIndex tags(body, kElements);
    if (tags.starts(0).empty()) return false;
    TagAttributes setAttributes(body, kOfSets), attributes(body, kOfRepresentations);
    const auto& sets = tags.starts(1);
    std::size_t set = 0;
    for (const StartTag& tag : tags.starts(2)) {
        while (set < sets.size() && sets[set].at < tag.at) ++set;
        const auto ofSet = set == 0 ? TagAttributes::Values{} : setAttributes.readAt(sets[set - 1].behindName);
        const auto own = attributes.readAt(tag.behindName);
        const bool isAudio =
            ofSet.of[0] == "audio" || ofSet.of[1].starts_with("audio/") || own.of[3].starts_with("audio/");
        (isAudio ? manifest.audio : manifest.video).add(own.of[0], number(own.of[2]), number(own.of[1]));
    }
    // A body of ours that asks for a list without an end.
    if (contains(body, "profiles=\"cyclic\"")) manifest.video.close();
    return true;
}

}  // namespace

extern "C" __declspec(dllexport) std::int32_t
    Parse1(const char16_t* url, const char* body, std::uint64_t zero, std::uint64_t alsoZero, Result** result) {
    if (url == nullptr || zero != 0 || alsoZero != 0) return 0;
    auto* manifest = new Manifest;
    *result = manifest;
    return read(body, *manifest) ? 1 : 0;
}

/// How many results live: those that the module has not destroyed.
extern "C" __declspec(dllexport) int StandIn_Results() { return g_results; }
