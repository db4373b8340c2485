// What holds for every body that the HDS parser may meet; shared by the property test and the fuzz target.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "binding/interface_ptr.h"
#include "media/parsers/hds.h"
#include "media/parsers/must.h"
#include "media/parsers/naive_tags.h"

namespace zabtest {

using F4MParserPtr = zab::InterfacePtr<zab::CF4MParser>;

inline std::string joined(std::initializer_list<std::string_view> texts) {
    std::string all;
    for (const auto text : texts) all.append(text).append("|");
    return all += ';';
}

/// Everything that a parse gives but the heights that come from metadata and what follows from heights.
inline std::string hdsRecords(const zab::CF4MParser& parser) {
    std::string all = joined(
        {parser.baseUrl, parser.duration, parser.hasDrm != 0 ? "drm" : "", parser.hasPv != 0 ? "pv" : ""});
    for (const auto& b : parser.bootstraps) all += joined({b.id, b.data});
    for (const auto& m : parser.media)
        all += joined({m.url, m.bootstrapInfoId, m.bitrate, m.metadata, m.bootstrap});
    return all;
}

inline std::string naiveHdsRecords(std::string_view body) {
    struct Media {
        std::string_view url, id, bitrate, metadata;
    };
    const NaiveTags tags(zab::upToNul(body));
    constexpr std::size_t kNone = NaiveTags::kNone;
    std::string_view duration, baseUrl;
    bool drm = false, pv = false;
    std::vector<std::pair<std::string_view, std::string_view>> bootstraps;
    std::vector<Media> media;
    for (auto at = tags.nextTag(0); at != kNone; at = tags.nextTag(at + 1)) {
        drm |= tags.hasName(tags.skipSpace(at + 1), "drm");
        pv |= tags.hasName(tags.skipSpace(at + 1), "pv-");
        std::size_t behind = tags.behindStart(at, "duration");
        if (behind != kNone) tags.content(behind, "duration", duration);
        behind = tags.behindStart(at, "baseURL");
        if (behind != kNone) tags.content(behind, "baseURL", baseUrl);
        behind = tags.behindStart(at, "bootstrapInfo");
        if (behind != kNone) {
            auto& [id, data] = bootstraps.emplace_back();
            const std::size_t end =
                tags.attributes(behind, [&id = id](std::string_view name, std::string_view value) {
                    if (name == "id") id = value;
                });
            tags.content(end, "bootstrapInfo", data);
        }
        behind = tags.behindStart(at, "media");
        if (behind == kNone || tags.has(behind, '>')) continue;
        Media& m = media.emplace_back();
        const std::size_t end = tags.attributes(behind, [&m](std::string_view name, std::string_view value) {
            if (name == "url") m.url = value;
            if (name == "bootstrapInfoId") m.id = value;
            if (name == "bitrate") m.bitrate = value;
        });
        const std::size_t tagEnd = tags.text().find('>', end);
        if (tagEnd != kNone && tagEnd > end && tags.has(tagEnd - 1, '/')) continue;
        for (auto child = tags.nextTag(end); child != kNone && !tags.isEnd(child, "media");
             child = tags.nextTag(child + 1)) {
            behind = tags.behindStart(child, "metadata");
            if (behind == kNone) continue;
            tags.content(behind, "metadata", m.metadata);
            break;
        }
    }
    if (bootstraps.empty() || media.empty()) return joined({"", "", "", ""});
    std::string slashed(baseUrl);
    if (!slashed.empty() && slashed.back() != '/') slashed += '/';
    std::string all = joined({slashed, duration, drm ? "drm" : "", pv ? "pv" : ""});
    for (const auto& [id, data] : bootstraps) all += joined({id, data});
    for (const Media& m : media) {
        std::string_view bootstrap = bootstraps[0].second;
        for (auto b = bootstraps.rbegin(); b != bootstraps.rend(); ++b)
            if (b->first == m.id) bootstrap = b->second;
        all += joined({m.url, m.id, m.bitrate, m.metadata, bootstrap});
    }
    return all;
}

inline void checkHds(std::string_view body) {
    const F4MParserPtr parser(new zab::CF4MParser);
    parser->parse(body);
    const auto tags = static_cast<std::size_t>(std::count(body.begin(), body.end(), '<'));
    must(parser->bootstraps.size() + parser->media.size() <= tags);
    const std::string records = hdsRecords(*parser.get());
    must(records == naiveHdsRecords(body));
    for (const zab::F4MMedia* m = parser->media.empty() ? nullptr : &parser->media[0]; m != nullptr;
         m = m->next) {
        bool laterEqual = false;
        for (const zab::F4MMedia* later = m->next; later != nullptr; later = later->next)
            laterEqual |= later->height == m->height;
        must((m->hidden != 0) == (m->height.empty() || laterEqual));
    }
    parser->parse(
        "<manifest><drmAdditionalHeader/><pv-2.0/><baseURL>u</baseURL><duration>1</duration><bootstrapInfo>b"
        "</bootstrapInfo><media url='v' height='1'/><media url='w' height='1'/></manifest>");
    parser->parse(body);
    must(records == hdsRecords(*parser.get()));  // nothing of the earlier manifest is left
}

}  // namespace zabtest
