#include "media/parsers/hds.h"

#include <bit>
#include <limits>

#include "media/parsers/hds_check.h"
#include "readings.h"
#include "web/encoding.h"

namespace {

using namespace zabtest;

const std::string kBootstrap = "<bootstrapInfo id=\"b\">AAA</bootstrapInfo>";

/// "url height[ hidden];" of each media record.
std::string heightsOf(const std::string& body) {
    const auto parser = parsedHds(kBootstrap + body);
    std::string all;
    for (const auto& m : parser->media)
        all.append(m.url).append(" ").append(m.height).append(m.hidden != 0 ? " hidden;" : ";");
    return all;
}

std::string amfNumber(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(bits >> shift & 0xFF);
    return bytes;
}

TEST(Hds, ShowsTheLastRenditionOfEachHeight) {
    const std::string key = "\x06height", typed = key + '\0';
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const auto ofMetadata = [](const std::string& data) {
        return heightsOf("<media><media url=u ><metadata>" + zab::Base64Encode(data) + "</metadata></media>");
    };
    const Reading rows[] = {
        {"ab" + typed + amfNumber(480), "u 480;", "behind the key and its type byte"},
        {"a" + typed + amfNumber(480), "u  hidden;", "a key before offset 2 is none"},
        {"ab" + typed + amfNumber(480).substr(0, 7), "u  hidden;", "the double must end inside the data"},
        {"ab" + key + 'X' + amfNumber(480.9), "u 480;", "any type byte; cut to a whole number"},
        {"ab" + typed + amfNumber(0x1p63), "u 9223372036854775807;", "beyond 64 bits: the limit"},
        {"ab" + typed + amfNumber(notANumber), "u  hidden;", "not a number is no height"},
    };
    expectReadings(ofMetadata, rows);
    const std::string base64 = zab::Base64Encode("ab" + typed + amfNumber(480));
    const Reading renditions[] = {
        {"<media url=a height=1 ><media url=b height=2 ><media url=c height=1 >", "a 1 hidden;b 2;c 1;",
         "earlier"},
        {"<media url=a ><media url=b height='' >", "a  hidden;b  hidden;", "without a height it is hidden"},
        {"<media url=u height=1 ><metadata>" + base64 + "</metadata>", "u 1;", "an attribute comes first"},
        {"<media url=u ><metadata>" + base64 + "<x></metadata>", "u 480;", "ends at a foreign byte"},
        {"<media url=u ></media ><media url=v/><metadata>" + base64 + "</metadata>", "u  hidden;v  hidden;",
         "closed before, also in its start tag"},
        {"<media url=u ><metadata>x</metadata><metadata>" + base64 + "</metadata>", "u  hidden;", "the first"},
        {"<media ><media url=v ><MetaData>" + base64 + "</metadata >", " 480 hidden;v 480;", "open: the next"},
    };
    expectReadings(heightsOf, renditions);
}

TEST(Hds, LinksBootstraps) {
    const auto bootstrapOf = [](const std::string& body) {
        const auto parser =
            parsedHds("<bootstrapInfo id=x>X</bootstrapInfo><bootstrapInfo id=y>Y</bootstrapInfo>" + body);
        return parser->media.size() == 1 ? std::string(parser->media[0].bootstrap) : "not one";
    };
    const Reading rows[] = {
        {"<media bootstrapInfoId=y >", "Y", "by its id"},
        {"<media bootstrapInfoId=Y >", "X", "case matters; without a match the first"},
        {"<media url=u ><bootstrapInfo>Z</bootstrapInfo>", "Z", "an absent id equals an absent one"},
        {"<media bootstrapInfoId=y ><bootstrapInfo id=y>Z</bootstrapInfo>", "Y", "the first of several"},
        {"<media bootstrapInfoId=z ><bootstrapInfo id=z ", "", "and in an open start tag"},
        {"<media bootstrapInfoId=z ><bootstrapInfo id=z a='>'/>q</bootstrapInfo>", "q", "behind its own >"},
    };
    expectReadings(bootstrapOf, rows);
}

TEST(Hds, ReadsTheManifest) {
    const auto manifestOf = [](const std::string& body) {
        return zabtest::manifestOf(parsedHds("<bootstrapInfo>A</bootstrapInfo><media url=u >" + body));
    };
    const Reading rows[] = {
        {"<baseURL> h/v </baseURL><duration> 1 </duration>", "h/v/| 1 |0|0;|A;", "a slash is added"},
        {"<baseURL>a/</baseURL><duration>1</duration><baseURL>b<duration>2", "a/|1|0|0;|A;", "unclosed: none"},
        {"</drm></pv-x>< PV-x>", "||0|1;|A;", "only start tags; any name that begins so"},
        {"<x a='<drm'>", "||1|0;|A;", "inside a value too"},
    };
    expectReadings(manifestOf, rows);
}

}  // namespace
