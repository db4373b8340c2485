// The stand-in for the DASH parser: the representations of an MPD (ISO/IEC 23009-1), with what each takes from
// its adaptation set.
//
// The result's table and records are written down here once more: they share no declaration with the module.
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <string>
#include <string_view>

#include "binding/utf.h"

namespace {

struct Record {
    Record* next = nullptr;
    const char16_t* id = nullptr;
    std::uint32_t height = 0, bitrate = 0;
    std::uint64_t size = 0;
};

int g_results = 0;

std::string_view attribute(std::string_view tag, std::string_view name) {
    const auto at = tag.find(" " + std::string(name) + "=\"");
    if (at == tag.npos) return {};
    tag.remove_prefix(at + name.size() + 3);
    return tag.substr(0, tag.find('"'));
}

std::uint32_t number(std::string_view tag, std::string_view name) {
    return static_cast<std::uint32_t>(std::strtoul(std::string(attribute(tag, name)).c_str(), nullptr, 10));
}

class Manifest final {
  public:
    explicit Manifest(std::string_view body) {
        ++g_results;
        bool isAudio = false;
        for (auto at = body.find('<'); at != body.npos; at = body.find('<', at + 1)) {
            const auto tag = body.substr(at, body.find('>', at) - at);
            if (tag.starts_with("<AdaptationSet")) isAudio = tag.find("audio") != tag.npos;
            if (tag.starts_with("<Representation ")) add(isAudio ? audio_ : video_, tag);
        }
        // A body of ours that asks for a list without an end: the last leads to the first again.
        if (body.find("profiles=\"cyclic\"") != body.npos) video_.back().next = &video_.front();
    }
    virtual Record* videoList() { return video_.empty() ? nullptr : &video_.front(); }
    virtual Record* audioList() { return audio_.empty() ? nullptr : &audio_.front(); }
    virtual void destroy() {
        --g_results;
        delete this;
    }

  private:
    void add(std::deque<Record>& list, std::string_view tag) {
        const auto& id = ids_.emplace_back(zab::utf16FromUtf8(attribute(tag, "id")));
        Record* const last = list.empty() ? nullptr : &list.back();
        list.push_back({nullptr, id.c_str(), number(tag, "height"), number(tag, "bandwidth"), 0});
        if (last != nullptr) last->next = &list.back();
    }

    std::deque<std::u16string> ids_;
    std::deque<Record> video_, audio_;
};

}  // namespace

extern "C" __declspec(dllexport) std::int32_t Parse1(const char16_t* url, const char* body, std::uint64_t zero,
                                                     std::uint64_t alsoZero, Manifest** result) {
    if (url == nullptr || zero != 0 || alsoZero != 0) return 0;
    *result = new Manifest(body);
    return std::string_view(body).find("<MPD") == std::string_view::npos ? 0 : 1;
}

/// How many results live: those that the module has not destroyed.
extern "C" __declspec(dllexport) int StandIn_Results() { return g_results; }
