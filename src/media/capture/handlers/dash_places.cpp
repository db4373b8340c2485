// Where the segments of a DASH manifest lie (ISO/IEC 23009-1): its own directory, those of its base addresses,
// and those that its templates and segment lists name.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "binding/text.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/tag_scanner.h"
#include "web/url.h"
#include "web/url_resolve.h"
#include "web/xml_text.h"

namespace zab {
namespace {

constexpr std::string_view kExtensions[] = {"m4s", "mp4", "webm", "m4v", "m4a"};
constexpr std::string_view kRepresentationId = "$RepresentationID$";
// A manifest names more only to cost something.
constexpr std::size_t kMostBases = 16, kMostIds = 64, kMostTemplates = 64;

enum Element : std::size_t { kBaseUrl, kTemplate, kSegmentUrl, kInitialization, kRepresentation };
constexpr ElementName kElements[] = {
    {"BaseURL"}, {"SegmentTemplate"}, {"SegmentURL"}, {"Initialization"}, {"Representation"},
};

/// The values of one attribute of all elements of a name, each once, in order.
class AttributeValues {
  public:
    AttributeValues(std::string_view text, const TagIndex& tags) : text_(text), tags_(tags) {}

    void gather(Element element, std::string_view name, std::size_t most,
                std::vector<std::string>& values) const {
        const std::array<std::string_view, 1> names{name};
        TagAttributes attributes(text_, names);
        for (const StartTag& tag : tags_.starts(element)) {
            std::string value = addressInXml(attributes.readAt(tag.behindName).of[0]);
            if (values.size() >= most) return;
            if (!value.empty() && std::ranges::find(values, value) == values.end())
                values.push_back(std::move(value));
        }
    }

  private:
    std::string_view text_;
    const TagIndex& tags_;
};

/// The manifest's own address, and its base addresses resolved against it and against the outermost of them.
std::vector<std::string> basesOf(std::string_view url, std::string_view text, const TagIndex& tags) {
    std::vector<std::string> bases{std::string(url)};
    const auto add = [&](std::string base) {
        if (bases.size() < kMostBases && std::ranges::find(bases, base) == bases.end())
            bases.push_back(std::move(base));
    };
    for (const StartTag& tag : tags.starts(kBaseUrl)) {
        const auto behindTag = text.find('>', tag.behindName);
        if (behindTag == std::string_view::npos) break;
        const auto content = tags.contentFrom(kBaseUrl, behindTag + 1);
        if (!content) continue;
        const std::string written = addressInXml(*content);
        add(resolveUrl(url, written));
        if (bases.size() > 1) add(resolveUrl(bases[1], written));
    }
    return bases;
}

std::string withId(std::string_view pattern, std::string_view id) {
    std::string filled;
    for (auto at = pattern.find(kRepresentationId); at != std::string_view::npos;
         at = pattern.find(kRepresentationId)) {
        filled.append(pattern.substr(0, at)).append(id);
        pattern.remove_prefix(at + kRepresentationId.size());
    }
    return filled.append(pattern);
}

}  // namespace

void noteDashPlaces(std::string_view url, std::string_view body, PageStreams& streams) {
    const TagIndex tags(body, kElements);
    const AttributeValues values(body, tags);
    std::vector<std::string> ids, patterns;
    values.gather(kRepresentation, "id", kMostIds, ids);
    values.gather(kTemplate, "media", kMostTemplates, patterns);
    values.gather(kTemplate, "initialization", kMostTemplates, patterns);
    values.gather(kSegmentUrl, "media", kMostTemplates, patterns);
    values.gather(kInitialization, "sourceURL", kMostTemplates, patterns);
    const std::vector<std::string> bases = basesOf(url, body, tags);
    for (const std::string& base : bases)
        for (const std::string_view extension : kExtensions) streams.addPlace(base, extension);
    for (const std::string& pattern : patterns) {
        const bool namesId = contains(pattern, kRepresentationId);
        for (std::size_t i = 0; i < (namesId ? ids.size() : 1); ++i) {
            const std::string part = namesId ? withId(pattern, ids[i]) : pattern;
            // A directory that counts with the segments cannot be told beforehand.
            if (contains(std::string_view(part).substr(0, part.rfind('/') + 1), "$")) continue;
            for (const std::string& base : bases) streams.addPlace(resolveUrl(base, part));
        }
    }
}

}  // namespace zab
