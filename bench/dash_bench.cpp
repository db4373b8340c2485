#include "bench/bench.h"
#include "media/parsers/dash.h"

namespace {

using zabbench::repeated;

std::function<void()> parseManifest(const std::string& body) {
    return [&body] { zab::CYoutubeDashXMLParser().parse(body); };
}

/// A live manifest: twelve representations of n segments each.
std::string manifest(std::size_t n) {
    const std::string segments =
        "<SegmentList startNumber=\"1\" presentationTimeOffset=\"0\" timescale=\"1000\" duration=\"5000\">" +
        repeated("<SegmentURL media=\"sq/%/lmt/1700000000%/dur/5.000\"/>", n) + "</SegmentList>";
    std::string body =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" "
        "profiles=\"urn:mpeg:dash:profile:isoff-main:2011\" type=\"static\" "
        "mediaPresentationDuration=\"PT3600S\" "
        "minBufferTime=\"PT1.500S\"><Period><AdaptationSet id=\"0\" mimeType=\"video/mp4\" "
        "subsegmentAlignment=\"true\">";
    for (const char* itag :
         {"133", "134", "135", "136", "137", "160", "242", "243", "244", "247", "248", "264"})
        body.append("<Representation id=\"")
            .append(itag)
            .append(
                "\" codecs=\"avc1.4d401f\" width=\"1280\" height=\"720\" startWithSAP=\"1\" "
                "maxPlayoutRate=\"1\" "
                "bandwidth=\"1500000\" "
                "frameRate=\"30\"><BaseURL>https://example.com/videoplayback/id/0123456789abcdef/"
                "source/yt_live_broadcast/requiressl/yes/itag/")
            .append(itag)
            .append("/</BaseURL>")
            .append(segments)
            .append("</Representation>");
    return body + "</AdaptationSet></Period></MPD>";
}

constexpr const char* kEnd = "<BaseURL>b</BaseURL><SegmentList>s</SegmentList>";

std::string unclosedRepresentations(std::size_t n) {
    return repeated("<Representation id=%><BaseURL><SegmentList>", n) + kEnd;
}
std::string listsThroughEachOther(std::size_t n) { return repeated("<Representation id='1' a=' b=", n) + kEnd; }
std::string unclosedTags(std::size_t n) { return repeated("<Representation id=% ", n) + kEnd; }
std::string openQuotes(std::size_t n) { return repeated("<Representation id=1 a='\"", n) + kEnd; }
std::string closeTagsThatAreNone(std::size_t n) { return repeated("<BaseURL></BaseURL ", n); }
std::string opensOnly(std::size_t n) { return std::string(n, '<'); }
std::string oneAttributeList(std::size_t n) {
    return "<Representation " + repeated("a=% ", n) + "id=1>" + kEnd;
}
std::string listsBehindWhiteSpace(std::size_t n) {
    return repeated("<Representation a='", n) + "' b=c" + std::string(20 * n, ' ') + "id=1>" + kEnd;
}

const zabbench::Case kCases[] = {
    {"dash", "manifest", manifest, 720, parseManifest},
    {"dash", "unclosed representations", unclosedRepresentations, 20'000, parseManifest},
    {"dash", "lists through each other", listsThroughEachOther, 40'000, parseManifest},
    {"dash", "unclosed tags", unclosedTags, 20'000, parseManifest},
    {"dash", "open quotes", openQuotes, 40'000, parseManifest},
    {"dash", "close tags that are none", closeTagsThatAreNone, 50'000, parseManifest},
    {"dash", "1 MB of <", opensOnly, 1'000'000, parseManifest},
    {"dash", "one attribute list", oneAttributeList, 250'000, parseManifest},
    {"dash", "lists behind white space", listsBehindWhiteSpace, 40'000, parseManifest},
};

}  // namespace
